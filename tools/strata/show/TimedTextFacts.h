// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>
#include <Ferro/UUID.h>
#include <QUIRE/Rational.h>

#include <string>

namespace Tool {

/// What a timed-text document (ST 428-7) says of itself.
struct TimedTextFacts {
  Ferro::UUID ID;
  std::string Namespace;
  std::string Language;            ///< as written; may be empty
  QUIRE::Rational EditRate;        ///< 0/0 when not said
  Ferro::ui32_t TimeCodeRate = 0;  ///< edit units per second of the times in the document
  double End = 0;                  ///< seconds at which the last line ends

  /// The end in edit units, rounded up.
  [[nodiscard]] Ferro::ui32_t EndInEditUnits(const QUIRE::Rational& edit_rate) const;
};

/// False, with a line in the log where the text is not well-formed XML, for anything but such a document.
[[nodiscard]] bool ReadTimedTextFacts(const std::string& xml, TimedTextFacts& facts);

}  // namespace Tool
