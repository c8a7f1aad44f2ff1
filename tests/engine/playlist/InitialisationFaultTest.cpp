// SPDX-License-Identifier: BSD-3-Clause
// Initialisation with a lookup that throws, and with memory that runs out at any point. A program of its own, because it
// takes the place of the system's functions.
#include "../../support/LogCapture.h"
#include "../../support/PackageMaker.h"
#include "../../support/RandomFault.h"
#include "../../support/ThreadFault.h"

#include <Strata/IPlaylist.h>

#include <gtest/gtest.h>

#include <stdexcept>

// A parser whose construction or document fails for want of memory leaves what Xerces-C had allocated for it. That is the
// parser's own doing; what our code leaves is still found.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:xercesc_3_2::MemoryManagerImpl::allocate\n";
}

namespace {

using Ferro::Result_t;
using testsupport::LogCapture;
using testsupport::NoMemory;
using testsupport::PackageMaker;
using testsupport::TrackKind;

class ThrowingLookup : public testsupport::TableLookup {
 public:
  Cairn::Result_t GetInfoForAssetID(const Cairn::UUID&, Cairn::AssetInfo&, bool) const override {
    throw std::runtime_error("the store is closed");
  }
  Cairn::Result_t GetInfoForAssetIDList(const Cairn::UUIDList&, Cairn::AssetInfoList&, bool) const override {
    throw std::runtime_error("the store is closed");
  }
};

struct InitialisationFault : testing::Test {
  InitialisationFault() {
    Composition.ReelList.push_back(testsupport::ReelOf(Package.Track(TrackKind::Picture)));
    Composition.ReelList.back().MainSound = testsupport::AssetOf<Cairn::SoundAsset>(Package.Track(TrackKind::Sound));
    CompositionID = Package.Composition(Composition).ID;
    Show.ID = Ferro::UUID::Random();
    Show.ShowTitle = "Show";
    auto item = std::make_unique<Strata::ShowPlaylist::CompositionItem>();
    item->ID = Composition.ID;
    item->EditRate = QUIRE::EditRate_24;
    item->Duration = 5;
    Show.ShowSequence.push_back(std::move(item));
  }

  /// A new playlist for each try: one whose initialisation failed is discarded.
  template <class InitT>
  static Result_t Try(InitT init) {
    Ferro::mem_ptr<Strata::IPlaylist> playlist;
    EXPECT_EQ(Strata::NewPlaylist(playlist), Ferro::RESULT_OK);
    return init(*playlist);
  }
  /// Tries with room for 0, 1, 2... allocations until there is enough. Answers how often there was not.
  template <class InitT>
  static unsigned TryWithLittleMemory(InitT init) {
    EXPECT_EQ(Try(init), Ferro::RESULT_OK) << "the libraries below are initialised now";
    for (unsigned pieces = 0;; ++pieces) {
      Ferro::mem_ptr<Strata::IPlaylist> playlist;
      EXPECT_EQ(Strata::NewPlaylist(playlist), Ferro::RESULT_OK);
      Result_t result = Ferro::RESULT_FAIL;
      {
        const NoMemory out(pieces);
        result = init(*playlist);
      }
      if (!NoMemory::WasMissed()) {
        EXPECT_EQ(result, Ferro::RESULT_OK);
        return pieces;
      }
    }
  }

  PackageMaker Package;
  Cairn::CompositionPlaylist Composition = testsupport::EmptyComposition("Composition");
  Strata::ShowPlaylist Show;
  Ferro::UUID CompositionID;
  LogCapture Log;
};

TEST_F(InitialisationFault, ExceptionOfTheLookupIsAFailureWithItsText) {
  const ThrowingLookup lookup;
  const std::string composition = PackageMaker::Encode(Composition);
  EXPECT_EQ(Try([&](auto& playlist) { return playlist.InitWithPlaylist(composition, lookup, {}); }),
            Ferro::RESULT_FAIL);
  EXPECT_EQ(Log.Lines(Ferro::LogLevel::Error).back(), "The playlist cannot be initialised: the store is closed\n");
  EXPECT_EQ(Try([&](auto& playlist) { return playlist.InitWithUUIDList({CompositionID}, lookup, {}); }),
            Ferro::RESULT_FAIL);
  EXPECT_EQ(Log.Lines(Ferro::LogLevel::Error).back(), "The playlist cannot be initialised: the store is closed\n");
}

TEST_F(InitialisationFault, WithoutRandomNumbersNothingGetsAnEmptyIdentifier) {
  const std::string composition = PackageMaker::Encode(Composition);
  Ferro::mem_ptr<Strata::IPlaylist> playlist;
  ASSERT_EQ(Strata::NewPlaylist(playlist), Ferro::RESULT_OK);
  ASSERT_EQ(playlist->InitWithPlaylist(composition, Package.Lookup, {}), Ferro::RESULT_OK);
  const testsupport::NoRandomBytes none;
  std::string document = "as before";
  Ferro::ui32_t playout = 1;
  EXPECT_EQ(playlist->GetShowPlaylistForTimeline(document), Ferro::RESULT_OK);
  EXPECT_EQ(document, "");
  document = "as before";
  EXPECT_EQ(playlist->GetPresentationListForTimeline("http://media", document, playout), Ferro::RESULT_FAIL);
  EXPECT_EQ(document, "");
  EXPECT_EQ(playout, 0U);
  EXPECT_EQ(Try([&](auto& other) { return other.InitWithPlaylist(composition, Package.Lookup, {}); }),
            Ferro::RESULT_FAIL);
  EXPECT_EQ(
      Log.Lines(Ferro::LogLevel::Error),
      (std::vector<std::string>{"No random numbers to identify the show playlist of the timeline\n",
                                "No random numbers to identify the resource presentation list of the timeline\n",
                                "No random numbers to identify reel 1 of " + Composition.ID.EncodeString() + "\n"}));
}

TEST_F(InitialisationFault, MemoryThatRunsOutAnywhereIsNoException) {
  const std::string composition = PackageMaker::Encode(Composition);
  const std::string show = PackageMaker::Encode(Show);
  const Ferro::UUIDList ids{CompositionID};
  EXPECT_GT(TryWithLittleMemory([&](auto& list) { return list.InitWithPlaylist(composition, Package.Lookup, {}); }),
            100U);
  EXPECT_GT(TryWithLittleMemory([&](auto& list) { return list.InitWithPlaylist(show, Package.Lookup, {}); }), 100U);
  EXPECT_GT(TryWithLittleMemory([&](auto& list) { return list.InitWithUUIDList(ids, Package.Lookup, {}); }), 100U);
}

}  // namespace
