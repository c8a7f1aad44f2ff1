// SPDX-License-Identifier: BSD-3-Clause
// What the user may not open is named with its reason, and not taken for damaged or for sound.
#include "BrokenShow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

struct Answer {
  int Code;
  std::string Output;
  std::string Errors;
};

class Unopened : public testing::Test {
 protected:
  Unopened() { fs::permissions(m_Show.Beside(""), fs::perms(0755)); }
  ~Unopened() override {
    for (const std::string& path : m_Closed) fs::permissions(path, fs::perms(0755));
  }

  void Close(const std::string& name) {
    m_Closed.push_back(m_Show.Path(name));
    fs::permissions(m_Closed.back(), fs::perms::none);
  }

  /// The command as a user whom permissions stop; root's capabilities to pass over them are taken away.
  static Answer Run(const std::vector<std::string>& arguments) {
    std::vector<std::string> runner;
    if (geteuid() == 0) runner = {"setpriv", "--bounding-set=-dac_override,-dac_read_search"};
    StrataProgram program(arguments, "", "", runner);
    const int code = program.Wait();
    return {code, program.Output(), program.Errors()};
  }

  BrokenShow m_Show;  // whole
  std::vector<std::string> m_Closed;
};

TEST_F(Unopened, InfoTellsOfAFolderAndADocument) {
  Close("Trailer");
  Close("show.xml");
  const Answer info = Run({"info", m_Show.Path()});
  EXPECT_EQ(info.Code, 2);
  for (const char* name : {"Trailer", "show.xml"})
    EXPECT_THAT(info.Output,
                HasSubstr("  problem: " + m_Show.Path(name) + ": It cannot be opened: Permission denied.\n"));
}

TEST_F(Unopened, InfoTellsOnceOfATrackFile) {
  Close("Trailer/sound-1.mxf");
  const Answer info = Run({"info", m_Show.Path("Trailer")});
  EXPECT_EQ(info.Code, 2);
  EXPECT_THAT(info.Output, testing::EndsWith("/Trailer/sound-1.mxf: The file cannot be opened: Permission denied.\n"));
  EXPECT_EQ(info.Output.find("cannot be opened"), info.Output.rfind("cannot be opened"));
}

TEST_F(Unopened, InfoOfAFileEndsWithOneFullStop) {
  Close("show.xml");
  const Answer info = Run({"info", m_Show.Path("show.xml")});
  EXPECT_EQ(info.Code, 2);
  EXPECT_THAT(info.Output, HasSubstr("problem: The file cannot be read: "));
  EXPECT_THAT(info.Output, Not(HasSubstr("..")));
}

TEST_F(Unopened, CheckAndPlayTellWhyACompositionIsMissing) {
  Close("Trailer");
  const std::string warning =
      "warning: The file or folder cannot be read. Found: a folder that cannot be opened, Permission denied.\n    file "
      " " +
      m_Show.Path("Trailer") + "\n";
  const Answer check = Run({"check", m_Show.Path()});
  EXPECT_EQ(check.Code, 3);
  EXPECT_THAT(check.Output, HasSubstr(warning));
  EXPECT_THAT(check.Output, HasSubstr("No store has a composition of the show."));
  const Answer play = Run({"play", m_Show.Path(), "--speed", "max"});
  EXPECT_EQ(play.Code, 3);
  EXPECT_THAT(play.Errors, HasSubstr(warning));
}

TEST_F(Unopened, EntryOfNoUseIsAWarningAlone) {
  fs::create_symlink("loop", m_Show.Path("loop"));
  const Answer check = Run({"check", m_Show.Path()});
  EXPECT_EQ(check.Code, 0);
  EXPECT_THAT(check.Output, HasSubstr("Too many levels of symbolic links.\n    file  " + m_Show.Path("loop") + "\n"));
}

TEST_F(Unopened, LostAndFoundOfADiskIsNoFinding) {
  fs::create_directory(m_Show.Path("lost+found"));
  Close("lost+found");
  EXPECT_EQ(Run({"info", m_Show.Path()}).Code, 0);
}

TEST_F(Unopened, CheckNamesThePermissionOfTheShow) {
  Close("show.xml");
  const Answer check = Run({"check", m_Show.Path()});
  EXPECT_EQ(check.Code, 2);
  EXPECT_THAT(check.Errors, StartsWith("strata: " + m_Show.Path("show.xml") +
                                       ": this document cannot be opened: Permission denied. "));
  EXPECT_THAT(check.Errors, Not(HasSubstr("damaged")));
}

