// SPDX-License-Identifier: BSD-3-Clause
#include "JsonSchema.h"

#include "SampleFolder.h"
#include "app/CommandLine.h"

#include <filesystem>
#include <fstream>
#include <set>

using namespace Tool;
using Json = nlohmann::json;

namespace {

class JsonSchema : public SampleFolder {};

std::vector<std::string> SchemaNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(JSON_SCHEMA_FOLDER))
    names.push_back(entry.path().stem());
  std::sort(names.begin(), names.end());
  return names;
}

// Every property, at whatever depth.
void ExpectDescriptions(const Json& schema, const std::string& place) {
  if (schema.contains("properties"))
    for (const auto& [key, property] : schema["properties"].items()) {
      EXPECT_TRUE(property.contains("description")) << place << '.' << key;
      ExpectDescriptions(property, place + '.' + key);
    }
  if (schema.contains("items")) ExpectDescriptions(schema["items"], place + "[]");
  if (schema.contains("definitions"))
    for (const auto& [key, definition] : schema["definitions"].items())
      ExpectDescriptions(definition, place + '/' + key);
  const bool is_closed = schema.value("additionalProperties", Json()) == Json(false);
  EXPECT_TRUE(schema.value("type", Json()) != "object" || is_closed) << place << " lets undocumented keys pass";
}

TEST(JsonSchemas, EveryKeyIsDescribed) {
  for (const std::string& name : SchemaNames()) ExpectDescriptions(DocumentedSchema(name), name);
}

TEST(JsonSchemas, EachIsNamedInItsFileAndOnThePage) {
  std::ifstream file(std::string(JSON_SCHEMA_FOLDER) + "/../json.md");
  const std::string page(std::istreambuf_iterator<char>(file), {});
  ASSERT_FALSE(page.empty());
  for (const std::string& name : SchemaNames()) {
    EXPECT_EQ(DocumentedSchema(name)["properties"]["schema"]["const"], name);
    EXPECT_THAT(page, testing::HasSubstr("(schema/" + name + ".json)"));
  }
}

// The schema of `strata store list --json` is strata-store-list-1.
void ExpectSchemas(const Command& command, const std::string& name) {
  const bool reports = std::any_of(command.Options().begin(), command.Options().end(),
                                   [](const Option& option) { return option.Names == "--json"; });
  EXPECT_TRUE(!reports || DocumentedSchema(name + "-1").is_object()) << name;
  for (const Command& sub : command.Commands()) ExpectSchemas(sub, name + '-' + sub.Name());
}

TEST(JsonSchemas, EachCommandThatReportsHasOne) {
  bool is_verbose = false;
  ExpectSchemas(DescribeProgram(is_verbose), "strata");
}

TEST(JsonSchemas, OffencesAreSeen) {
  const Json good{{"schema", "strata-check-1"},
                  {"playable", true},
                  {"exit_code", 0},
                  {"duration", 1},
                  {"duration_seconds", 0},
                  {"hash", false},
                  {"compositions", Json::array()},
                  {"findings", Json::array()},
                  {"verdict", "It will play."}};
  EXPECT_EQ(SchemaErrors(good, "strata-check-1"), "");
  Json missing = good;
  missing.erase("verdict");
  EXPECT_NE(SchemaErrors(missing, "strata-check-1"), "");
  Json undocumented = good;
  undocumented["mood"] = "fine";
  EXPECT_NE(SchemaErrors(undocumented, "strata-check-1"), "");
  Json mistyped = good;
  mistyped["duration"] = "1";
  EXPECT_NE(SchemaErrors(mistyped, "strata-check-1"), "");
  Json nested = good;
  nested["findings"].push_back(Json{{"severity", "error"}});
  EXPECT_NE(SchemaErrors(nested, "strata-check-1"), "");
}

TEST_F(JsonSchema, CheckOfAShowThatPlays) {
  StrataProgram check({"check", Show(), "--json"});
  EXPECT_EQ(check.Wait(), 0);
  ExpectMatchesSchema(check.Output(), "strata-check-1");
}

TEST_F(JsonSchema, CheckOfAShowWithMissingAndBrokenAssets) {
  std::filesystem::remove(Show("Trailer/picture-1.mxf"));
  std::filesystem::resize_file(Show("Feature/sound-1.mxf"), 1000);
  StrataProgram check({"check", Show(), "--json", "--hash"});
  EXPECT_EQ(check.Wait(), 2);
  ExpectMatchesSchema(check.Output(), "strata-check-1");
}

TEST_F(JsonSchema, PlayWithAndWithoutVerifying) {
  StrataProgram plain({"play", Show(), "--speed", "max", "--json"});
  EXPECT_EQ(plain.Wait(), 0);
  ExpectMatchesSchema(plain.Output(), "strata-play-1");
  StrataProgram verified({"play", Show(), "--speed", "max", "--json", "--verify"});
  EXPECT_EQ(verified.Wait(), 0);
  ExpectMatchesSchema(verified.Output(), "strata-play-1");
}

}  // namespace
