// SPDX-License-Identifier: BSD-3-Clause
//
// Files that cannot be written: each command says once which file, and why, and leaves nothing behind.
#include "BrokenShow.h"
#include "FileSizeLimit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

namespace {

namespace fs = std::filesystem;

class WriteFailure : public testing::Test {
 protected:
  void SetUp() override { fs::create_directory(Out()); }
  [[nodiscard]] std::string Out(const std::string& name = "") const { return m_Show.Beside("out/") + name; }

  /// The command's messages. Its files end after `size` bytes, as on a full disk.
  [[nodiscard]] std::string ErrorsOf(const std::vector<std::string>& arguments, rlim_t size) const {
    std::unique_ptr<StrataProgram> program;
    {
      const Ferro::Test::FileSizeLimit limit(size);
      program = std::make_unique<StrataProgram>(arguments);
    }
    EXPECT_EQ(program->Wait(), 2);
    EXPECT_TRUE(fs::is_empty(Out()));
    return program->Errors();
  }

  BrokenShow m_Show;  // whole
};

TEST_F(WriteFailure, FullDiskIsSaidOnceWithTheReason) {
  const std::string reason = ": this file cannot be written: File too large\n";
  const std::string sound = m_Show.Path("Trailer/sound-1.mxf");
  EXPECT_EQ(ErrorsOf({"frame", sound, "--at", "0", "--count", "9", "--out", Out("a.wav")}, 1000),
            "strata: " + Out("a.wav") + reason);
  EXPECT_EQ(ErrorsOf({"frame", sound, "--at", "0", "--channel", "sound", "--out", Out("a.bin")}, 1000),
            "strata: " + Out("a.bin") + reason);
  EXPECT_EQ(ErrorsOf({"export", "spl", m_Show.Path(), "--out", Out("a.xml")}, 1000),
            "strata: " + Out("a.xml") + reason);
  EXPECT_EQ(ErrorsOf({"check", m_Show.Path(), "--html", Out("a.html")}, 1000), "strata: " + Out("a.html") + reason);
  EXPECT_EQ(ErrorsOf({"timeline", m_Show.Path(), "--svg", Out("a.svg")}, 1000), "strata: " + Out("a.svg") + reason);
}

TEST_F(WriteFailure, FullDiskWhileWrappingIsSaidOnce) {
  const std::string sound = m_Show.Beside("sound.wav");
  StrataProgram frame({"frame", m_Show.Path("Trailer/sound-1.mxf"), "--at", "0", "--count", "9", "--out", sound});
  ASSERT_EQ(frame.Wait(), 0) << frame.Errors();
  EXPECT_THAT(ErrorsOf({"wrap", sound, "--out", Out("a.mxf")}, 40'000),
              testing::MatchesRegex("strata: " + Out("a.mxf") +
                                    ": cannot write [0-9]+ bytes at offset [0-9]+: File too large\n"));
}

TEST_F(WriteFailure, FullDiskWhileMakingASampleIsSaidOnceAndNamesTheFileThatWasToBe) {
  EXPECT_THAT(
      ErrorsOf({"make-sample", Out("sample"), "--length", "1", "--size", "64x64", "--channels", "2"}, 40'000),
      testing::MatchesRegex("strata: the sample show cannot be made: " + Out("sample") +
                            "/Trailer/picture-1.mxf: cannot write [0-9]+ bytes at offset [0-9]+: File too large\n"));
}

// An index that cannot keep what was found: the show is not said to be whole.
TEST_F(WriteFailure, CheckSaysThatNotAllWasVerified) {
  const std::string index = m_Show.Beside("index");
  ASSERT_EQ(StrataProgram({"check", m_Show.Path(), "--index", index}).Wait(), 0);
  std::unique_ptr<StrataProgram> check;
  {
    const Ferro::Test::FileSizeLimit limit(rlim_t{40} << 10);
    check =
        std::make_unique<StrataProgram>(std::vector<std::string>{"check", m_Show.Path(), "--hash", "--index", index});
  }
  EXPECT_EQ(check->Wait(), 2);
  EXPECT_THAT(check->Output(),
              testing::HasSubstr("error: Not all files could be verified. Found: the asset index " + index + ": "));
}

TEST_F(WriteFailure, FolderForASampleThatCannotBeMadeIsNamed) {
  m_Show.Write("file", "");
  StrataProgram maker({"make-sample", m_Show.Path("file/sample"), "--length", "1"});
  EXPECT_EQ(maker.Wait(), 2);
  EXPECT_EQ(maker.Errors(), "strata: the sample show cannot be made: " + m_Show.Path("file/sample") +
                                ": this folder cannot be made: Not a directory\n");
}

TEST_F(WriteFailure, DeviceOrFolderOfThatNameIsSaid) {
  const std::string sound = m_Show.Path("Trailer/sound-1.mxf");
  const std::string wave = m_Show.Beside("sound.wav");
  StrataProgram frame({"frame", sound, "--at", "0", "--out", wave});
  ASSERT_EQ(frame.Wait(), 0) << frame.Errors();
  fs::create_directory(m_Show.Beside("folder.wav"));
  const std::string reason = ": this file cannot be written: a folder, device or pipe has this name\n";
  for (const auto& [arguments, name] : {std::pair<std::vector<std::string>, std::string>{{"wrap", wave}, "/dev/null"},
                                        {{"export", "spl", m_Show.Path()}, "/dev/full"},
                                        {{"frame", sound, "--at", "0"}, m_Show.Beside("folder.wav")}}) {
    std::vector<std::string> words = arguments;
    words.insert(words.end(), {"--out", name});
    StrataProgram program(words);
    EXPECT_EQ(program.Wait(), 2);
    EXPECT_EQ(program.Errors(), "strata: " + name + reason);
  }
}

// A folder of a package has several documents.
TEST_F(WriteFailure, DocumentsThatAreTooManyAreNamed) {
  StrataProgram wrap({"wrap", m_Show.Path("Trailer"), "--out", Out("a.mxf")});
  EXPECT_EQ(wrap.Wait(), 1);
  EXPECT_EQ(wrap.Errors(), "strata: a track file of text is made of one document; there are 4, from " +
                               m_Show.Path("Trailer/ASSETMAP.xml") + " to " + m_Show.Path("Trailer/VOLINDEX.xml") +
                               '\n');
}

}  // namespace
