// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <nlohmann/json.hpp>

#include <functional>
#include <string>

namespace Tool {

/// What a command reports, as one model from which both outputs are made.
using Json = nlohmann::ordered_json;

/// A model that begins with the schema's name and version, "strata-<command>-<version>".
[[nodiscard]] Json NewReport(const std::string& command, int version = 1);

/// The same model with every text in one line and safe to print: its titles and file names come from anyone's disks.
[[nodiscard]] Json DisplayModel(Json model);

/// Prints a report to standard output: as JSON, or as the text that `render` makes of its DisplayModel. Text that is not
/// UTF-8 is shown with replacement characters.
void PrintReport(const Json& report, bool as_json, const std::function<std::string(const Json&)>& render);

}  // namespace Tool
