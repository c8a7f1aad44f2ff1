// SPDX-License-Identifier: BSD-3-Clause
#include "../support/LogCapture.h"
#include "../support/MxfBuilder.h"
#include "../support/TemporaryFolder.h"
#include "../support/TrackFileMaker.h"
#include "OpenedTrackFile.h"
#include "frames/ContentsPass.h"

#include <atomic>

namespace {

using namespace Assay;
using namespace testsupport;

constexpr DepthSet All = {Depth::Frames, Depth::Hash, Depth::Decode};

/// Some picture files of different lengths, in each of which one picture cannot be decoded, and some other files.
class ContentsPassThreads : public ::testing::Test {
 protected:
  ContentsPassThreads() {
    for (size_t i = 0; i < 6; ++i) {
      MxfBuilder builder(MxfBuilder::JP2K);
      for (ui32_t frame = 0; frame < 4 + 5 * i; ++frame) builder.Frames.push_back(MakeCodestream(64, 36, frame));
      std::fill_n(builder.Frames[i].begin() + 8, 8, ui8_t{0x7f});
      const testsupport::Bytes bytes = builder.Build();
      const std::string name = "picture" + std::to_string(i);
      m_Folder.Write(name, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
      std::filesystem::last_write_time(m_Folder.Path(name),
                                       std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
      m_Tracks.push_back(OpenedPicture(m_Folder.Folder().string(), name));
    }
    m_Folder.Write("font.ttf", std::string(1000, 'f'));
  }

  std::vector<PassFile> Files() const {
    std::vector<PassFile> files;
    for (const TrackFile& track : m_Tracks) {
      PassFile& file = files.emplace_back();
      file.Package = track.Package;
      file.Document = track.Path;
      file.Path = track.FullPath();
      file.Track = &track;
      file.Size = track.Size;
    }
    files.emplace_back().Path = m_Folder.Path("font.ttf");
    files.back().Size = 1000;
    return files;
  }

  TemporaryFolder m_Folder;
  LogCapture m_Log;
  std::vector<TrackFile> m_Tracks;
};

TEST_F(ContentsPassThreads, FindTheSameAsOneThread) {
  PassRequest request;
  request.Depths = All;
  request.KeptResults = m_Folder.Path("kept");
  request.Threads = 1;
  std::vector<PassFile> expected = Files();
  PassOver(request, expected);
  for (size_t i = 0; i < 6; ++i) {
    const FindingList& found = expected[i].Findings;
    EXPECT_TRUE(std::ranges::count(found, FindingID::J2KUndecodable, &Finding::ID) == 1) << i;
    EXPECT_TRUE(std::ranges::count(found, FindingID::J2KProfile, &Finding::ID) == 1) << i;
  }
  EXPECT_TRUE(expected[6].Findings.empty());
  for (const ui32_t threads : {2U, 5U, 12U}) {
    std::filesystem::remove(m_Folder.Path("kept"));
    request.Threads = threads;
    std::atomic<int> inside = 0;
    request.OnProgress = [&](const PassProgress& progress) {
      EXPECT_EQ(++inside, 1);
      EXPECT_LE(progress.BytesDone, progress.BytesTotal);
      --inside;
      return true;
    };
    std::vector<PassFile> files = Files();
    PassOver(request, files);
    for (size_t i = 0; i < files.size(); ++i) {
      EXPECT_EQ(files[i].LookedAt, expected[i].LookedAt) << i;
      EXPECT_EQ(files[i].Digest, expected[i].Digest) << i;
      EXPECT_EQ(files[i].Findings, expected[i].Findings) << i;
      EXPECT_EQ(files[i].LookedAt, files[i].Track == nullptr ? DepthSet{Depth::Hash} : All);
    }
    EXPECT_EQ(PassOver(request, files), KeptState::Used);
  }
}

TEST_F(ContentsPassThreads, EndWhenTheyAreTold) {
  PassRequest request;
  request.Depths = All;
  request.Threads = 4;
  request.OnProgress = [](const PassProgress&) { return false; };
  std::vector<PassFile> files = Files();
  PassOver(request, files);
  size_t ended = 0;
  for (const PassFile& file : files) {
    const DepthSet applicable = file.Applicable(All);
    EXPECT_EQ(file.Missing, applicable.Without(file.LookedAt));
    if (file.Missing.IsEmpty()) continue;
    EXPECT_EQ(file.Reason, LeftOutReason::Cancelled);
    ++ended;
  }
  EXPECT_GE(ended, 3U) << "each of four threads ends at most one file";
}

}  // namespace
