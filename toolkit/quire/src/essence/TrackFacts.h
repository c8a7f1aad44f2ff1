// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/EssenceType.h>
#include <QUIRE/LabelSet.h>
#include <QUIRE/MXF/OP1aHeader.h>
#include <QUIRE/Rational.h>
#include <QUIRE/WriterInfo.h>

#include <Ferro/UUID.h>

namespace QUIRE {

/// What a track file's header says of its essence. The pointers lead into the header, which must stay alive.
struct TrackFacts {
  EssenceType_t Type = ESS_MXF_OTHER;
  const MXF::FileDescriptor* Descriptor = nullptr;
  const MXF::CryptographicContext* Crypto = nullptr;  ///< null when the file has none
  UL EssenceContainer;                                ///< of the plaintext
  Rational EditRate;                                  ///< both numbers above 0
  ui64_t Duration = 0;                                ///< edit units; 0 when the header does not say
  ui32_t BodySID = 1;                                 ///< of the essence stream
  bool Encrypted = false;
  EncryptionInfo Algorithms;
  Ferro::UUID AssetID;
  LabelSet_t LabelSet = LS_MXF_UNKNOWN;

  /// Edit units hold two elements, one for each eye.
  [[nodiscard]] bool IsStereoscopic() const { return Type == ESS_JPEG_2000_S; }
};

/// Gathers the facts of a header. `facts` holds what was found up to the fault.
[[nodiscard]] TrackFileFault GatherTrackFacts(const MXF::OP1aHeader& header, TrackFacts& facts);

/// What a file is whose header has no fault. System items are not looked for.
[[nodiscard]] TrackFileIdentity IdentityOf(const MXF::OP1aHeader& header, const TrackFacts& facts);

/// A fault in words.
struct FaultWords {
  TrackFileFault Fault;
  const char* Clause;  ///< goes on from "cannot be read, "
  const char* Remark;  ///< goes on from "OP1a, "
};
[[nodiscard]] const FaultWords& WordsOf(TrackFileFault fault);

}  // namespace QUIRE
