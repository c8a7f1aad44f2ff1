// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "WrapJob.h"

#include <Ferro/SHA1Digest.h>
#include <Ferro/UUID.h>
#include <QUIRE/Rational.h>

#include <string>
#include <vector>

namespace Tool {

/// A track file that was made.
struct WrapReport {
  std::string File;
  EssenceKind Kind = EssenceKind::Picture;
  Ferro::UUID ID;
  QUIRE::Rational EditRate;
  Ferro::ui32_t Duration = 0;  ///< edit units
  Ferro::ui32_t Padding = 0;   ///< samples of silence at the end of the last edit unit of sound
  Ferro::ui64_t Size = 0;      ///< bytes
  Ferro::SHA1 Digest;          ///< of the whole file
  bool Interop = false;        ///< labels of Interop, else of SMPTE
  bool Encrypted = false;
  Ferro::UUID KeyID;  ///< of encrypted essence
  std::vector<std::string> Warnings;
};

/// The report as lines of text.
[[nodiscard]] std::string WrapReportText(const WrapReport& report);
/// The report as JSON, schema strata-wrap-1.
[[nodiscard]] std::string WrapReportJson(const WrapReport& report);

}  // namespace Tool
