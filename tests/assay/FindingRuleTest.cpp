// SPDX-License-Identifier: BSD-3-Clause
#include "table/FindingsPage.h"

#include <Assay/Finding.h>

#include <Ferro/FileText.h>
#include <Sigil/Finding.h>

#include <gtest/gtest.h>

#include <cctype>
#include <set>

namespace {

using Assay::Finding;
using Assay::FindingClass;
using Assay::FindingID;
using Assay::FindingRule;
using Assay::Profile;

TEST(FindingRule, EveryFindingHasItsRule) {
  ASSERT_EQ(Assay::FindingRules().size(), Assay::FindingCount);
  for (size_t index = 0; index < Assay::FindingCount; ++index) {
    const FindingRule& rule = Assay::RuleOf(static_cast<FindingID>(index));
    EXPECT_EQ(static_cast<size_t>(rule.ID), index);
    EXPECT_EQ(Assay::FindRule(rule.Name), &rule);
  }
  EXPECT_EQ(Assay::FindRule("no-such-finding"), nullptr);
}

TEST(FindingRule, NamesAreLowerCaseWordsWithHyphensEachOnce) {
  std::set<std::string> names;
  for (const FindingRule& rule : Assay::FindingRules()) {
    const std::string name = rule.Name;
    EXPECT_TRUE(names.insert(name).second) << name;
    EXPECT_NE(name.find('-'), std::string::npos) << name;
    for (const char c : name) EXPECT_TRUE((c >= 'a' && c <= 'z') || c == '-' || (c >= '0' && c <= '9')) << name;
  }
}

TEST(FindingRule, EachHasOneSentenceAReasonAndAdvice) {
  for (const FindingRule& rule : Assay::FindingRules()) {
    const std::string sentence = rule.Sentence;
    EXPECT_TRUE(sentence.size() > 10 && sentence.size() <= 140) << rule.Name << ": " << sentence.size();
    EXPECT_EQ(sentence.back(), '.') << rule.Name;
    EXPECT_EQ(sentence.find(". "), std::string::npos) << rule.Name;
    for (const std::string& text : {sentence, std::string(rule.Reason), std::string(rule.Advice)}) {
      ASSERT_FALSE(text.empty()) << rule.Name;
      EXPECT_EQ(text.find('\n'), std::string::npos) << rule.Name;
      EXPECT_EQ(text.back(), '.') << rule.Name;
    }
  }
}

TEST(FindingRule, ClassesAreThereOnceEach) {
  for (const FindingRule& rule : Assay::FindingRules()) {
    std::set<FindingClass> classes(rule.Classes.All().begin(), rule.Classes.All().end());
    EXPECT_FALSE(classes.empty()) << rule.Name;
    EXPECT_EQ(classes.size(), rule.Classes.All().size()) << rule.Name;
    EXPECT_EQ(Finding(rule.ID).Class, rule.Classes.Usual()) << rule.Name;
  }
}

/// Whether a kind of finding leads to another over any number of consequences.
bool LeadsTo(FindingID from, FindingID to, std::set<FindingID>& seen) {
  for (const Assay::Consequence& consequence : Assay::RuleOf(from).Consequences)
    if (consequence.ID == to || (seen.insert(consequence.ID).second && LeadsTo(consequence.ID, to, seen))) return true;
  return false;
}

TEST(FindingRule, NothingFollowsFromItself) {
  for (const FindingRule& rule : Assay::FindingRules()) {
    std::set<FindingID> seen;
    EXPECT_FALSE(LeadsTo(rule.ID, rule.ID, seen)) << rule.Name;
  }
}

TEST(FindingRule, WhatFollowsCanBeNoWorse) {
  for (const FindingRule& rule : Assay::FindingRules())
    for (const Assay::Consequence& consequence : rule.Consequences) {
      const auto mildest = std::ranges::max(Assay::RuleOf(consequence.ID).Classes.All());
      EXPECT_LE(std::ranges::min(rule.Classes.All()), mildest)
          << rule.Name << ": " << Assay::RuleOf(consequence.ID).Name << " never follows";
    }
}

TEST(FindingRule, WhatSigilFindsHasItsRule) {
  for (size_t index = 0; index <= static_cast<size_t>(Sigil::FindingID::KdmKeyType); ++index) {
    const char* name = Sigil::FindingName(static_cast<Sigil::FindingID>(index));
    EXPECT_NE(Assay::FindRule(name), nullptr) << name;
  }
}

TEST(FindingRule, ThePageAboutAllFindingsIsThatOfTheTable) {
  std::string page;
  ASSERT_TRUE(Ferro::ReadFileIntoString(FINDINGS_PAGE, page, 1024 * 1024).Success());
  EXPECT_TRUE(page == Assay::FindingsPage()) << "docs/findings.md is old: build the target accept-findings";
}

TEST(FindingProfile, WhatFollowsFromAnotherNeverCounts) {
  Finding finding(FindingID::PklAssetMissing);
  EXPECT_TRUE(Counts(Profile::Plays, finding));
  finding.Cause = 0;
  EXPECT_FALSE(Counts(Profile::All, finding));
}

TEST(FindingProfile, EachCountsItsClasses) {
  const Finding error(FindingID::CplNoReel);
  const Finding warning(FindingID::ReelShort);
  const Finding profile(FindingID::CplAnnotation);
  const Finding smpte_only(FindingID::MarkerFFOC);
  const Finding interop(FindingID::PackageInterop);
  const Finding note(FindingID::PackageForeignFile);
  struct Row {
    Profile Value;
    bool CountsProfile, CountsSMPTEOnly, CountsInterop, CountsNote;
  };
  for (const Row& row : {Row{Profile::Plays, false, false, false, false}, Row{Profile::SMPTE, true, true, true, false},
                         Row{Profile::Interop, true, false, false, false}, Row{Profile::All, true, true, true, true}}) {
    const std::string name = Assay::ProfileName(row.Value);
    EXPECT_TRUE(Counts(row.Value, error)) << name;
    EXPECT_TRUE(Counts(row.Value, warning)) << name;
    EXPECT_EQ(Counts(row.Value, profile), row.CountsProfile) << name;
    EXPECT_EQ(Counts(row.Value, smpte_only), row.CountsSMPTEOnly) << name;
    EXPECT_EQ(Counts(row.Value, interop), row.CountsInterop) << name;
    EXPECT_EQ(Counts(row.Value, note), row.CountsNote) << name;
  }
}

TEST(FindingProfile, TheWorstClassIsOfTheFindingsThatCount) {
  EXPECT_FALSE(WorstClass(Profile::All, {}).has_value());
  EXPECT_FALSE(WorstClass(Profile::Plays, {Finding(FindingID::CplAnnotation)}).has_value());
  const Assay::FindingList findings{Finding(FindingID::CplAnnotation), Finding(FindingID::ReelShort)};
  EXPECT_EQ(WorstClass(Profile::SMPTE, findings), FindingClass::Warning);
  EXPECT_EQ(WorstClass(Profile::SMPTE, {findings.front()}), FindingClass::Profile);
}

TEST(FindingDeathTest, AClassThatTheRuleDoesNotHaveAsserts) {
  EXPECT_EQ(Finding(FindingID::AmPath, FindingClass::Warning).Class, FindingClass::Warning);
  EXPECT_DEATH(static_cast<void>(Finding(FindingID::CplNoReel, FindingClass::Note)), "Has");
}

}  // namespace
