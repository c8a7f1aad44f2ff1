// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/LabelSet.h>
#include <QUIRE/Result.h>
#include <QUIRE/Types.h>
#include <QUIRE/UL.h>

#include <Ferro/UUID.h>

#include <string>

namespace QUIRE {

/// What a file holds. The numbers are those that asset stores use for the same kinds, and never change.
enum EssenceType_t : ui32_t {
  ESS_UNKNOWN = 0,       ///< not an MXF file
  ESS_MXF_OTHER = 2,     ///< an MXF file of another kind, or one whose header cannot be understood
  ESS_MPEG2_VES = 3,     ///< MPEG-2 video
  ESS_JPEG_2000 = 4,     ///< JPEG 2000 picture
  ESS_PCM = 5,           ///< PCM sound
  ESS_JPEG_2000_S = 18,  ///< stereoscopic JPEG 2000 picture
  ESS_TIMED_TEXT = 19,   ///< timed text
  ESS_DCDATA = 22,       ///< auxiliary data
  ESS_ATMOS = 23,        ///< immersive audio
};

/// The kind's name for people, in English: "JPEG 2000 pictures". Never null.
[[nodiscard]] QUIRE_API const char* EssenceTypeName(EssenceType_t type);

/// Finds out what a file holds by reading its header, encrypted files included. That a file is none of these is an
/// answer, and not logged; a line says what is wrong with an MXF file whose header cannot be understood.
/// @param type receives the answer; ESS_UNKNOWN on failure.
/// @return RESULT_OK whenever the file could be read; else what Ferro::FileReader::OpenRead or ReadAt returned.
/// Any thread may call it.
[[nodiscard]] QUIRE_API Result_t EssenceType(const std::string& filename, EssenceType_t& type);

/// Why no reader reads an MXF file.
enum class TrackFileFault : ui8_t {
  None,
  NotMXF,
  BrokenHeader,    ///< it begins as MXF does, but its header cannot be understood
  NoFilePackage,   ///< the header does not describe any essence
  NoDescriptor,    ///< nor of what kind it is
  SeveralTracks,   ///< more than one essence track
  ClipWrapped,     ///< the essence is one element, which no index divides into frames
  NoEditRate,      ///< an edit rate that is not above 0
  UnknownEssence,  ///< essence of another kind than those of D-Cinema
};

/// What an MXF file is, beyond the kind of its essence. Where there is a fault, what was found up to there.
struct TrackFileIdentity {
  EssenceType_t Type = ESS_UNKNOWN;
  TrackFileFault Fault = TrackFileFault::NotMXF;
  UL OperationalPattern;
  UL EssenceContainer;          ///< of the plaintext; LabelMeaning tells what it means
  UL EssenceCoding;             ///< of pictures; no value where the file does not say
  bool HasSystemItems = false;  ///< edit units begin with system metadata, as broadcast files have them
  bool Encrypted = false;
  LabelSet_t LabelSet = LS_MXF_UNKNOWN;
  Ferro::UUID AssetID;

  /// True for a D-Cinema track file: OP-Atom, one track, frame-wrapped, no system items. Files with another operational
  /// pattern and with system items are read all the same, where they have no fault.
  [[nodiscard]] QUIRE_API bool IsTrackFile() const;
  /// For people, in English: "OP1a, with system items: not a D-Cinema track file", or the name of the kind.
  [[nodiscard]] QUIRE_API std::string EncodeString() const;
};

/// Finds out what a file is by its header and its first essence element. Logs as EssenceType does.
/// @return as EssenceType.
[[nodiscard]] QUIRE_API Result_t IdentifyTrackFile(const std::string& filename, TrackFileIdentity& identity);

}  // namespace QUIRE
