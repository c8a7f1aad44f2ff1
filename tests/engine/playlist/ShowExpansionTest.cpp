// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/ShowExpansion.h"

#include "../../support/AssertionText.h"
#include "PlaylistInitialisationFixture.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace StrataTest {
namespace {

using testsupport::Asserts;

// Files of nested show playlists

class NestedShowFile : public PlaylistInitialisation {
 protected:
  /// A show with a nested one in that file fails with `result`, telling the file and why.
  void ExpectFailure(const AssetInfo& nested, const Ferro::Result_t& result, const std::string& lines) {
    ShowPlaylist spl = Show();
    AddShow(spl, nested.ID);
    EXPECT_EQ(InitShow(spl), result);
    EXPECT_EQ(Log, Loading(spl) + lines);
  }
};

TEST_F(NestedShowFile, ThatCannotBeReadIsNotFound) {
  const AssetInfo nested = Package.Document(Ferro::UUID::Random(), Cairn::FT_SHOW, "");
  std::filesystem::remove(nested.RealFilename);
  ExpectFailure(nested, Ferro::RESULT_NOT_FOUND, "E " + nested.RealFilename + ": The requested item was not found.\n");
}

TEST_F(NestedShowFile, LargerThan8MiBIsTooLarge) {
  const AssetInfo nested = Package.Document(Ferro::UUID::Random(), Cairn::FT_SHOW, std::string(8'388'609, ' '));
  ExpectFailure(nested, Ferro::RESULT_TOOLARGE,
                "E " + nested.RealFilename + ": The data is larger than the limit set for it.\n");
}

TEST_F(NestedShowFile, Of8MiBIsRead) {
  ShowPlaylist inner = Show();
  AddComposition(inner, Composition().ID);
  std::string text = Package.Encode(inner);
  text.append(8'388'608 - text.size(), '\n');
  Package.Document(inner.ID, Cairn::FT_SHOW, text);
  ShowPlaylist spl = Show();
  AddShow(spl, inner.ID);
  EXPECT_EQ(InitShow(spl), Ferro::RESULT_OK) << Log;
  EXPECT_EQ(State.Timeline.size(), 1u);
}

TEST_F(NestedShowFile, ThatIsNoXMLFailsAsTheDecoderDoes) {
  const AssetInfo nested = Package.Document(Ferro::UUID::Random(), Cairn::FT_SHOW, "<a");
  ExpectFailure(nested, Cairn::RESULT_XML_PARSE,
                "E Unable to parse XML document element.\nE " + nested.RealFilename +
                    ": The XML document could not be parsed.\n");
}

TEST_F(NestedShowFile, OfAnotherDocumentFailsAsTheDecoderDoes) {
  auto cpl = testsupport::EmptyComposition("Composition");
  cpl.ReelList.push_back(testsupport::ReelOf(Package.Track(testsupport::TrackKind::Picture)));
  const AssetInfo nested = Package.Document(cpl.ID, Cairn::FT_SHOW, Package.Encode(cpl));
  ExpectFailure(nested, Cairn::RESULT_NOT_CPL,
                "E " + nested.RealFilename + ": The document is not a playlist of the expected type.\n");
}

/// Does something before it answers about one asset.
struct MeddlingLookup : testsupport::TableLookup {
  Ferro::UUID Asset;
  std::function<void()> Meddle;

  Cairn::Result_t GetInfoForAssetID(const Cairn::UUID& id, Cairn::AssetInfo& out, bool flag) const override {
    if (id == Asset) Meddle();
    return TableLookup::GetInfoForAssetID(id, out, flag);
  }
};

TEST_F(NestedShowFile, IsDecodedBeforeItIsRefusedInsideItself) {
  const AssetInfo composition = Composition();
  ShowPlaylist spl = Show();
  AddComposition(spl, composition.ID);
  AddShow(spl, spl.ID);
  const std::string path = Package.Show(spl).RealFilename;
  MeddlingLookup lookup;
  lookup.Table = Package.Lookup.Table;
  lookup.Asset = composition.ID;
  lookup.Meddle = [] {};
  Ferro::UUIDList ids;
  ids.push_back(spl.ID);
  const testsupport::LogCapture log;
  EXPECT_EQ(Strata::h__Playlist().InitWithUUIDList(ids, lookup, Cairn::PListDict()), Strata::RESULT_SX_PLAYLIST_REC);
  EXPECT_TRUE(log.Errors().empty());
  lookup.Meddle = [&path] { std::ofstream(path) << "<a"; };
  EXPECT_EQ(Strata::h__Playlist().InitWithUUIDList(ids, lookup, Cairn::PListDict()), Cairn::RESULT_XML_PARSE);
  EXPECT_EQ(log.Errors(), std::vector<std::string>({"Unable to parse XML document element.\n",
                                                    path + ": The XML document could not be parsed.\n"}));
}

// Items

class ShowExpansion : public PlaylistInitialisation {
 protected:
  Strata::Result_t Expand(const ShowPlaylist& spl) {
    Strata::AssetInfoMap assets;
    Ferro::PathList_t paths{"ephemeral"};
    const testsupport::LogCapture log;
    Strata::ShowExpander expander(State.Timeline, State.Events, assets, Package.Lookup, [this](const auto&) {
      ++Loads;
      return Ferro::RESULT_OK;
    });
    const auto result = expander.InitWithSPL(spl, paths);
    Log = log.TextWithLevels();
    return result;
  }
  unsigned Loads = 0;
};

TEST_F(ShowExpansion, ImagesAndItemsOfUnknownTypesAreSkipped) {
  ShowPlaylist spl = Show();
  for (const Ferro::ui32_t type : {Ferro::ui32_t{ShowPlaylist::SIT_IMAGE}, 4u, 0xffffffffu}) {
    AddMarker(spl, "No marker");
    spl.ShowSequence.back()->m_Type = static_cast<ShowPlaylist::ShowItemType_t>(type);
  }
  AddComposition(spl, Composition().ID);
  AddMarker(spl, "After");
  EXPECT_EQ(Expand(spl), Ferro::RESULT_OK);
  EXPECT_EQ(Log, Loading(spl));
  EXPECT_EQ(Loads, 1u);
  EXPECT_EQ(Events(), "After@0");
}

using ShowExpansionDeathTest = ShowExpansion;

TEST_F(ShowExpansionDeathTest, MissingItemAsserts) {
  ShowPlaylist spl = Show();
  spl.ShowSequence.push_back(nullptr);
  EXPECT_DEATH(static_cast<void>(Expand(spl)), Asserts("*si != 0"));
}

}  // namespace
}  // namespace StrataTest