TEST_F(Unopened, CheckPassesOverAPipe) {
  ASSERT_EQ(mkfifo(m_Show.Path("p.xml").c_str(), 0644), 0);
  EXPECT_EQ(Run({"check", m_Show.Path()}).Code, 0);
}

TEST_F(Unopened, CheckAdvisesPermissionForATrackFile) {
  Close("Trailer/sound-1.mxf");
  const Answer check = Run({"check", m_Show.Path()});
  EXPECT_EQ(check.Code, 2);
  EXPECT_THAT(check.Output, HasSubstr("sound: The file or folder cannot be read. Found: Permission denied.\n"));
  EXPECT_THAT(check.Output, HasSubstr("Allow this user to read it, or copy it again."));
}

TEST_F(Unopened, CheckWithAnIndexSeesThatPermissionWent) {
  const std::string index = m_Show.Beside("index");
  fs::create_directory(index);
  fs::permissions(index, fs::perms::all);
  ASSERT_EQ(Run({"check", m_Show.Path(), "--index", index + "/index"}).Code, 0);
  Close("Trailer/sound-1.mxf");
  const Answer check = Run({"check", m_Show.Path(), "--index", index + "/index"});
  EXPECT_EQ(check.Code, 2);
  EXPECT_THAT(check.Output, HasSubstr("sound: The file or folder cannot be read. Found: Permission denied.\n"));
  EXPECT_THAT(check.Output, Not(HasSubstr("damaged")));
}

TEST_F(Unopened, CheckAdvisesPermissionForTheOnlyComposition) {
  Close("Trailer/CPL.xml");
  const Answer check = Run({"check", m_Show.Path("Trailer")});
  EXPECT_EQ(check.Code, 2);
  EXPECT_EQ(check.Errors, "strata: " + m_Show.Path("Trailer") +
                              ": there is no composition in this folder that can be used. Allow this user to read it, "
                              "or copy it again; wrong are:\n  " +
                              m_Show.Path("Trailer/CPL.xml") + ": The file cannot be opened: Permission denied.\n");
}

TEST_F(Unopened, StoreVerifyAdvisesPermission) {
  Close("Trailer/sound-1.mxf");
  const std::string index = m_Show.Beside("index");
  fs::create_directory(index);
  fs::permissions(index, fs::perms::all);
  ASSERT_EQ(Run({"store", "add", m_Show.Path(), "--index", index + "/index"}).Code, 0);
  const Answer verify = Run({"store", "verify", "--index", index + "/index"});
  EXPECT_EQ(verify.Code, 2);
  EXPECT_THAT(verify.Output, HasSubstr("The file or folder cannot be read. Found: Permission denied."));
  EXPECT_THAT(verify.Output, HasSubstr("Allow this user to read it, or copy it again."));
}

TEST(MisplacedFile, MissingCompositionIsNamedByItsFile) {
  const BrokenShow show;
  show.Remove("Trailer/CPL.xml");
  StrataProgram check({"check", show.Path("Trailer")});
  EXPECT_EQ(check.Wait(), 3);
  EXPECT_THAT(check.Errors(), HasSubstr("\n  " + show.Path("Trailer/CPL.xml") + " (asset "));
}

TEST(MisplacedFile, TrackFileLeadsToTheCommandsForTrackFiles) {
  const BrokenShow show;
  for (const char* command : {"check", "play"}) {
    StrataProgram program({command, show.Path("Trailer/sound-1.mxf")});
    EXPECT_EQ(program.Wait(), 1);
    EXPECT_EQ(program.Errors(), "strata: " + show.Path("Trailer/sound-1.mxf") +
                                    ": this is a track file, and neither a composition nor a show playlist. `strata "
                                    "info` tells what is in it, `strata frame` takes frames out of it.\n");
  }
}

TEST(MisplacedFile, FrameOfADamagedTrackFileIsNotPlayable) {
  const BrokenShow show;
  show.Cut("Trailer/sound-1.mxf", 3000);
  const std::string path = show.Path("Trailer/sound-1.mxf");
  StrataProgram frame({"frame", path, "--at", "3", "--out", show.Beside("z.wav")});
  EXPECT_EQ(frame.Wait(), 2);
  EXPECT_EQ(frame.Errors(), "strata: " + path + ": the header of this MXF file is damaged: copy the file again.\n");
}

}  // namespace
