// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "terminal/Report.h"

#include <Ferro/UUID.h>
#include <QUIRE/Rational.h>

#include <string>

namespace Tool {

// What `strata info` tells of one path: a JSON object with "path", "kind", and what there is to tell of that kind. Texts
// and identifiers without value are left out. "problems" lists what is wrong, a sentence each.

/// Adds a text unless it is empty, an identifier unless it has no value.
void AddFact(Json& item, const char* key, const std::string& value);
void AddFact(Json& item, const char* key, const Ferro::UUID& value);
/// Adds a duration in edit units, and as time: "duration", "duration_text".
void AddDuration(Json& item, Ferro::ui64_t edit_units, const QUIRE::Rational& rate);
void AddProblem(Json& item, const std::string& sentence);

/// The text form of an item, from the model: a line for each fact, lists indented below their names.
[[nodiscard]] std::string InfoText(const Json& item);

}  // namespace Tool
