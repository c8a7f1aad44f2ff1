// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/ShowExpansion.h"

#include "PlaylistInitialisationFixture.h"

#include <Ferro/FileText.h>
#include <QUIRE/Result.h>

#include <filesystem>

namespace StrataTest {
namespace {

TEST_F(PlaylistInitialisation, EmptyTextIsRefused) {
  EXPECT_EQ(InitText(""), Strata::RESULT_SX_EMPTY_PL);
  EXPECT_EQ(Log, "");
}

TEST_F(PlaylistInitialisation, EmptyListIsRefused) {
  EXPECT_EQ(InitList({}), Strata::RESULT_SX_EMPTY_PL);
  EXPECT_EQ(Log, "");
}

TEST_F(PlaylistInitialisation, CompositionTextLoads) {
  const AssetInfo info = Composition(2);
  std::string text;
  ASSERT_EQ(Ferro::ReadFileIntoString(info.RealFilename, text), Ferro::RESULT_OK);
  EXPECT_EQ(InitText(text), Ferro::RESULT_OK);
  EXPECT_EQ(Playlist.GetDuration(), 10u);
  EXPECT_EQ(State.Timeline.size(), 2u);
  EXPECT_TRUE(State.Events.empty());
}

TEST_F(PlaylistInitialisation, OtherTextIsRefusedByItsDigestOnly) {
  EXPECT_EQ(InitText("abc"), QUIRE::RESULT_FORMAT);
  EXPECT_TRUE(
      Log.ends_with("E String (SHA-1=qZk+NkcGgWq6PiVxeFDCbJzQ2J0=) is not an XML ShowPlaylist or "
                    "CompositionPlaylist document.\n"))
      << Log;
  EXPECT_EQ(Log.find("abc"), std::string::npos);
}

TEST_F(PlaylistInitialisation, IdentifierAsTextIsNoDocument) {
  EXPECT_EQ(InitText("urn:uuid:" + Composition().ID.EncodeString()), QUIRE::RESULT_FORMAT);
}

TEST_F(PlaylistInitialisation, ShowWithoutItemsHasNoReels) {
  const ShowPlaylist spl = Show();
  EXPECT_EQ(InitShow(spl), Ferro::RESULT_PARAM);
  EXPECT_EQ(Log, Loading(spl) + "D reels: 0, Duration: 0\nD Show playlist contains no reels\n");
}

TEST_F(PlaylistInitialisation, ListPlaysCompositionsAndShowsInOrder) {
  const AssetInfo first = Composition();
  const AssetInfo second = Composition(2);
  ShowPlaylist spl = Show();
  AddComposition(spl, second.ID).MarkerList.push_back(Marker("M", 1));
  Package.Show(spl);
  EXPECT_EQ(InitList({first.ID, spl.ID, first.ID}), Ferro::RESULT_OK);
  ASSERT_EQ(State.Timeline.size(), 4u);
  EXPECT_EQ(State.Timeline[0].m_CPL, first.ID);
  EXPECT_EQ(State.Timeline[1].m_CPL, second.ID);
  EXPECT_EQ(State.Timeline[3].m_CPL, first.ID);
  EXPECT_EQ(Events(), "M@6");
  EXPECT_EQ(Package.Lookup.Questions, 3u);  // one composition is asked for once
  EXPECT_TRUE(Package.Lookup.FlagWasAlwaysSet);
}

TEST_F(PlaylistInitialisation, ForeignIDOfAListIsLoggedAndSkipped) {
  const AssetInfo track = Package.Track(testsupport::TrackKind::Picture);
  const AssetInfo composition = Composition();
  EXPECT_EQ(InitList({track.ID, composition.ID}), Ferro::RESULT_OK);
  EXPECT_TRUE(Log.starts_with("E UUID value " + track.ID.EncodeString() +
                              " does not identify a CompositionPlaylist or ShowPlaylist.\nI Loading CPL "))
      << Log;
  EXPECT_EQ(State.Timeline.size(), 1u);
}

TEST_F(PlaylistInitialisation, ListOfForeignIDsOnlyHasNoReels) {
  std::string lines;
  Ferro::UUID ids[2];
  for (Ferro::UUID& id : ids) {
    id = Package.Track(testsupport::TrackKind::Picture).ID;
    lines += "E UUID value " + id.EncodeString() + " does not identify a CompositionPlaylist or ShowPlaylist.\n";
  }
  EXPECT_EQ(InitList({ids[0], ids[1]}), Ferro::RESULT_PARAM);
  EXPECT_EQ(Log, lines + "D reels: 0, Duration: 0\nD Show playlist contains no reels\n");
}

TEST_F(PlaylistInitialisation, UnknownIDOfAListIsNotFound) {
  const auto unknown = Ferro::UUID::Random();
  const AssetInfo composition = Composition();
  EXPECT_EQ(InitList({composition.ID, unknown, composition.ID}), Ferro::RESULT_NOT_FOUND);
  EXPECT_TRUE(Log.ends_with("E Playlist " + unknown.EncodeString() + " not found in store.\n")) << Log;
  EXPECT_EQ(State.Timeline.size(), 1u);
}

TEST_F(PlaylistInitialisation, FailureOfTheLookupIsReturned) {
  const AssetInfo composition = Composition();
  Package.Lookup.Answer = Ferro::RESULT_READFAIL;
  EXPECT_EQ(InitList({composition.ID}), Ferro::RESULT_READFAIL);
  EXPECT_EQ(Log, "E Playlist " + composition.ID.EncodeString() + " not found in store.\n");
}

TEST_F(PlaylistInitialisation, UnknownCompositionOfAShowIsNotFound) {
  ShowPlaylist spl = Show();
  const auto unknown = Ferro::UUID::Random();
  AddComposition(spl, unknown);
  EXPECT_EQ(InitShow(spl), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(Log, Loading(spl) + "E Playlist " + unknown.EncodeString() + " not found in store.\n");
}

TEST_F(PlaylistInitialisation, CompositionItemOfAnotherTypeIsRefused) {
  ShowPlaylist inner = Show();
  Package.Show(inner);
  ShowPlaylist spl = Show();
  AddComposition(spl, inner.ID);
  EXPECT_EQ(InitShow(spl), Strata::RESULT_SX_PLAYLIST_CTYPE);
  EXPECT_EQ(Log, Loading(spl) + "E Playlist " + inner.ID.EncodeString() + " is not a composition playlist.\n");
}

TEST_F(PlaylistInitialisation, ShowItemOfAnotherTypeIsRefused) {
  const AssetInfo composition = Composition();
  ShowPlaylist spl = Show();
  AddShow(spl, composition.ID);
  EXPECT_EQ(InitShow(spl), Strata::RESULT_SX_PLAYLIST_PTYPE);
  EXPECT_EQ(Log, Loading(spl) + "E Playlist " + composition.ID.EncodeString() + " is not a show playlist.\n");
}

TEST_F(PlaylistInitialisation, TextThatNamesItsOwnIDIsRefused) {
  ShowPlaylist spl = Show();
  AddShow(spl, spl.ID);
  Package.Show(spl);  // the store's copy is not fetched
  EXPECT_EQ(InitShow(spl), Strata::RESULT_SX_PLAYLIST_PTYPE);
  EXPECT_EQ(Log, Loading(spl) + "E Playlist " + spl.ID.EncodeString() + " is not a show playlist.\n");
  EXPECT_EQ(Package.Lookup.Questions, 0u);
}

TEST_F(PlaylistInitialisation, ShowThatContainsItselfThroughAnotherIsRefused) {
  const AssetInfo composition = Composition();
  ShowPlaylist a = Show();
  ShowPlaylist b = Show();
  AddComposition(a, composition.ID);
  AddShow(a, b.ID);
  AddShow(b, a.ID);
  Package.Show(a);
  Package.Show(b);
  EXPECT_EQ(InitList({a.ID}), Strata::RESULT_SX_PLAYLIST_REC);
  EXPECT_TRUE(Log.ends_with(Loading(b))) << Log;
  EXPECT_EQ(State.Timeline.size(), 1u);
}

TEST_F(PlaylistInitialisation, ShowThatContainsAnotherTwiceInARowPlaysItTwice) {
  ShowPlaylist a = Show();
  ShowPlaylist b = Show();
  AddComposition(b, Composition(2).ID);
  AddShow(a, b.ID);
  AddShow(a, b.ID);
  Package.Show(a);
  Package.Show(b);
  EXPECT_EQ(InitList({a.ID}), Ferro::RESULT_OK);
  EXPECT_EQ(State.Timeline.size(), 4u);
  EXPECT_EQ(Playlist.GetDuration(), 20u);
}

TEST_F(PlaylistInitialisation, MarkerItemStandsAtTheStartOfWhatFollows) {
  ShowPlaylist spl = Show();
  AddMarker(spl, "First");
  AddComposition(spl, Composition(2).ID);
  AddMarker(spl, "Between");
  AddComposition(spl, Composition().ID);
  EXPECT_EQ(InitShow(spl), Ferro::RESULT_OK);
  EXPECT_EQ(Events(), "First@0 Between@10");
  EXPECT_EQ(State.Events.front().LabelScope, "http://scope.example/");
}

TEST_F(PlaylistInitialisation, MarkerBeyondTheCompositionsEndIsPulledBack) {
  ShowPlaylist spl = Show();
  AddComposition(spl, Composition().ID);
  auto& markers = AddComposition(spl, Composition(2).ID).MarkerList;
  for (const auto& marker : {Marker("Zero", 0), Marker("Last", 9), Marker("Beyond", 5000)}) markers.push_back(marker);
  AddComposition(spl, Composition().ID);
  EXPECT_EQ(InitShow(spl), Ferro::RESULT_OK);
  EXPECT_EQ(Events(), "Zero@5 Last@14 Beyond@14");
}

TEST_F(PlaylistInitialisation, MarkerOfACompositionWithoutEditUnitsStandsAtItsStart) {
  auto cpl = testsupport::EmptyComposition("No edit units");
  cpl.ReelList.push_back(testsupport::ReelOf(Package.Track(testsupport::TrackKind::Picture), 0));
  Package.Composition(cpl);
  ShowPlaylist spl = Show();
  AddComposition(spl, Composition().ID);
  AddComposition(spl, cpl.ID).MarkerList.push_back(Marker("M", 7));
  AddComposition(spl, Composition(2).ID);
  EXPECT_EQ(InitShow(spl), Ferro::RESULT_OK);
  EXPECT_EQ(Events(), "M@5");
}

TEST_F(PlaylistInitialisation, MarkersOfACompositionThatFailsAreNoEvents) {
  ShowPlaylist spl = Show();
  const AssetInfo composition = Composition();
  AddComposition(spl, composition.ID).MarkerList.push_back(Marker("M"));
  std::filesystem::remove(composition.RealFilename);
  EXPECT_EQ(InitShow(spl), Ferro::RESULT_NOT_FOUND);
  EXPECT_TRUE(State.Events.empty());
}

TEST_F(PlaylistInitialisation, URIOfAnotherSchemeIsNotFound) {
  for (const std::string uri : {"urn:uuid", "URN:UUID:0", "http://show.example/"}) {
    ShowPlaylist spl = Show();
    AddURI(spl, uri);
    EXPECT_EQ(InitShow(spl), Ferro::RESULT_NOT_FOUND);
    EXPECT_EQ(Log, Loading(spl) + "E Unrecognized Show Playlist URI: " + uri + "\n");
  }
}

TEST_F(PlaylistInitialisation, URIWithoutSixteenBytesIsNotFound) {
  for (const std::string digits : {"", "0123456789abcdef0123456789abcde", "0123456789abcdef0123456789abcdef01",
                                   "0123456789abcdef0123456789abcdeg"}) {
    ShowPlaylist spl = Show();
    AddURI(spl, "urn:uuid:" + digits);
    EXPECT_EQ(InitShow(spl), Ferro::RESULT_NOT_FOUND);
    EXPECT_EQ(Log, Loading(spl) + "E Show playlist URI is not a valid urn:uuid (urn:uuid:" + digits + ")\n");
  }
}

TEST_F(PlaylistInitialisation, UnknownNestedShowIsNotFound) {
  ShowPlaylist spl = Show();
  AddURI(spl, "urn:uuid:00000000-0000-0000-0000-000000000000");
  EXPECT_EQ(InitShow(spl), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(Log, Loading(spl) + "E Playlist 00000000-0000-0000-0000-000000000000 not found in store.\n");
}

TEST_F(PlaylistInitialisation, DocumentsThatCannotBeReadFailWithTheReadersResult) {
  const auto missing = Package.Document(Ferro::UUID::Random(), Cairn::FT_SHOW, "");
  std::filesystem::remove(missing.RealFilename);
  EXPECT_EQ(InitList({missing.ID}), Ferro::RESULT_NOT_FOUND);
  const auto large = Package.Document(Ferro::UUID::Random(), Cairn::FT_CPL, std::string(8'388'609, ' '));
  EXPECT_EQ(InitList({large.ID}), Ferro::RESULT_TOOLARGE);
  const auto garbage = Package.Document(Ferro::UUID::Random(), Cairn::FT_SHOW, "<a");
  EXPECT_EQ(InitList({garbage.ID}), Cairn::RESULT_XML_PARSE);
  EXPECT_TRUE(State.Timeline.empty());
}

TEST_F(PlaylistInitialisation, ShowsNestAsDeepAsTheLimitAndNoDeeper) {
  for (const size_t depth : {Strata::MaxShowDepth, Strata::MaxShowDepth + 1}) {
    Strata::h__Playlist playlist;
    ShowPlaylist show = Show();
    AddComposition(show, Composition().ID);
    Package.Show(show);
    Ferro::UUID id = show.ID;
    for (size_t i = 1; i < depth; ++i) {
      ShowPlaylist outer = Show();
      AddShow(outer, id);
      Package.Show(outer);
      id = outer.ID;
    }
    const testsupport::LogCapture log;
    Ferro::UUIDList ids;
    ids.push_back(id);
    const auto result = playlist.InitWithUUIDList(ids, Package.Lookup, Cairn::PListDict());
    EXPECT_EQ(result, depth <= Strata::MaxShowDepth ? Ferro::RESULT_OK : QUIRE::RESULT_FORMAT);
    EXPECT_EQ(log.TextWithLevels().find("E Show playlists nest too deep") != std::string::npos,
              depth > Strata::MaxShowDepth);
  }
}

TEST_F(PlaylistInitialisation, NestedShowsBeyondTheLimitAreRefused) {
  ShowPlaylist inner = Show();
  Package.Show(inner);
  ShowPlaylist spl = Show();
  for (size_t i = 0; i <= Strata::MaxNestedShows; ++i) AddShow(spl, inner.ID);
  EXPECT_EQ(InitShow(spl), QUIRE::RESULT_FORMAT);
  EXPECT_TRUE(Log.ends_with("E Show playlists nest too deep or too often at urn:uuid:" + inner.ID.EncodeString() +
                            " (limits: 64 deep, 10000 in all).\n"));
}

TEST_F(PlaylistInitialisation, ItemsAndMarkersBeyondTheLimitAreRefused) {
  constexpr size_t Repeats = 1000;
  ShowPlaylist inner = Show();
  for (size_t i = 0; i + 3 < Strata::MaxShowItems / Repeats; ++i) AddMarker(inner, "M");
  AddComposition(inner, Composition().ID).MarkerList.push_back(Marker("C"));
  Package.Show(inner);
  ShowPlaylist spl = Show();
  for (size_t i = 0; i < Repeats; ++i) AddShow(spl, inner.ID);
  const size_t room = Strata::MaxShowItems % Repeats;
  ASSERT_EQ(room, 0u) << "each repetition takes its own item, the markers and the composition with its one";
  {
    Strata::h__Playlist playlist;
    const testsupport::LogCapture log;
    EXPECT_EQ(playlist.InitWithPlaylist(Package.Encode(spl), Package.Lookup, {}), Ferro::RESULT_OK);
  }
  AddMarker(spl, "One more");
  EXPECT_EQ(InitShow(spl), QUIRE::RESULT_FORMAT);
  EXPECT_TRUE(Log.ends_with("E Show is full, no room for the next item of show playlist " + spl.ID.EncodeString() +
                            " (limit: 250000 items and markers in all).\n"));
}

TEST_F(PlaylistInitialisation, CompositionThatIsRefusedLeavesWhatCameBefore) {
  const AssetInfo good = Composition();
  auto cpl = testsupport::EmptyComposition("Bad");
  cpl.ReelList.push_back(testsupport::ReelOf(Package.Track(testsupport::TrackKind::Picture)));
  cpl.ReelList.front().MainPicture.Digest = good.Digest;
  Package.Composition(cpl);
  ShowPlaylist spl = Show();
  AddComposition(spl, good.ID).MarkerList.push_back(Marker("Good", 2));
  AddComposition(spl, cpl.ID).MarkerList.push_back(Marker("Bad", 2));
  AddMarker(spl, "After");
  EXPECT_EQ(InitShow(spl), Strata::RESULT_SX_DIGEST_FAIL);
  EXPECT_EQ(Events(), "Good@2");
  EXPECT_EQ(State.Timeline.size(), 2u);
  EXPECT_EQ(State.Compositions.size(), 1u);
}

TEST_F(PlaylistInitialisation, MarkersInCompositionsOfManyReels) {
  ShowPlaylist spl = Show();
  AddComposition(spl, Composition(60).ID);
  AddComposition(spl, Composition(240).ID).MarkerList.push_back(Marker("Beyond", 5000));
  AddMarker(spl, "After");
  AddComposition(spl, Composition().ID);
  EXPECT_EQ(InitShow(spl), Ferro::RESULT_OK);
  EXPECT_EQ(Events(), "Beyond@1499 After@1500");
}

TEST_F(PlaylistInitialisation, EncryptedInteropCompositionLoadsWithTextAndSound) {
  testsupport::TrackFileSpec spec;
  spec.LabelSet = QUIRE::LS_MXF_INTEROP;
  spec.Key = testsupport::TrackFileKey();
  auto cpl = testsupport::EmptyComposition("Interop");
  cpl.DCPFormat = Cairn::DFT_Interop;
  auto& reel = cpl.ReelList.emplace_back(testsupport::ReelOf(Package.Track(testsupport::TrackKind::Picture, spec)));
  reel.MainPicture.KeyID = spec.Key->KeyID;
  spec.Key.reset();
  reel.MainSound = testsupport::AssetOf<Cairn::SoundAsset>(Package.Track(testsupport::TrackKind::Sound, spec));
  reel.MainSubtitle = testsupport::AssetOf<Cairn::TimedTextAsset>(Package.InteropText());
  EXPECT_EQ(InitText(Package.Encode(cpl)), Ferro::RESULT_OK) << Log;
  Ferro::UUIDList keys;
  Playlist.GetKeyIDList(keys);
  ASSERT_EQ(keys.size(), 1u);
  EXPECT_EQ(keys.front(), testsupport::TrackFileKey().KeyID);
  Ferro::UUIDList encrypted;
  Playlist.GetCiphertextCPLIDList(encrypted);
  ASSERT_EQ(encrypted.size(), 1u);
  EXPECT_EQ(encrypted.front(), cpl.ID);
  EXPECT_EQ(State.Timeline[0].MainSound->ChannelCount(), 6u);
  EXPECT_EQ(State.Timeline[0].OnScreenText->TextEssenceFormat(), Cairn::DFT_Interop);
}

}  // namespace
}  // namespace StrataTest
