// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "WrapJob.h"

#include <Ferro/SHA1Digest.h>
#include <Ferro/UUID.h>
#include <QUIRE/Rational.h>

#include <string>

namespace Tool {

/// A track file that was made.
struct WrapReport {
  std::string File;
  EssenceKind Kind = EssenceKind::Picture;
  Ferro::UUID ID;
  QUIRE::Rational EditRate;
  Ferro::ui32_t Duration = 0;  ///< edit units
  Ferro::ui64_t Size = 0;      ///< bytes
  Ferro::SHA1 Digest;          ///< of the whole file
  bool Interop = false;        ///< labels of Interop, else of SMPTE
  bool Encrypted = false;
  Ferro::UUID KeyID;  ///< of encrypted essence
};

/// The report as lines of text.
[[nodiscard]] std::string WrapReportText(const WrapReport& report);
/// The report as JSON, schema strata-wrap-1.
[[nodiscard]] std::string WrapReportJson(const WrapReport& report);

}  // namespace Tool
