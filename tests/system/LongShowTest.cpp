// SPDX-License-Identifier: BSD-3-Clause
//
// Two hours of playing must not cost more than one: what a show holds of memory, open files and threads depends on the
// reels around the position, not on how many went by.
#include "Sanitized.h"
#include "StrataProgram.h"
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"
#include "sample/SamplePackage.h"

#include <QUIRE/PCMWriter.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <thread>

using namespace Tool;

namespace {

namespace fs = std::filesystem;
using namespace testsupport;

constexpr Ferro::ui32_t Reels = 36;
// Two hours; six minutes under the sanitizers, whose code is slow, and which keep the memory that was given back.
constexpr Ferro::ui32_t ReelLength = Sanitized ? 240 : 4800;  // edit units
// Kilobytes that the second hour may take on top of the first: the allocator may still settle. Measured over ten hours it
// took nothing from the third hour on; a track's frame buffer has more.
constexpr long Growth = 1024;

/// What a process holds.
struct Holdings {
  long Memory = 0;  ///< kB, resident
  long Threads = 0;
  long Files = 0;
};

std::ostream& operator<<(std::ostream& stream, const Holdings& holdings) {
  return stream << holdings.Memory << " kB, " << holdings.Threads << " threads, " << holdings.Files << " files";
}

/// No value when the process is gone.
std::optional<Holdings> HoldingsOf(pid_t process) {
  const std::string folder = "/proc/" + std::to_string(process);
  std::ifstream status(folder + "/status");
  Holdings holdings;
  for (std::string word; status >> word;) {
    if (word == "VmRSS:") status >> holdings.Memory;
    if (word == "Threads:") status >> holdings.Threads;
  }
  std::error_code error;
  for (const auto& file : fs::directory_iterator(folder + "/fd", error)) holdings.Files += file.path().empty() ? 0 : 1;
  if (error || holdings.Threads == 0) return std::nullopt;
  return holdings;
}

Holdings Most(const Holdings& a, const Holdings& b) {
  return {std::max(a.Memory, b.Memory), std::max(a.Threads, b.Threads), std::max(a.Files, b.Files)};
}

/// A composition of 36 equal reels: small pictures, silent sound, subtitles.
class LongShow {
 public:
  LongShow() {
    WritePicture();
    WriteSound();
    WriteText();
    SamplePackage package(SampleSeed(1), Path(), "LONG", Cairn::DFT_DCI_SMPTE);
    Cairn::CompositionPlaylist composition;
    composition.ID = SampleSeed(1).ID("composition");
    composition.Annotation = composition.ContentTitle = "Long";
    composition.IssueDate = SampleSeed(1).Date().EncodeString();
    composition.Issuer = composition.Creator = SampleIssuer;
    composition.ContentKind = Cairn::CK_FEATURE;
    composition.ContentVersion = {SampleSeed(1).ID("version").EncodeURN(), "1"};
    Cairn::Reel reel;
    reel.ID = SampleSeed(1).ID("reel");
    Describe(reel.MainPicture, package.Add(ID("picture"), "picture.mxf", Cairn::FT_QUIRE_JP2K_J2C), "picture");
    reel.MainPicture.FrameRate = QUIRE::EditRate_24;
    reel.MainPicture.ScreenAspectRatio = {64, 36};
    Describe(reel.MainSound, package.Add(ID("sound"), "sound.mxf", Cairn::FT_QUIRE_PCM), "sound");
    Describe(reel.MainSubtitle, package.Add(ID("text"), "text.mxf", Cairn::FT_QUIRE_TIMED_TEXT), "text");
    for (Ferro::ui32_t number = 0; number < Reels; ++number) {
      reel.ID = SampleSeed(1).ID("reel " + std::to_string(number));
      composition.ReelList.push_back(reel);
    }
    package.AddComposition(composition, "CPL.xml");
    package.Finish();
  }

  [[nodiscard]] std::string Path() const { return m_Folder.Path("show"); }

 private:
  [[nodiscard]] static Ferro::UUID ID(const std::string& name) { return SampleSeed(1).ID(name); }
  [[nodiscard]] std::string PathOf(const std::string& name) const { return Path() + '/' + name; }

  static void Describe(Cairn::GenericAsset& asset, const Ferro::SHA1& digest, const std::string& name) {
    asset.AssetID = ID(name);
    asset.Digest = digest;
    asset.EditRate = QUIRE::EditRate_24;
    asset.IntrinsicDuration = asset.Duration = ReelLength;
  }

  [[nodiscard]] TrackFileSpec Spec(const std::string& name) const {
    fs::create_directory(Path());
    TrackFileSpec spec;
    spec.AssetID = ID(name);
    spec.Duration = ReelLength;
    spec.ChannelCount = 1;
    return spec;
  }

  void WritePicture() const {
    EXPECT_TRUE(MakeTrackFile(TrackKind::Picture, PathOf("picture.mxf"), Spec("picture")).Success());
  }

  void WriteText() const { EXPECT_TRUE(MakeTrackFile(TrackKind::Text, PathOf("text.mxf"), Spec("text")).Success()); }

  void WriteSound() const {
    const TrackFileSpec spec = Spec("sound");
    const QUIRE::PCM::AudioDescriptor sound = MakeAudioDescriptor(spec);
    QUIRE::PCM::MXFWriter writer;
    QUIRE::PCM::FrameBuffer frame;
    const Ferro::ui32_t size = 2000 * sound.BlockAlign;
    ASSERT_TRUE(frame.Capacity(size).Success());
    std::memset(frame.Data(), 0, size);
    frame.Size(size);
    ASSERT_TRUE(
        writer.OpenWrite(PathOf("sound.mxf"), MakeWriterInfo(spec), sound, MakeLabels(spec), MakeWriterOptions())
            .Success());
    for (Ferro::ui32_t number = 0; number < ReelLength; ++number) ASSERT_TRUE(writer.WriteFrame(frame).Success());
    ASSERT_TRUE(writer.Finalize().Success());
  }

  TemporaryFolder m_Folder;
};

// The engine keeps two reels ready on either side, so that the fourth reel holds what any later one does but the last two.
TEST(LongShow, SecondHourHoldsNoMoreThanTheFirst) {
  const LongShow show;
  StrataProgram play({"play", show.Path(), "--speed", "max"});
  Holdings first;
  Holdings second;
  unsigned samples = 0;
  ASSERT_TRUE(play.WaitForOutput("reel 4 of 36"));
  for (bool in_second = false;;) {
    const std::string output = play.Output();
    if (output.find("reel 34 of 36") != std::string::npos) break;
    in_second = output.find("reel 19 of 36") != std::string::npos;
    const auto now = HoldingsOf(play.Process());
    ASSERT_TRUE(now) << play.Output() << play.Errors();
    Holdings& hour = in_second ? second : first;
    hour = Most(hour, *now);
    samples += in_second ? 1 : 0;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  EXPECT_EQ(play.Wait(), 0) << play.Errors();
  EXPECT_THAT(play.Output(), testing::HasSubstr("Played " + std::to_string(Reels * ReelLength) + " edit units"));
  EXPECT_GT(samples, 2U);
  RecordProperty("first", testing::PrintToString(first));
  RecordProperty("second", testing::PrintToString(second));
  EXPECT_GT(first.Files, 0);
  EXPECT_LE(second.Files, first.Files);
  EXPECT_LE(second.Threads, first.Threads);
  if (!Sanitized) {
    EXPECT_LE(second.Memory, first.Memory + Growth) << first << "; " << second;
  }
}

}  // namespace
