// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/FileType.h>
#include <Sigil/KeyRing.h>

#include <functional>
#include <string>
#include <vector>

namespace Tool {

/// What came of verifying every frame of an encrypted track file.
struct FrameIntegrity {
  bool IsEncrypted = false;         ///< otherwise nothing was verified
  bool HasKey = false;              ///< otherwise nothing was verified
  bool HasCodes = false;            ///< otherwise only the key was tried on each frame
  bool HasStandardSequence = true;  ///< as QUIRE::TrackEncryption
  Ferro::ui32_t Frames = 0;         ///< edit units looked at
  Ferro::ui32_t Bad = 0;            ///< of these
  Ferro::ui32_t FirstBad = 0;       ///< the first of them
  std::string Reason;               ///< why it is: the result's label

  [[nodiscard]] bool WasVerified() const { return IsEncrypted && HasKey; }
};

struct EncryptedFile {
  std::string Filename;
  Cairn::FileType_t Type = Cairn::FT_UNKNOWN;
};

/// Decrypts every frame of the files and verifies its integrity, on several threads; of text the document and what belongs
/// to it. A file that cannot be opened is not verified.
/// @param go_on  told how many edit units are done, and how many there are; false ends the work.
/// @return one for each file; less than all was looked at where `go_on` ended it.
[[nodiscard]] std::vector<FrameIntegrity> VerifyFrames(const std::vector<EncryptedFile>& files,
                                                       const Sigil::KeyRing& keys,
                                                       const std::function<bool(Ferro::ui64_t, Ferro::ui64_t)>& go_on);

}  // namespace Tool
