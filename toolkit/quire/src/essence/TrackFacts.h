// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/EssenceType.h>
#include <QUIRE/LabelSet.h>
#include <QUIRE/MXF/OP1aHeader.h>
#include <QUIRE/Rational.h>

#include <Ferro/UUID.h>

namespace QUIRE {

/// What a track file's header says of its essence. The pointers lead into the header, which must stay alive.
struct TrackFacts {
  EssenceType_t Type = ESS_MXF_OTHER;
  const MXF::FileDescriptor* Descriptor = nullptr;
  const MXF::CryptographicContext* Crypto = nullptr;  ///< null when the file has none
  Rational EditRate;                                  ///< both numbers above 0
  ui64_t Duration = 0;                                ///< edit units; 0 when the header does not say
  ui32_t BodySID = 1;                                 ///< of the essence stream
  bool Encrypted = false;
  Ferro::UUID AssetID;
  LabelSet_t LabelSet = LS_MXF_UNKNOWN;

  /// Edit units hold two elements, one for each eye.
  [[nodiscard]] bool IsStereoscopic() const { return Type == ESS_JPEG_2000_S; }
};

/// Gathers the facts of a header.
/// @return null, or what makes the file unfit for reading; `facts` then holds what was found up to there.
[[nodiscard]] const char* GatherTrackFacts(const MXF::OP1aHeader& header, TrackFacts& facts);

/// True when `key` is that of an essence element of this type; registry version, element count and element number are
/// not compared (ST 379-1).
[[nodiscard]] bool IsElementKeyOf(EssenceType_t type, const ui8_t* key);

}  // namespace QUIRE
