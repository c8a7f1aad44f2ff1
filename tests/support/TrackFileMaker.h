// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "EssenceMaker.h"

#include <QUIRE/AtmosDescriptor.h>
#include <QUIRE/Crypto.h>
#include <QUIRE/DCDataDescriptor.h>
#include <QUIRE/FrameBuffer.h>
#include <QUIRE/MCALabel.h>
#include <QUIRE/PictureDescriptor.h>
#include <QUIRE/TimedTextDescriptor.h>
#include <QUIRE/VideoDescriptor.h>
#include <QUIRE/WriterInfo.h>
#include <QUIRE/WriterOptions.h>

#include <Ferro/UUID.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace testsupport {

enum class TrackKind { Picture, StereoscopicPicture, MPEG2, Sound, Data, Atmos, Text };

/// How a track file is encrypted.
struct TrackFileKey {
  Ferro::UUID ContextID = *Ferro::UUID::FromHex("c0c0c0c0-0000-4000-8000-000000000001");
  Ferro::UUID KeyID = *Ferro::UUID::FromHex("d0d0d0d0-0000-4000-8000-000000000001");
  std::array<QUIRE::ui8_t, QUIRE::KeyLen> Key = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
  bool UsesHMAC = true;
  QUIRE::ui32_t PlaintextOffset = 0;  ///< leading bytes of each frame left in clear; not of timed text
};

/// A small track file, described. Everything has a value that works.
struct TrackFileSpec {
  Ferro::UUID AssetID = *Ferro::UUID::FromHex("a5a5a5a5-0000-4000-8000-000000000001");
  QUIRE::Rational EditRate = QUIRE::EditRate_24;
  QUIRE::ui32_t Duration = 5;  ///< edit units
  QUIRE::LabelSet_t LabelSet = QUIRE::LS_MXF_SMPTE;
  std::optional<TrackFileKey> Key;  ///< none: in clear

  // Picture
  QUIRE::ui32_t Width = 64;
  QUIRE::ui32_t Height = 36;

  // Sound
  QUIRE::Rational SamplingRate = QUIRE::SampleRate_48k;
  QUIRE::ui32_t ChannelCount = 6;
  QUIRE::ui32_t QuantizationBits = 24;
  /// None: configuration 1 in a SMPTE file, no label in an Interop file.
  std::optional<QUIRE::PCM::ChannelFormat_t> ChannelFormat;
  /// Not empty: multichannel labels instead, in QUIRE::PCM::MakeMCALabels' form.
  std::string MCAConfiguration;

  // Text: the document has these resources, the fonts first.
  std::vector<size_t> FontSizes;
  std::vector<size_t> ImageSizes;
  std::string Document;    ///< not empty: the document instead of the made one
  Ferro::UUID DocumentID;  ///< no value: that of the track file

  // Immersive audio
  QUIRE::ui32_t FirstFrame = 0;
};

/// Writes a track file with QUIRE's writers; two calls with the same arguments write the same bytes.
[[nodiscard]] QUIRE::Result_t MakeTrackFile(TrackKind kind, const std::string& filename,
                                            const TrackFileSpec& spec = {});

/// Replaces a file's random index pack by one that lists its first `count` partitions only.
void CutIndexPack(const std::string& filename, size_t count);

// What such a file contains, for comparison.

/// The plaintext of one edit unit, not of text. In a stereoscopic file that of the left eye, or with `right_eye` of the
/// right one. MPEG-2 pictures come in groups of six, stored I P B B P P, displayed I B B P P P.
Bytes MakeFrame(TrackKind kind, const TrackFileSpec& spec, QUIRE::ui32_t number, bool right_eye = false);
/// The text document, and its resources in the descriptor's order.
std::string MakeText(const TrackFileSpec& spec);
std::vector<Bytes> MakeResources(const TrackFileSpec& spec);

QUIRE::WriterInfo MakeWriterInfo(const TrackFileSpec& spec);
/// The seed of all derived identifiers, and 2026-01-02T03:04:05Z.
QUIRE::WriterOptions MakeWriterOptions();
QUIRE::JP2K::PictureDescriptor MakePictureDescriptor(const TrackFileSpec& spec, bool stereoscopic = false);
QUIRE::MPEG2::VideoDescriptor MakeVideoDescriptor(const TrackFileSpec& spec);
QUIRE::PCM::AudioDescriptor MakeAudioDescriptor(const TrackFileSpec& spec);
QUIRE::PCM::MCALabelList MakeLabels(const TrackFileSpec& spec);
QUIRE::DCData::DCDataDescriptor MakeDataDescriptor(const TrackFileSpec& spec);
QUIRE::ATMOS::AtmosDescriptor MakeAtmosDescriptor(const TrackFileSpec& spec);
QUIRE::TimedText::TimedTextDescriptor MakeTextDescriptor(const TrackFileSpec& spec);

/// Puts bytes into a buffer of just that capacity.
void FillBuffer(const Bytes& bytes, QUIRE::FrameBuffer& buffer);

/// The contexts for a spec's key; null pointers where it calls for none.
class WriteContexts {
 public:
  explicit WriteContexts(const TrackFileSpec& spec);
  [[nodiscard]] QUIRE::AESEncContext* Encryption() { return m_HasKey ? &m_Encryption : nullptr; }
  [[nodiscard]] QUIRE::HMACContext* Integrity() { return m_UsesHMAC ? &m_Integrity : nullptr; }

 private:
  QUIRE::AESEncContext m_Encryption;
  QUIRE::HMACContext m_Integrity;
  bool m_HasKey = false;
  bool m_UsesHMAC = false;
};

}  // namespace testsupport
