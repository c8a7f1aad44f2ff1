// SPDX-License-Identifier: BSD-3-Clause
#include "findings/FindingReport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Tool;

namespace {

Finding InReel(FindingID id, Ferro::ui32_t reel, std::optional<size_t> cause = std::nullopt) {
  Finding finding(id);
  finding.Place.CompositionTitle = "Feature";
  finding.Place.Reel = reel;
  finding.Cause = cause;
  return finding;
}

std::string Line(const char* severity, FindingID id, int reel) {
  return std::string(severity) + "Feature, reel " + std::to_string(reel) + ": " + Assay::RuleOf(id).Sentence + '\n';
}

std::string Advice(FindingID id) {
  return std::string("    ") + Assay::RuleOf(id).Advice + '\n';
}

TEST(FindingsText, TheWorstComesFirstAndAKindIsAdvisedOnOnce) {
  const FindingID warning = FindingID::ReelShort;
  const FindingID error = FindingID::FileDamaged;
  const FindingID missing = FindingID::PklAssetMissing;
  const FindingList findings = {InReel(warning, 1), InReel(missing, 2), InReel(error, 3), InReel(warning, 4)};
  EXPECT_EQ(FindingsText(findings, stderr), Line("error: ", error, 3) + Advice(error) + Line("missing: ", missing, 2) +
                                                Advice(missing) + Line("warning: ", warning, 1) +
                                                Line("warning: ", warning, 4) + Advice(warning));
}

TEST(FindingsText, WhatFollowsStandsBelowItsCauseAndDoesNotCount) {
  const FindingID error = FindingID::FileDamaged;
  const FindingID cause = FindingID::PklAssetSize;
  const FindingList findings = {InReel(cause, 1), InReel(error, 1, 0), InReel(error, 2, 1)};
  EXPECT_EQ(FindingsText(findings, stderr),
            Line("error: ", cause, 1) + Line("    so: ", error, 1) + Line("    so: ", error, 2) + Advice(cause));
  EXPECT_EQ(ExitCodeFor({InReel(FindingID::ReelShort, 1), InReel(error, 1, 0)}), ExitCode::Fine);
}

TEST(FindingsText, ACauseThatIsNoneHidesNothing) {
  const FindingID error = FindingID::FileDamaged;
  const FindingList findings = {InReel(error, 1, 0), InReel(error, 2, 7)};
  EXPECT_EQ(FindingsText(findings, stderr), Line("error: ", error, 1) + Line("error: ", error, 2) + Advice(error));
}

TEST(FindingLine, TellsWhereInTheReel) {
  Finding finding = InReel(FindingID::SoundClipping, 2);
  finding.Place.Use = Assay::ReelUse::Sound;
  finding.Place.Channel = 3;
  finding.Place.EditUnit = 48;
  finding.Expected = "0 samples";
  finding.Found = "4 samples";
  EXPECT_EQ(FindingLine(finding), std::string("Feature, reel 2, sound, channel 3, edit unit 48: ") +
                                      finding.Sentence() + " Expected 0 samples, found 4 samples.");
}

}  // namespace
