// SPDX-License-Identifier: BSD-3-Clause
#include "../support/TemporaryFolder.h"
#include "frames/KeptResults.h"

#include <Ferro/SHA1Digest.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Assay;
using Bytes = std::vector<ui8_t>;

constexpr FileState State = {1234, 5678};
constexpr DepthSet All = {Depth::Frames, Depth::Hash, Depth::Decode};

PassFile Looked(const TrackFile* track) {
  PassFile file;
  file.Package = "/package";
  file.Document = "picture.mxf";
  file.Path = "/package/picture.mxf";
  file.Track = track;
  file.LookedAt = All;
  file.Digest = Ferro::DigestText("picture");
  Finding marker(FindingID::J2KMarker);
  marker.Place.EditUnit = 7;
  marker.Place.EditRate = QUIRE::EditRate_24;
  marker.Place.Channel = 3;
  marker.Expected = "EOC at the end";
  marker.Found = "no EOC, edit unit 7";
  Finding undecodable(FindingID::J2KUndecodable);
  undecodable.Cause = 0;
  file.Findings = {marker, undecodable};
  FileFigures figures;
  figures.EditRate = QUIRE::EditRate_24;
  figures.Duration = 48;
  figures.Picture = PictureFigures{1.5, 2.5, 3, 250, 2, {1.0F, 2.5F}};
  figures.Channels = {{"L", -20.0}, {"HI", -std::numeric_limits<double>::infinity()}};
  file.Figures = figures;
  return file;
}

PassFile Unlooked(const TrackFile* track) {
  PassFile file = Looked(track);
  file.LookedAt = {};
  file.Digest = {};
  file.Findings.clear();
  file.Figures.reset();
  return file;
}

TrackFile Track() {
  TrackFile track;
  track.Package = "/package";
  track.Path = "picture.mxf";
  track.ID = *UUID::FromHex("a5a5a5a5-0000-4000-8000-000000000001");
  return track;
}

TEST(KeptResults, ComeBackAsTheyWere) {
  const TrackFile track = Track();
  const PassFile looked = Looked(&track);
  KeptResults kept;
  kept.Put(looked, State);
  KeptResults other;
  ASSERT_EQ(other.Decode(kept.Encode()), KeptState::Used);
  PassFile file = Unlooked(&track);
  ASSERT_TRUE(other.Take(file, State, All));
  EXPECT_EQ(file.LookedAt, All);
  EXPECT_EQ(file.Digest, looked.Digest);
  ASSERT_EQ(file.Findings.size(), 2U);
  EXPECT_EQ(file.Findings[0].ID, FindingID::J2KMarker);
  EXPECT_EQ(file.Findings[0].Place.Asset, track.ID);
  EXPECT_EQ(file.Findings[0].Place.EditUnit, 7U);
  EXPECT_EQ(file.Findings[0].Place.Channel, 3U);
  EXPECT_EQ(file.Findings[0].Found, looked.Findings[0].Found);
  EXPECT_EQ(file.Findings[1].Cause, 0U);
  ASSERT_TRUE(file.Figures && file.Figures->Picture);
  EXPECT_EQ(file.Figures->Asset, track.ID);
  EXPECT_EQ(file.Figures->Picture->Spans, looked.Figures->Picture->Spans);
  EXPECT_EQ(file.Figures->Picture->PeakEditUnit, 3U);
  ASSERT_EQ(file.Figures->Channels.size(), 2U);
  EXPECT_TRUE(file.Figures->Channels[1].IsSilent());
}

TEST(KeptResults, WhatIsNotWantedIsLeftOut) {
  const TrackFile track = Track();
  KeptResults kept;
  kept.Put(Looked(&track), State);
  PassFile file = Unlooked(&track);
  ASSERT_TRUE(kept.Take(file, State, {Depth::Hash}));
  EXPECT_TRUE(file.Findings.empty());
  EXPECT_FALSE(file.Figures.has_value());
  file = Unlooked(&track);
  ASSERT_TRUE(kept.Take(file, State, {Depth::Decode}));
  ASSERT_EQ(file.Findings.size(), 1U);
  EXPECT_FALSE(file.Findings[0].Cause.has_value()) << "its cause was not looked for";
}

