// SPDX-License-Identifier: BSD-3-Clause
// What the loaders of sound, text and auxiliary data have in common, each rule for each of them.
#include "CompositionLoadingFixture.h"

#include <Cairn/Result.h>
#include <QUIRE/Result.h>

#include <functional>

namespace StrataTest {
namespace {

// The asset kinds beside the picture: how one is added to a reel, and what its messages say.
struct Sort {
  const char* Name;
  TrackKind Kind;
  std::function<Cairn::GenericAsset&(Reel&, const AssetInfo&)> Add;
  std::function<size_t(const Strata::TimelineReel&)> Count;
  const char* Missing;
  const char* Words;
  const char* Digest;
  const char* Types;
  const char* Track;  // once it is open
};

const Sort Sorts[] = {
    {"Sound", TrackKind::Sound,
     [](Reel& r, const AssetInfo& i) -> Cairn::GenericAsset& { return r.MainSound = AssetOf<SoundAsset>(i); },
     [](const Strata::TimelineReel& r) { return size_t{!r.MainSound.empty()}; }, "Sound asset missing", "MainSound",
     "MainSound", "PCM", "MainSound"},
    {"OnScreenText", TrackKind::Text,
     [](Reel& r, const AssetInfo& i) -> Cairn::GenericAsset& { return r.MainSubtitle = AssetOf<TimedTextAsset>(i); },
     [](const Strata::TimelineReel& r) { return size_t{!r.OnScreenText.empty()}; }, "On-screen text asset missing",
     "On-screen text", "MainSubtitle", "CineCanvas or ST 429-5", "MainSubtitle"},
    {"OffScreenText", TrackKind::Text,
     [](Reel& r, const AssetInfo& i) -> Cairn::GenericAsset& {
       return r.OffScreenText.emplace_back(AssetOf<TimedTextAsset>(i));
     },
     [](const Strata::TimelineReel& r) { return r.OffScreenText.size(); }, "Off-screen text asset missing",
     "Off-screen text", "Off-screen text", "CineCanvas or ST 429-5", "ClosedSubtitle"},
    {"AuxData", TrackKind::Data,
     [](Reel& r, const AssetInfo& i) -> Cairn::GenericAsset& {
       return r.AuxData.emplace_back(AssetOf<AuxDataAsset>(i));
     },
     [](const Strata::TimelineReel& r) { return r.AuxData.size(); }, "Aux data asset missing", "AuxData", "AuxData",
     "DCDATA or ATMOS", "AuxData"}};

class EachSort : public CompositionLoading, public testing::WithParamInterface<Sort> {
 protected:
  Cairn::GenericAsset& AddAsset(const AssetInfo& info) { return GetParam().Add(AddReel(), info); }
  [[nodiscard]] const AssetInfo& File() const { return Files::Of(GetParam().Kind); }
  [[nodiscard]] AssetInfo FileAt25() const {
    return Files::Package().Track(GetParam().Kind, Spec([](auto& s) { s.EditRate = Rational(25, 1); }));
  }
  [[nodiscard]] size_t Installed() const { return GetParam().Count(State.Timeline.back()); }
};

INSTANTIATE_TEST_SUITE_P(CompositionLoading, EachSort, testing::ValuesIn(Sorts),
                         [](const auto& sort) { return sort.param.Name; });

TEST_P(EachSort, IsInstalled) {
  AddAsset(File());
  ExpectSuccess();
  EXPECT_EQ(Installed(), 1u);
}

TEST_P(EachSort, RecordOfAnotherIDIsMissing) {
  AddAsset(File());
  AssetInfo other = File();
  other.ID = Ferro::UUID::Random();
  Lookup.Table[File().ID] = other;
  ExpectFailure(Cairn::RESULT_CN_NOT_IN_STORE, std::string("E ") + GetParam().Missing + "\n");
  EXPECT_EQ(Installed(), 0u);
}

TEST_P(EachSort, EditRateOtherThanTheCompositionsIsRefused) {
  AddAsset(File()).EditRate = Rational(25, 1);
  ExpectFailure(QUIRE::RESULT_FORMAT, std::string("E ") + GetParam().Words + " EditRate mismatch in" + In(1) + "\n");
  EXPECT_EQ(Installed(), 0u);
}

TEST_P(EachSort, FileOfAnotherTypeIsRefused) {
  AddAsset(Picture());
  ExpectFailure(QUIRE::RESULT_FORMAT, std::string("E ") + GetParam().Words + " asset must be " + GetParam().Types +
                                          " (got 4) in" + In(1) + "\n");
  EXPECT_EQ(Installed(), 0u);
}

TEST_P(EachSort, DigestMismatchIsRefused) {
  AddAsset(File()).Digest = Picture().Digest;
  ExpectFailure(Strata::RESULT_SX_DIGEST_FAIL, std::string("E ") + GetParam().Digest + " digest does not match" +
                                                   In(1) + ", asset " + File().ID.EncodeString() + "\n");
  EXPECT_EQ(Installed(), 0u);
}

TEST_P(EachSort, DigestThatTheCompositionDoesNotGiveIsNotCompared) {
  AddAsset(File()).Digest = Ferro::SHA1();
  ExpectSuccess();
}

TEST_P(EachSort, FileThatCannotBeOpenedStaysInstalled) {
  AddAsset(File());
  AssetInfo gone = File();
  gone.RealFilename += ".gone";
  Replaced.push_back(gone);
  EXPECT_TRUE(Load().Failure());
  EXPECT_EQ(Installed(), 1u);
  EXPECT_TRUE(State.Compositions.empty());
}

TEST_P(EachSort, TrackFileOfAnotherEditRateIsRefused) {
  AddAsset(FileAt25());
  ExpectFailure(QUIRE::RESULT_FORMAT,
                std::string("E ") + GetParam().Track + " EditRate does not match track file in" + In(1) + "\n");
  EXPECT_EQ(Installed(), 1u);
}

// Of two rules that an asset breaks, the one checked first is reported.

TEST_P(EachSort, EditRateIsCheckedBeforeTheType) {
  AddAsset(Picture()).EditRate = Rational(25, 1);
  ExpectFailure(QUIRE::RESULT_FORMAT, std::string("E ") + GetParam().Words + " EditRate mismatch in" + In(1) + "\n");
}

TEST_P(EachSort, TypeIsCheckedBeforeTheDigest) {
  AddAsset(Picture()).Digest = File().Digest;
  ExpectFailure(QUIRE::RESULT_FORMAT, std::string("E ") + GetParam().Words + " asset must be " + GetParam().Types +
                                          " (got 4) in" + In(1) + "\n");
}

TEST_P(EachSort, EditRateOfTheTrackFileIsCheckedBeforeItsLength) {
  AddAsset(FileAt25()).Duration = 6;
  ExpectFailure(QUIRE::RESULT_FORMAT,
                std::string("E ") + GetParam().Track + " EditRate does not match track file in" + In(1) + "\n");
}

TEST_P(EachSort, EncryptedFileHasItsKeyID) {
  const AssetInfo file =
      Files::Package().Track(GetParam().Kind, Spec([](auto& s) { s.Key = testsupport::TrackFileKey(); }));
  AddAsset(file);
  ExpectSuccess();
  EXPECT_EQ(Installed(), 1u);
  const Strata::TimelineReel& reel = State.Timeline.back();
  const Strata::TrackPtr& track = !reel.MainSound.empty()       ? reel.MainSound
                                  : !reel.OnScreenText.empty()  ? reel.OnScreenText
                                  : !reel.OffScreenText.empty() ? reel.OffScreenText.front()
                                                                : reel.AuxData.front();
  EXPECT_EQ(track->KeyID(), testsupport::TrackFileKey().KeyID);
}

}  // namespace
}  // namespace StrataTest
