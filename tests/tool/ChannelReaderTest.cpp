// SPDX-License-Identifier: BSD-3-Clause
#include "play/ChannelReader.h"

#include "LogCapture.h"
#include "PackageMaker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

using namespace testsupport;
using namespace Tool;
using Ferro::ui32_t;
using Ferro::ui64_t;

namespace fs = std::filesystem;

constexpr ui32_t ReelLength = 5;
constexpr auto Never = ChannelReader::Clock::time_point::max();  // nothing is late

/// A show of reels with a picture and a sound file each.
class ChannelReaderTest : public testing::Test {
 protected:
  struct ReelFiles {
    Cairn::AssetInfo Picture;
    Cairn::AssetInfo Sound;
  };

  void AddReels(size_t count, ui32_t length = ReelLength) {
    for (size_t i = 0; i < count; ++i) {
      TrackFileSpec spec;
      spec.Duration = length;
      m_Files.push_back({m_Package.Track(TrackKind::Picture, spec), m_Package.Track(TrackKind::Sound, spec)});
      AddReel(m_Files.back(), length, length);
    }
  }
  void AddReel(const ReelFiles& files, ui32_t picture_length, ui32_t sound_length) {
    Cairn::Reel reel = ReelOf(files.Picture, picture_length);
    reel.MainPicture.IntrinsicDuration = std::max(picture_length, ReelLength);
    reel.MainSound = AssetOf<Cairn::SoundAsset>(files.Sound, sound_length);
    reel.MainSound.IntrinsicDuration = std::max(sound_length, ReelLength);
    m_CPL.ReelList.push_back(reel);
  }

  void Load() {
    ASSERT_TRUE(Strata::NewPlaylist(m_Playlist).Success());
    ASSERT_TRUE(m_Playlist->InitWithPlaylist(PackageMaker::Encode(m_CPL), m_Package.Lookup, {}).Success())
        << m_Log.Text();
    m_Log.Clear();
  }

  /// Plays the show from its first edit unit to its last; answers the channel's statistics.
  std::map<std::string, ChannelStatistics> Play(const ChannelReader::Inspect& inspect = {}) {
    ChannelReader reader(*m_Playlist);
    reader.OnFirstLacking([this](const std::string& name, ui32_t frame) { Told("unreadable", name, frame); });
    reader.OnFirstMissing([this](const std::string& name, ui32_t frame) { Told("missing", name, frame); });
    for (ui32_t position = 0; position < m_Playlist->GetDuration(); ++position)
      reader.ReadEditUnit(position, position + 1, Never, inspect);
    std::map<std::string, ChannelStatistics> by_name;
    for (const ChannelStatistics& channel : reader.Statistics()) by_name[channel.Name] = channel;
    return by_name;
  }
  void Told(const std::string& what, const std::string& name, ui32_t frame) {
    m_Told.push_back(what + ' ' + name + ' ' + std::to_string(frame));
  }