TEST(KeptResults, OfSeveralPassesAddUp) {
  const TrackFile track = Track();
  PassFile frames = Looked(&track);
  frames.LookedAt = {Depth::Frames, Depth::Decode};
  frames.Digest = {};
  PassFile digest = Unlooked(&track);
  digest.LookedAt = {Depth::Hash};
  digest.Digest = Ferro::DigestText("picture");
  for (const bool is_digest_first : {true, false}) {
    KeptResults kept;
    kept.Put(is_digest_first ? digest : frames, State);
    kept.Put(is_digest_first ? frames : digest, State);
    PassFile file = Unlooked(&track);
    ASSERT_TRUE(kept.Take(file, State, All));
    EXPECT_EQ(file.Digest, digest.Digest);
    EXPECT_TRUE(file.Figures.has_value());
    ASSERT_EQ(file.Findings.size(), 2U);
    EXPECT_EQ(file.Findings[1].Cause, 0U);

    kept.Put(digest, {State.Size, State.Modified + 1});
    file = Unlooked(&track);
    EXPECT_FALSE(kept.Take(file, {State.Size, State.Modified + 1}, {Depth::Frames})) << "it was of another file";
  }
}

TEST(KeptResults, ALesserPassDoesNotTakeDecodingAway) {
  const TrackFile track = Track();
  PassFile decoded = Looked(&track);
  decoded.LookedAt = {Depth::Frames, Depth::Decode};
  decoded.Digest = {};
  PassFile lesser = Looked(&track);
  lesser.LookedAt = {Depth::Frames, Depth::Hash};
  lesser.Findings.pop_back();
  KeptResults kept;
  kept.Put(decoded, State);
  kept.Put(lesser, State);
  PassFile file = Unlooked(&track);
  ASSERT_TRUE(kept.Take(file, State, All));
  EXPECT_EQ(file.Findings.size(), 2U);
}

TEST(KeptResults, DamagedFramesAreMetByWhoDecodes) {
  const TrackFile track = Track();
  PassFile looked = Looked(&track);
  looked.Findings.assign(1, Finding(FindingID::FileDamaged));
  KeptResults kept;
  kept.Put(looked, State);
  for (const Depth depth : {Depth::Frames, Depth::Decode}) {
    PassFile file = Unlooked(&track);
    ASSERT_TRUE(kept.Take(file, State, {depth}));
    EXPECT_EQ(file.Findings.size(), 1U);
  }
}

TEST(KeptResults, CountForTheSameFileAlone) {
  const TrackFile track = Track();
  PassFile looked = Looked(&track);
  looked.LookedAt = {Depth::Hash};
  KeptResults kept;
  kept.Put(looked, State);
  PassFile file = Unlooked(&track);
  EXPECT_FALSE(kept.Take(file, {State.Size + 1, State.Modified}, {Depth::Hash}));
  EXPECT_FALSE(kept.Take(file, {State.Size, State.Modified + 1}, {Depth::Hash}));
  EXPECT_FALSE(kept.Take(file, State, {Depth::Hash, Depth::Frames})) << "its frames were not looked at";
  file.Path = "/package/other.mxf";
  EXPECT_FALSE(kept.Take(file, State, {Depth::Hash}));
  EXPECT_TRUE(file.LookedAt.IsEmpty());
}

TEST(KeptResults, AnyDamageIsNoticed) {
  const TrackFile track = Track();
  KeptResults kept;
  kept.Put(Looked(&track), State);
  const Bytes sound = kept.Encode();
  KeptResults other;
  for (size_t i = 0; i < sound.size(); ++i) {
    Bytes bytes = sound;
    bytes[i] ^= 0x10;
    ASSERT_EQ(other.Decode(bytes), KeptState::Damaged) << i;
    bytes.assign(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(i));
    ASSERT_EQ(other.Decode(bytes), KeptState::Damaged) << i;
    ASSERT_EQ(other.Size(), 0U);
  }
}

TEST(KeptResults, AnOlderFormIsNotTaken) {
  Bytes bytes = KeptResults().Encode();
  bytes.resize(bytes.size() - SHA1::Size);
  bytes[11] = 0;  // the form's number
  Ferro::SHA1Digest digest;
  digest.Update(bytes);
  const SHA1 found = digest.Finish();
  bytes.insert(bytes.end(), found.Bytes().begin(), found.Bytes().end());
  EXPECT_EQ(KeptResults().Decode(bytes), KeptState::Older);
}

TEST(KeptResults, LieInAFile) {
  const testsupport::TemporaryFolder folder;
  const TrackFile track = Track();
  KeptResults kept;
  EXPECT_EQ(kept.Read(folder.Path("kept")), KeptState::None);
  kept.Put(Looked(&track), State);
  ASSERT_EQ(kept.Write(folder.Path("kept")), Ferro::RESULT_OK);
  EXPECT_EQ(folder.Names(), std::set<std::string>{"kept"});
  KeptResults other;
  EXPECT_EQ(other.Read(folder.Path("kept")), KeptState::Used);
  EXPECT_EQ(other.Size(), 1U);
  folder.Write("other", "something else");
  EXPECT_EQ(other.Read(folder.Path("other")), KeptState::Damaged);
  EXPECT_EQ(other.Size(), 0U);
  EXPECT_TRUE(kept.Write(folder.Path("no/such/folder")).Failure());
}

}  // namespace
