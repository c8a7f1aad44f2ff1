// SPDX-License-Identifier: BSD-3-Clause
#include "JsonSchema.h"

#include <gtest/gtest.h>

#include <fstream>

// The validator's headers are not clean of the warnings that stop this build.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wsign-conversion"
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wextra"
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validation_results.hpp>
#include <valijson/validator.hpp>
#pragma GCC diagnostic pop

nlohmann::json DocumentedSchema(const std::string& name) {
  std::ifstream file(std::string(JSON_SCHEMA_FOLDER) + '/' + name + ".json");
  EXPECT_TRUE(file) << "docs/schema has no " << name << ".json";
  return file ? nlohmann::json::parse(file) : nlohmann::json();
}

std::string SchemaErrors(const nlohmann::json& document, const std::string& name) {
  using Adapter = valijson::adapters::NlohmannJsonAdapter;
  const nlohmann::json schema_text = DocumentedSchema(name);
  if (!schema_text.is_object()) return "no schema";
  valijson::Schema schema;
  valijson::SchemaParser().populateSchema(Adapter(schema_text), schema);
  valijson::ValidationResults results;
  valijson::Validator().validate(schema, Adapter(document), &results);
  std::string errors;
  for (const auto& error : results) {
    for (const std::string& step : error.context) errors += step;
    errors += ": " + error.description + '\n';
  }
  return errors;
}

void ExpectMatchesSchema(const std::string& text, const std::string& name) {
  const auto document = nlohmann::json::parse(text, nullptr, false);
  ASSERT_FALSE(document.is_discarded()) << text;
  ASSERT_TRUE(document.is_object() && document.contains("schema")) << text;
  EXPECT_EQ(document["schema"], name);
  EXPECT_EQ(SchemaErrors(document, name), "") << text;
}
