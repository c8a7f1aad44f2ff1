// SPDX-License-Identifier: BSD-3-Clause
// Every kind of finding, in each of its classes, stands in a list that some test expects of a check. Such a test fails where
// it is not found.
#include <Assay/FindingRule.h>

#include <Ferro/FileText.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

namespace {

namespace fs = std::filesystem;
using Words = std::set<std::string>;

// These name findings without provoking them.
const Words NoProvocations = {"CausesTest.cpp", "FindingRuleTest.cpp", "ProvocationTest.cpp", "VerdictsTest.cpp"};

// What the command finds where it lays out a show or asks its store, and no list of its tests names yet.
const Words OfTheCommand = {
    "mic-invalid warning",
    "show-composition-missing",
    "show-length",
    "show-loop",
    "show-missing",
    "show-rate-changes",
    "show-refused",
    "show-remark",
    "show-size-changes",
    "show-sound-changes",
    "show-stereoscopy-changes",
    "show-unreadable",
    "store-folder-missing",
    "store-unverified",
};

/// "sign-missing", "sign-missing note": as lists of findings have them.
Words AllNames() {
  Words names;
  for (const Assay::FindingRule& rule : Assay::FindingRules())
    for (const Assay::FindingClass value : rule.Classes.All())
      names.insert(value == rule.Classes.Usual() ? std::string(rule.Name)
                                                 : std::string(rule.Name) + ' ' + FindingClassName(value));
  return names;
}

/// True where the innermost brace around a place of a source opens a list, and not a block of statements.
bool IsInList(const std::string& text, size_t at) {
  int closed = 0;
  while (at-- > 0 && text[at] != ';') {
    if (text[at] == '}') ++closed;
    if (text[at] != '{' || closed-- > 0) continue;
    const size_t before = at == 0 ? std::string::npos : text.find_last_not_of(" \n", at - 1);
    if (before == std::string::npos || std::string(");}").find(text[before]) != std::string::npos) return false;
    const std::string opener = text.substr(0, before + 1);
    return !opener.ends_with("const") && !opener.ends_with("else");
  }
  return false;
}

/// Which of the names a source has as texts in lists.
void AddListed(const std::string& text, const Words& names, Words& listed) {
  for (size_t open = text.find('"'); open != std::string::npos; open = text.find('"', open + 1)) {
    const size_t close = text.find('"', open + 1);
    if (close == std::string::npos) return;
    const std::string word = text.substr(open + 1, close - open - 1);
    if (names.contains(word) && IsInList(text, open)) listed.insert(word);
  }
}

Words Provoked() {
  const Words names = AllNames();
  Words provoked;
  for (const char* folder : {"assay", "tool", "system"})
    for (const auto& entry : fs::directory_iterator(fs::path(TEST_SOURCES) / folder)) {
      const std::string name = entry.path().filename().string();
      std::string text;
      if (!name.ends_with("Test.cpp") || NoProvocations.contains(name)) continue;
      EXPECT_TRUE(Ferro::ReadFileIntoString(entry.path().string(), text, 1024 * 1024).Success()) << name;
      AddListed(text, names, provoked);
    }
  return provoked;
}

TEST(Provocation, EveryFindingIsProvokedInEachOfItsClasses) {
  const Words provoked = Provoked();
  for (const std::string& name : AllNames())
    EXPECT_TRUE(provoked.contains(name) || OfTheCommand.contains(name)) << name << " is expected by no test";
}

TEST(Provocation, WhatIsProvokedIsNotExcused) {
  const Words names = AllNames();
  const Words provoked = Provoked();
  for (const std::string& name : OfTheCommand) {
    EXPECT_TRUE(names.contains(name)) << name << " is no finding";
    EXPECT_FALSE(provoked.contains(name)) << name << " has its test: take it out of the list";
  }
}

TEST(Provocation, OnlyListsCount) {
  const Words names = {"am-missing", "am-name", "am-path"};
  Words listed;
  AddListed("EXPECT_EQ(Found(), (Names{\"am-name\"})); { use(\"am-missing\"); } f() const { \"am-path\" }", names,
            listed);
  EXPECT_EQ(listed, Words{"am-name"});
}

}  // namespace
