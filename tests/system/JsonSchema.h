// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <nlohmann/json.hpp>

#include <string>

/// The documented schema of that name, from docs/schema; fails the test where there is none.
[[nodiscard]] nlohmann::json DocumentedSchema(const std::string& name);

/// What is wrong with a document by the documented schema of that name, a line each; empty when nothing is.
[[nodiscard]] std::string SchemaErrors(const nlohmann::json& document, const std::string& name);

/// Fails the test unless `text`, as a command printed it, is a JSON document that says it is of the schema `name` and is.
void ExpectMatchesSchema(const std::string& text, const std::string& name);
