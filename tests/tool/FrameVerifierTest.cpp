// SPDX-License-Identifier: BSD-3-Clause
#include "play/FrameVerifier.h"

#include "FakeTrack.h"
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"
#include "play/PlayReport.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace Tool;

namespace {

using namespace testsupport;

/// A picture of five edit units in a store, and frames of it as the transport has them.
class FrameVerifierTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(MakeTrackFile(TrackKind::Picture, m_Folder.Path("picture.mxf"), m_Spec).Success());
    ASSERT_TRUE(m_Store.Open().Success());
    ASSERT_TRUE(m_Store.AddFolder(m_Folder.Folder().string()).Success());
    FakeTrack::Facts facts;
    facts.AssetID = m_Spec.AssetID;
    m_Track.Is = facts;
  }

  [[nodiscard]] DeliveredFrame Frame(const Bytes& bytes, Ferro::ui32_t number) const {
    return {m_Channel, m_Track, number + 100, number, bytes, {}};
  }

  TemporaryFolder m_Folder;
  TrackFileSpec m_Spec;
  Cairn::AssetStore m_Store;
  Sigil::KeyRing m_Keys;
  FakeTrack m_Track;
  const std::string m_Channel = "picture";
};

TEST_F(FrameVerifierTest, FrameOfTheFileIsTheSame) {
  FrameVerifier verifier(m_Store, m_Keys);
  for (Ferro::ui32_t number = 0; number < 5; ++number)
    EXPECT_TRUE(verifier.Inspect(Frame(MakeFrame(TrackKind::Picture, m_Spec, number), number)));
  EXPECT_EQ(verifier.Outcome().Compared, 5U);
  EXPECT_EQ(verifier.Outcome().Different, 0U);
  EXPECT_TRUE(verifier.Outcome().Differences.empty());
}

TEST_F(FrameVerifierTest, WrongFrameIsToldWithItsTrackAndEditUnits) {
  FrameVerifier verifier(m_Store, m_Keys);
  EXPECT_FALSE(verifier.Inspect(Frame(MakeFrame(TrackKind::Picture, m_Spec, 2), 3)));
  PlayReport report;
  report.Verified = verifier.Outcome();
  const auto verified = nlohmann::json::parse(PlayJson(report))["verified"];
  EXPECT_EQ(verified, nlohmann::json::parse(R"({"compared": 1, "different": 1, "differences": [{
    "channel": "picture", "edit_unit": 103, "file_edit_unit": 3,
    "asset_id": "a5a5a5a5-0000-4000-8000-000000000001"}]})"));
}

TEST_F(FrameVerifierTest, OneWrongByteAndOneMissingByteAreDifferences) {
  FrameVerifier verifier(m_Store, m_Keys);
  Bytes frame = MakeFrame(TrackKind::Picture, m_Spec, 4);
  frame.back() ^= 1;
  EXPECT_FALSE(verifier.Inspect(Frame(frame, 4)));
  frame.back() ^= 1;
  frame.pop_back();
  EXPECT_FALSE(verifier.Inspect(Frame(frame, 4)));
  EXPECT_EQ(verifier.Outcome().Different, 2U);
}

TEST_F(FrameVerifierTest, KeepsTheFirstHundredDifferences) {
  FrameVerifier verifier(m_Store, m_Keys);
  const Bytes frame(10);
  for (int i = 0; i < 150; ++i) EXPECT_FALSE(verifier.Inspect(Frame(frame, 0)));
  EXPECT_EQ(verifier.Outcome().Different, 150U);
  EXPECT_EQ(verifier.Outcome().Differences.size(), 100U);
}

TEST_F(FrameVerifierTest, FrameWithoutFileIsNotCompared) {
  FrameVerifier verifier(m_Store, m_Keys);
  m_Track.Is.AssetID = *Ferro::UUID::FromHex("b5b5b5b5-0000-4000-8000-000000000001");
  EXPECT_TRUE(verifier.Inspect(Frame(Bytes(10), 0)));
  EXPECT_EQ(verifier.Outcome().Compared, 0U);
}

PlayReport ReportWith(bool interrupted, Ferro::ui64_t repeated) {
  PlayReport report;
  report.Interrupted = interrupted;
  report.Channels.resize(2);
  report.Channels.back().Repeated = repeated;
  return report;
}

TEST(PlayReport, FramesOfMissingFilesAreNotPlayableAndTold) {
  PlayReport report = ReportWith(false, 0);
  report.Channels.back().Missing = 24;
  EXPECT_EQ(report.Code(), ExitCode::NotPlayable);
  EXPECT_NE(PlayText(report).find("\n24 frames are of files that could not be opened: "), std::string::npos);
}

TEST(PlayReport, FramesThatCouldNotBeReadAreNotPlayable) {
  EXPECT_EQ(ReportWith(false, 3).Code(), ExitCode::NotPlayable);
  EXPECT_EQ(ReportWith(false, 0).Code(), ExitCode::Fine);
  EXPECT_EQ(ReportWith(true, 3).Code(), ExitCode::Interrupted);
}

TEST(PlayReport, DifferentFramesAreNotPlayable) {
  PlayReport report = ReportWith(false, 0);
  report.Verified = Verification{9, 1, {}};
  EXPECT_EQ(report.Code(), ExitCode::NotPlayable);
  report.Verified->Different = 0;
  EXPECT_EQ(report.Code(), ExitCode::Fine);
  report.Interrupted = true;
  report.Verified->Different = 1;
  EXPECT_EQ(report.Code(), ExitCode::Interrupted);
}

}  // namespace
