// SPDX-License-Identifier: BSD-3-Clause
#include "frame/WaveFile.h"

#include "Judges.h"
#include "TemporaryFolder.h"
#include "frame/FrameSource.h"
#include "terminal/CommandError.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

using namespace Tool;

namespace {

std::string ContentOf(const std::string& filename) {
  std::ostringstream text;
  text << std::ifstream(filename, std::ios::binary).rdbuf();
  return text.str();
}

const SoundFormat Stereo = {48000, 24, 2, ""};

}  // namespace

TEST(WaveFile, BytesAreThoseOfTheFormat) {
  const testsupport::TemporaryFolder folder;
  WaveFile wave(folder.Path("a.wav"), Stereo);
  wave.Write(std::vector<Ferro::ui8_t>{1, 2, 3, 4, 5, 6});
  wave.Finish();
  using namespace std::string_literals;
  EXPECT_EQ(ContentOf(folder.Path("a.wav")),
            "RIFF\x66\0\0\0WAVEJUNK\x1c\0\0\0"s + std::string(28, '\0') +
                "fmt \x28\0\0\0\xfe\xff\2\0\x80\xbb\0\0\0\x65\4\0\6\0\x18\0\x16\0\x18\0\0\0\0\0"s +
                "\1\0\0\0\0\0\x10\0\x80\0\0\xaa\0\x38\x9b\x71"s + "data\6\0\0\0\1\2\3\4\5\6"s);
}

TEST(WaveFile, OddLengthIsFilledUp) {
  const testsupport::TemporaryFolder folder;
  WaveFile wave(folder.Path("a.wav"), {48000, 24, 1, ""});
  wave.Write(std::vector<Ferro::ui8_t>{1, 2, 3});
  wave.Finish();
  EXPECT_EQ(ContentOf(folder.Path("a.wav")).size(), 104U + 4);
}

TEST(WaveFile, UnfinishedThereIsNone) {
  const testsupport::TemporaryFolder folder;
  {
    WaveFile wave(folder.Path("a.wav"), Stereo);
    wave.Write(std::vector<Ferro::ui8_t>(600));
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.Folder()));
}

TEST(WaveFile, WithoutItsFolderItIsRefused) {
  const testsupport::TemporaryFolder folder;
  try {
    WaveFile wave(folder.Path("no/a.wav"), Stereo);
    FAIL() << "it was written";
  } catch (const CommandError& error) {
    EXPECT_EQ(error.Code(), ExitCode::NotPlayable);
    EXPECT_EQ(error.what(), folder.Path("no/a.wav") + ": this file cannot be written: its folder is not there");
  }
}

TEST(SpeakerMask, FollowsTheOrderOfChannels) {
  EXPECT_EQ(SpeakerMask("51(L,R,C,LFE,Ls,Rs)"), 0x3FU);
  EXPECT_EQ(SpeakerMask("51(L,R,C,LFE,Ls,Rs"), 0x3FU);  // as labels without further channels are written
  EXPECT_EQ(SpeakerMask("51(L,R,C,LFE,Ls,Rs),HI,VIN"), 0x3FU);
  EXPECT_EQ(SpeakerMask("61(L,R,C,LFE,Ls,Rs,Cs)"), 0x13FU);
  EXPECT_EQ(SpeakerMask("SDS(L,R,C,LFE,Ls,Rs,Lc,Rc)"), 0xFFU);
  EXPECT_EQ(SpeakerMask("ST(L,R)"), 0x3U);
}

TEST(SpeakerMask, EndsWhereTheOrderIsAnother) {
  EXPECT_EQ(SpeakerMask("71(L,R,C,LFE,Lss,Rss,Lrs,Rrs)"), 0x60FU);
  EXPECT_EQ(SpeakerMask("51(L,C,R,LFE,Ls,Rs)"), 0x5U);
  EXPECT_EQ(SpeakerMask("WTF"), 0U);
  EXPECT_EQ(SpeakerMask(""), 0U);
}