  /// Makes one frame unreadable, by wiping out its key and length.
  static void Damage(const Cairn::AssetInfo& picture, const TrackFileSpec& spec, ui32_t frame) {
    std::ifstream in(picture.RealFilename, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const Bytes essence = MakeFrame(TrackKind::Picture, spec, frame);
    const auto at = std::search(bytes.begin(), bytes.end(), essence.begin(), essence.end(),
                                [](char a, Ferro::ui8_t b) { return static_cast<Ferro::ui8_t>(a) == b; });
    ASSERT_NE(at, bytes.end());
    std::fill(at - 20, at, '\0');
    std::ofstream(picture.RealFilename, std::ios::binary) << bytes;
  }

  LogCapture m_Log;
  PackageMaker m_Package;
  Cairn::CompositionPlaylist m_CPL = EmptyComposition("Show");
  std::vector<ReelFiles> m_Files;
  Ferro::mem_ptr<Strata::IPlaylist> m_Playlist;
  std::vector<std::string> m_Told;
};

TEST_F(ChannelReaderTest, EveryFrameOfEveryChannelIsDelivered) {
  AddReels(4);
  Load();
  ui64_t inspected = 0;
  const auto channels = Play([&](const DeliveredFrame& frame) {
    EXPECT_EQ(frame.FilePosition, frame.ShowPosition % ReelLength);
    ++inspected;
  });
  EXPECT_EQ(channels.at("picture").Delivered, 20U);
  EXPECT_EQ(channels.at("sound").Delivered, 20U);
  EXPECT_EQ(inspected, 40U);
  EXPECT_TRUE(m_Told.empty());
}

TEST_F(ChannelReaderTest, FileThatVanishesBeforeItsReelIsToldAndCountedAndTheRestPlays) {
  AddReels(6);
  Load();
  fs::remove(m_Files[4].Picture.RealFilename);
  fs::remove(m_Files[5].Sound.RealFilename);
  const auto channels = Play();
  EXPECT_EQ(channels.at("picture").Delivered, 25U);
  EXPECT_EQ(channels.at("picture").Missing, 5U);
  EXPECT_EQ(channels.at("sound").Delivered, 25U);
  EXPECT_EQ(channels.at("sound").Missing, 5U);
  EXPECT_EQ(m_Told, (std::vector<std::string>{"missing picture 0", "missing sound 0"}));
}

TEST_F(ChannelReaderTest, FileThatIsCutBeforeItsReelIsCountedAndTheRestPlays) {
  AddReels(6);
  const std::string cut = m_Files[5].Picture.RealFilename;
  const std::string whole = cut + ".whole";
  fs::copy(cut, whole);
  for (const auto size : {fs::file_size(cut) * 3 / 4, fs::file_size(cut) / 8, std::uintmax_t{0}}) {
    fs::copy(whole, cut, fs::copy_options::overwrite_existing);
    Load();
    fs::resize_file(cut, size);
    const auto channels = Play();
    const ChannelStatistics& picture = channels.at("picture");
    EXPECT_GE(picture.Delivered, 25U) << size;
    EXPECT_LT(picture.Delivered, 30U) << size;
    EXPECT_EQ(picture.Delivered + picture.Repeated + picture.Missing, 30U) << size;
    EXPECT_EQ(channels.at("sound").Delivered, 30U) << size;
  }
}

TEST_F(ChannelReaderTest, FileThatComesBackIsPlayed) {
  AddReels(1);
  Load();
  const std::string path = m_Files[0].Picture.RealFilename;
  fs::rename(path, path + ".away");
  ChannelReader reader(*m_Playlist);
  reader.ReadEditUnit(0, 1, Never);
  fs::rename(path + ".away", path);
  reader.ReadEditUnit(1, 2, Never);
  EXPECT_EQ(reader.Statistics().front().Missing, 1U);
  EXPECT_EQ(reader.Statistics().front().Delivered, 1U);
}

TEST_F(ChannelReaderTest, SoundThatEndsBeforeItsReelIsAskedForNothingMore) {
  AddReels(1);
  m_CPL.ReelList.clear();
  AddReel(m_Files[0], 5, 3);
  AddReel(m_Files[0], 5, 5);
  Load();
  const auto channels = Play();
  EXPECT_EQ(channels.at("picture").Delivered, 10U);
  EXPECT_EQ(channels.at("sound").Delivered, 8U);
  EXPECT_EQ(channels.at("sound").Repeated, 0U);
}

TEST_F(ChannelReaderTest, SoundThatOutlastsItsReelIsCutThere) {
  AddReels(1);
  m_CPL.ReelList.clear();
  AddReel(m_Files[0], 3, 5);
  AddReel(m_Files[0], 5, 5);
  Load();
  const auto channels = Play();
  EXPECT_EQ(channels.at("picture").Delivered, 8U);
  EXPECT_EQ(channels.at("sound").Delivered, 8U);
}

TEST_F(ChannelReaderTest, OneDamagedFrameOf480IsOneUnreadableFrame) {
  constexpr ui32_t length = 480;
  AddReels(1, length);
  TrackFileSpec spec;
  spec.Duration = length;
  Damage(m_Files[0].Picture, spec, 17);
  Load();
  for (int run = 1; run <= 20; ++run) {
    m_Told.clear();
    const auto channels = Play();
    ASSERT_EQ(channels.at("picture").Repeated, 1U) << "run " << run;
    ASSERT_EQ(channels.at("picture").Delivered, length - 1) << "run " << run;
    ASSERT_EQ(channels.at("sound").Delivered, length) << "run " << run;
    ASSERT_EQ(m_Told, std::vector<std::string>{"unreadable picture 17"}) << "run " << run;
  }
}

TEST_F(ChannelReaderTest, ExceptionDuringInspectionReleasesTheFrame) {
  AddReels(1);
  Load();
  ChannelReader reader(*m_Playlist);
  const auto fail = [](const DeliveredFrame&) { throw std::runtime_error("while it is inspected"); };
  EXPECT_THROW(reader.ReadEditUnit(0, 1, Never, fail), std::runtime_error);
  reader.ReadEditUnit(1, 2, Never);
  reader.ReadEditUnit(3, std::nullopt, Never);
  EXPECT_EQ(reader.Statistics().front().Delivered, 2U);
}

}  // namespace
