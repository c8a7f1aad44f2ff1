// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "KeyAnswer.h"
#include "terminal/JsonReport.h"

#include <string>
#include <vector>

namespace Tool {

/// "now: kdm.xml serves, from 2026-03-02 09:00:00 (written in +01:00) until ...": safe to print, without line end.
[[nodiscard]] std::string KeyAnswerText(const KeyAnswer& answer);
[[nodiscard]] Json KeyAnswersJson(const std::vector<KeyAnswer>& answers);

}  // namespace Tool
