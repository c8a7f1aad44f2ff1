// SPDX-License-Identifier: BSD-3-Clause
#include "BrokenShow.h"
#include "JsonSchema.h"
#include "StrataProgram.h"
#include "terminal/ProgressBar.h"

#include <Ferro/FileText.h>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>

using namespace Tool;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using Json = nlohmann::json;

namespace {

namespace fs = std::filesystem;

/// A show that may be broken, and an index beside it.
class Store : public testing::Test {
 protected:
  struct Answer {
    int Code = -1;
    std::string Output;
    std::string Errors;
  };

  /// Runs `strata store` with the index.
  [[nodiscard]] Answer Run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "store");
    arguments.insert(arguments.end(), {"--index", Index()});
    StrataProgram program(arguments);
    const int code = program.Wait();
    return {code, program.Output(), program.Errors()};
  }
  /// Runs it, and expects code 0 and no message.
  [[nodiscard]] std::string Do(const std::vector<std::string>& arguments) const {
    const Answer answer = Run(arguments);
    EXPECT_EQ(answer.Code, 0) << answer.Output;
    EXPECT_EQ(answer.Errors, "");
    return answer.Output;
  }
  [[nodiscard]] Json List(std::vector<std::string> arguments = {}) const {
    arguments.insert(arguments.begin(), {"list", "--json"});
    const std::string output = Do(arguments);
    ExpectMatchesSchema(output, "strata-store-list-1");
    return Json::parse(output);
  }
  [[nodiscard]] Json Verify(std::vector<std::string> arguments, int code) const {
    arguments.insert(arguments.begin(), {"verify", "--json"});
    const Answer answer = Run(arguments);
    EXPECT_EQ(answer.Code, code) << answer.Errors;
    ExpectMatchesSchema(answer.Output, "strata-store-verify-1");
    const Json report = Json::parse(answer.Output);
    EXPECT_EQ(report["exit_code"], code);
    return report;
  }
  [[nodiscard]] std::string Index() const { return m_Show.Beside("index.sqlite"); }

  BrokenShow m_Show;
};

Json AssetAt(const Json& list, const std::string& file) {
  for (const Json& asset : list["assets"])
    if (asset.value("file", std::string()) == file) return asset;
  ADD_FAILURE() << "no " << file;
  return {};
}

// ---- add and list

TEST_F(Store, AddedFolderIsListedWithKindsTitlesAndSizes) {
  const std::string output = Do({"add", m_Show.Path()});
  const Json list = List();
  EXPECT_EQ(output, "Added " + m_Show.Path() + ": " + std::to_string(list["assets"].size()) + " assets.\n");
  EXPECT_EQ(list["index"], Index());
  EXPECT_EQ(list["folders"], Json::array({Json{{"folder", m_Show.Path()}, {"present", true}}}));
  EXPECT_EQ(list["packages"].size(), 5U);
  EXPECT_EQ(list["with_problems"], 0);
  const Json composition = AssetAt(list, m_Show.Path("Feature/CPL.xml"));
  EXPECT_EQ(composition["kind"], "composition playlist");
  EXPECT_EQ(composition["title"], "SampleFeature");
  EXPECT_EQ(composition["package"], m_Show.Path("Feature"));
  EXPECT_EQ(composition["size"], fs::file_size(m_Show.Path("Feature/CPL.xml")));
  EXPECT_EQ(composition["digest"], "unknown");
  EXPECT_EQ(AssetAt(list, m_Show.Path("Stereoscopic/picture-1.mxf"))["kind"],
            "stereoscopic JPEG 2000 picture track file");
  EXPECT_EQ(AssetAt(list, m_Show.Path("show.xml"))["title"], "Sample show");
}

TEST_F(Store, ListAsTextGroupsAssetsByPackage) {
  static_cast<void>(Do({"add", m_Show.Path()}));
  const std::string text = Do({"list", m_Show.Path("Trailer")});
  EXPECT_THAT(text, StartsWith("Index " + Index() + "\n\n" + m_Show.Path("Trailer") + "\n  composition playlist  "));
  EXPECT_THAT(text, HasSubstr("  CPL.xml  \"SampleTrailer\"  24 fps, en, SMPTE, 1 reel\n"));
  EXPECT_THAT(text, HasSubstr("  picture-1.mxf  96×64, 24 fps, 0:01\n"));
  EXPECT_THAT(text, HasSubstr("  sound-1.mxf  5.1, 48 kHz, 24 bit, 0:01\n"));
  EXPECT_THAT(text, Not(HasSubstr("Feature")));
}

TEST_F(Store, SelectionByIdentifierListsThatAssetAlone) {
  static_cast<void>(Do({"add", m_Show.Path()}));
  const std::string id = AssetAt(List(), m_Show.Path("show.xml"))["id"];
  EXPECT_EQ(List({id})["assets"].size(), 1U);
  EXPECT_EQ(List({"urn:uuid:" + id})["assets"].size(), 1U);
}

TEST_F(Store, ListWithRefreshSeesWhatChanged) {
  static_cast<void>(Do({"add", m_Show.Path()}));
  m_Show.Remove("Feature/sound-2.mxf");
  EXPECT_EQ(List()["with_problems"], 0);
  EXPECT_EQ(List({"--refresh"})["with_problems"], 1);
  EXPECT_THAT(Do({"list"}), HasSubstr("      A file of the package is missing.\n"));
}

TEST_F(Store, AddingABrokenShowSaysSo) {
  m_Show.Cut("Feature/picture-2.mxf", 60000);
  EXPECT_THAT(Do({"add", m_Show.Path()}),
              HasSubstr("1 of them cannot be used: `strata store verify '" + m_Show.Path() + "'` tells why.\n"));
}

TEST_F(Store, InnerFolderIsAPartOfTheOuter) {
  static_cast<void>(Do({"add", m_Show.Path()}));
  EXPECT_THAT(Do({"add", m_Show.Path("Trailer")}), HasSubstr(", as a part of " + m_Show.Path() + ".\n"));
  EXPECT_EQ(List()["folders"].size(), 1U);
}

TEST_F(Store, SingleFileIsAddedAndForgotten) {
  const std::string file = m_Show.Path("show.xml");
  EXPECT_EQ(Do({"add", file}), "Added " + file + ": 1 asset.\n");
  EXPECT_EQ(List()["assets"].size(), 1U);
  EXPECT_EQ(Do({"forget", file}), "Forgot " + file + ". Its files are as they were.\n");
  EXPECT_THAT(List()["assets"], IsEmpty());
  EXPECT_TRUE(fs::exists(file));
}

TEST_F(Store, WhatCannotBeAddedIsAUsageError) {
  const Answer nothing = Run({"add", "/no/such/folder"});
  EXPECT_EQ(nothing.Code, 1);
  EXPECT_EQ(nothing.Errors, "strata: /no/such/folder: there is no such file or folder.\n");
  const std::string file = m_Show.Beside("notes.txt");
  ASSERT_TRUE(Ferro::WriteStringIntoFile(file, "Intermission at nine.").Success());
  const Answer unnamed = Run({"add", file});
  EXPECT_EQ(unnamed.Code, 1);
  EXPECT_EQ(unnamed.Errors,
            "strata: " + file + ": this file says no identifier of its own; add the folder of its package.\n");
}

// ---- forget

TEST_F(Store, ForgottenFolderIsGoneFromTheIndexAlone) {
  static_cast<void>(Do({"add", m_Show.Path()}));
  EXPECT_EQ(Do({"forget", m_Show.Path() + '/'}), "Forgot " + m_Show.Path() + "/. Its files are as they were.\n");
  EXPECT_THAT(List()["assets"], IsEmpty());
  EXPECT_TRUE(fs::exists(m_Show.Path("Feature/CPL.xml")));
}

TEST_F(Store, FolderThatIsGoneCanBeForgotten) {
  static_cast<void>(Do({"add", m_Show.Path()}));
  fs::remove_all(m_Show.Path());
  static_cast<void>(Do({"forget", m_Show.Path()}));
  EXPECT_THAT(List()["folders"], IsEmpty());
}

TEST_F(Store, PartOfAFolderCannotBeForgottenAlone) {
  static_cast<void>(Do({"add", m_Show.Path()}));
  const std::string id = AssetAt(List(), m_Show.Path("show.xml"))["id"];
  for (const std::string& name : {m_Show.Path("Trailer"), id}) {
    const Answer answer = Run({"forget", name});
    EXPECT_EQ(answer.Code, 1);
    EXPECT_EQ(answer.Errors, "strata: " + name + ": it lies in the folder " + m_Show.Path() +
                                 ", which is known as a whole: forget that folder, or remove the files.\n");
  }
}

TEST_F(Store, UnknownNamesAreUsageErrors) {
  static_cast<void>(Do({"add", m_Show.Path("Trailer")}));
  for (const char* operation : {"list", "verify", "forget"})
    for (const std::string& name : {m_Show.Path("Feature"), std::string("00000000-0000-0000-0000-000000000001")}) {
      const Answer answer = Run({operation, name});
      EXPECT_EQ(answer.Code, 1);
      EXPECT_EQ(answer.Errors, "strata: " + name + ": the index knows no such folder and no such asset.\n");
    }
}

// ---- verify

TEST_F(Store, SoundShowIsVerifiedOnceAndForAll) {
  static_cast<void>(Do({"add", m_Show.Path("Feature")}));
  const size_t assets = List()["assets"].size();
  const Json quick = Verify({}, 0);
  EXPECT_EQ(quick["assets"], assets);
  EXPECT_THAT(quick["findings"], IsEmpty());
  EXPECT_EQ(quick["digests"], Json({{"verified", 0}, {"different", 0}, {"unknown", assets - 1}, {"unlisted", 1}}));
  const Json full = Verify({"--hash", "--threads", "2"}, 0);
  EXPECT_EQ(full["digests"], Json({{"verified", assets - 1}, {"different", 0}, {"unknown", 0}, {"unlisted", 1}}));
  EXPECT_EQ(Verify({}, 0)["digests"], full["digests"]);
}

TEST_F(Store, AlteredFileIsFoundByItsDigestAlone) {
  static_cast<void>(Do({"add", m_Show.Path("Feature")}));
  std::string bytes = m_Show.Read("Feature/sound-2.mxf");
  bytes.back() = static_cast<char>(bytes.back() ^ 1);
  m_Show.Write("Feature/sound-2.mxf", bytes);
  EXPECT_THAT(Verify({}, 0)["findings"], IsEmpty());
  const Json report = Verify({"--hash"}, 2);
  ASSERT_EQ(report["findings"].size(), 1U);
  EXPECT_EQ(report["findings"][0]["id"], "pkl-asset-hash");
  EXPECT_EQ(report["findings"][0]["severity"], "error");
  EXPECT_EQ(report["findings"][0]["message"],
            "The file was altered: its digest is not the one that the packing list gives.");
  EXPECT_EQ(report["findings"][0]["file"], m_Show.Path("Feature/sound-2.mxf"));
  EXPECT_EQ(report["digests"]["different"], 1);
  EXPECT_EQ(report["verdict"], "1 thing is missing or broken.");
}

TEST_F(Store, FileOfAnotherSizeIsTold) {
  static_cast<void>(Do({"add", m_Show.Path("Feature")}));
  const auto size = fs::file_size(m_Show.Path("Feature/picture-2.mxf"));
  m_Show.Cut("Feature/picture-2.mxf", 60000);
  const Answer answer = Run({"verify"});
  EXPECT_EQ(answer.Code, 2);
  EXPECT_THAT(answer.Output,
              StartsWith("error: picture: The file does not have the size that the packing list gives. Expected " +
                         std::to_string(size) + " bytes, found 60000 bytes.\n"));
}

TEST_F(Store, MissingFilesAloneAreAssetsMissing) {
  static_cast<void>(Do({"add", m_Show.Path("Feature")}));
  m_Show.Remove("Feature/sound-2.mxf");
  const Json report = Verify({}, 3);
  ASSERT_EQ(report["findings"].size(), 1U);
  EXPECT_EQ(report["findings"][0]["severity"], "missing");
  EXPECT_EQ(report["findings"][0]["advice"], "Copy the package again from its source.");
  EXPECT_EQ(report["findings"][0]["file"], m_Show.Path("Feature/sound-2.mxf"));
  EXPECT_EQ(report["findings"][0]["composition"], "SampleFeature");
  EXPECT_EQ(report["findings"][0]["reel"], 2);
  EXPECT_EQ(report["findings"][0]["asset_type"], "sound");
  EXPECT_THAT(Do({"list"}), HasSubstr("  sound-2.mxf  \"SampleFeature, reel 2, sound\"\n"));
}

TEST_F(Store, FolderThatIsNotThereIsToldOnce) {
  static_cast<void>(Do({"add", m_Show.Path()}));
  fs::rename(m_Show.Path(), m_Show.Beside("elsewhere"));
  const Json report = Verify({}, 3);
  ASSERT_EQ(report["findings"].size(), 1U);
  EXPECT_EQ(report["findings"][0]["message"], "A folder of the store is not there, nor what was in it.");
  EXPECT_EQ(report["findings"][0]["file"], m_Show.Path());
  EXPECT_EQ(List()["folders"][0]["present"], false);
}

/// Makes folders in folders, until the path is longer than the system can open (PATH_MAX).
void MakeDeepFolders(const std::string& top) {
  const std::string name(250, 'd');
  int folder = open(top.c_str(), O_RDONLY | O_DIRECTORY);
  for (int depth = 0; depth < 18 && folder >= 0; ++depth) {
    ASSERT_EQ(mkdirat(folder, name.c_str(), 0700), 0);
    const int inner = openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY);
    close(folder);
    folder = inner;
  }
  ASSERT_GE(folder, 0);
  close(folder);
}

TEST_F(Store, FolderThatCannotBeReadIsAWarning) {
  MakeDeepFolders(m_Show.Path());
  const Answer added = Run({"add", m_Show.Path()});
  EXPECT_EQ(added.Code, 0);
  EXPECT_THAT(added.Errors, StartsWith("strata: warning: " + m_Show.Path("ddd")));
  EXPECT_THAT(added.Errors, HasSubstr(": folder left out: File name too long\n"));
  const Json report = Verify({}, 0);
  ASSERT_EQ(report["findings"].size(), 1U);
  EXPECT_EQ(report["findings"][0]["severity"], "warning");
  EXPECT_EQ(report["findings"][0]["id"], "file-unreadable");
  EXPECT_EQ(report["findings"][0]["found"], "a folder that cannot be opened, File name too long");
}

TEST_F(Store, SelectionIsVerifiedAlone) {
  static_cast<void>(Do({"add", m_Show.Path()}));
  m_Show.Remove("Feature/sound-2.mxf");
  EXPECT_EQ(Verify({m_Show.Path("Trailer"), "--hash"}, 0)["digests"]["unknown"], 0);
  static_cast<void>(Verify({m_Show.Path("Feature")}, 3));
}

TEST_F(Store, InterruptedVerificationSaysSoAndKeepsTheIndex) {
  static_cast<void>(Do({"add", m_Show.Path("Feature")}));
  fs::resize_file(m_Show.Path("Feature/sound-2.mxf"), 64ULL << 30);  // takes long to read, and no room
  m_Show.ListSize("Feature/sound-2.mxf");
  StrataProgram verify({"store", "verify", "--hash", "--json", "--threads", "1", "--index", Index()});
  for (int i = 0; i < 1000 && !fs::exists(Index() + "-shm"); ++i)  // there while the index is open
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  verify.Signal(SIGINT);
  EXPECT_EQ(verify.Wait(), 4);
  ExpectMatchesSchema(verify.Output(), "strata-store-verify-1");
  const Json report = Json::parse(verify.Output());
  EXPECT_EQ(report["interrupted"], true);
  EXPECT_THAT(List()["assets"], Not(IsEmpty()));
}

// ---- the index

TEST_F(Store, WithoutAnIndexOnlyAddWorks) {
  for (const char* operation : {"list", "verify"}) {
    const Answer answer = Run({operation});
    EXPECT_EQ(answer.Code, 1);
    EXPECT_EQ(answer.Errors, "strata: " + Index() + ": there is no asset index yet: `strata store add` makes it.\n");
  }
  EXPECT_EQ(Run({"forget", m_Show.Path()}).Code, 1);
  EXPECT_FALSE(fs::exists(Index()));
}

TEST_F(Store, FileThatIsNoIndexIsRefusedAndLeftAsItWas) {
  const std::string text(5000, 'x');
  ASSERT_TRUE(Ferro::WriteStringIntoFile(Index(), text).Success());
  const Answer answer = Run({"add", m_Show.Path()});
  EXPECT_EQ(answer.Code, 2);
  EXPECT_EQ(answer.Errors, "strata: The asset index " + Index() +
                               " cannot be used: file is not a database. This is another file, or a damaged index: "
                               "name another file with --index.\n");
  EXPECT_EQ(fs::file_size(Index()), text.size());
}

/// Runs SQL on a database, which it makes, and lets go of it at the end of its life.
class Database {
 public:
  Database(const std::string& file, const char* sql) {
    EXPECT_EQ(sqlite3_open(file.c_str(), &m_Handle), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(m_Handle, sql, nullptr, nullptr, nullptr), SQLITE_OK);
  }
  ~Database() { sqlite3_close(m_Handle); }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

 private:
  sqlite3* m_Handle = nullptr;
};

TEST_F(Store, DatabaseOfAnotherProgramIsRefused) {
  const Database other(Index(), "CREATE TABLE mine (x)");
  const Answer answer = Run({"list"});
  EXPECT_EQ(answer.Code, 2);
  EXPECT_EQ(answer.Errors, "strata: The asset index " + Index() +
                               " cannot be used: it is no asset index. This is a database of another program: name "
                               "another file with --index.\n");
}

TEST_F(Store, LockedIndexIsToldAfterTheWait) {
  static_cast<void>(Do({"add", m_Show.Path("Trailer")}));
  const Database other(Index(), "BEGIN IMMEDIATE");
  const Answer answer = Run({"add", m_Show.Path("Feature"), "--wait", "0"});
  EXPECT_EQ(answer.Code, 2);
  EXPECT_EQ(answer.Errors, "strata: The asset index " + Index() +
                               " cannot be used: database is locked. Another program is working with it: try again "
                               "when that is done.\n");
  EXPECT_EQ(List()["folders"].size(), 1U);  // reading goes on
}

TEST_F(Store, CutIndexIsRefusedWithOneLine) {
  static_cast<void>(Do({"add", m_Show.Path()}));
  fs::resize_file(Index(), 4096);
  const Answer answer = Run({"list"});
  EXPECT_EQ(answer.Code, 2);
  EXPECT_THAT(answer.Errors, HasSubstr("is malformed. It is damaged: delete it, and add the folders again; the assets "
                                       "themselves are not touched.\n"));
  EXPECT_EQ(answer.Output, "");
}

TEST_F(Store, IndexThatCannotBeWrittenIsTold) {
  StrataProgram add({"store", "add", m_Show.Path(), "--index", m_Show.Beside("nowhere/index")});
  EXPECT_EQ(add.Wait(), 2);
  EXPECT_EQ(add.Errors(), "strata: The asset index " + m_Show.Beside("nowhere/index") +
                              " cannot be used: unable to open database file. See to it that its folder is there, and "
                              "that you may write there.\n");
}

TEST_F(Store, IndexOfTheUserLiesInTheDataHome) {
  const char* const before = std::getenv("XDG_DATA_HOME");
  const std::string kept = before != nullptr ? before : "";
  setenv("XDG_DATA_HOME", m_Show.Beside("data").c_str(), 1);
  EXPECT_EQ(StrataProgram({"store", "add", m_Show.Path("Trailer")}).Wait(), 0);
  EXPECT_EQ(StrataProgram({"store", "list"}).Wait(), 0);
  before != nullptr ? setenv("XDG_DATA_HOME", kept.c_str(), 1) : unsetenv("XDG_DATA_HOME");
  EXPECT_TRUE(fs::exists(m_Show.Beside("data/strata/store.sqlite")));
}

TEST_F(Store, IndexServesTheOtherCommands) {
  static_cast<void>(Do({"add", m_Show.Path()}));
  const std::string id = AssetAt(List(), m_Show.Path("show.xml"))["id"];
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"check"}, {"play", "--speed", "max"}, {"export", "ids"}}) {
    std::vector<std::string> arguments = command;
    arguments.insert(arguments.end(), {id, "--index", Index()});
    StrataProgram program(arguments);
    EXPECT_EQ(program.Wait(), 0) << program.Errors();
  }
  fs::resize_file(Index(), 5000);
  StrataProgram check({"check", id, "--index", Index()});
  EXPECT_EQ(check.Wait(), 2);
  EXPECT_THAT(check.Errors(), HasSubstr("strata: The asset index " + Index() + " cannot be used: "));
}

// ---- progress

TEST(ProgressOfFiles, CountsThemAndTellsTheRate) {
  EXPECT_EQ(ProgressBar::Line("Looking", 50, 100, 10, 120, ProgressUnit::Files),
            "Looking [############............] 50 of 100 files, 5/s, 0:10 left");
  EXPECT_EQ(ProgressBar::Line("Drawing", 1, 4, 1, 120, ProgressUnit::Pictures),
            "Drawing [######..................] 1 of 4 pictures, 1/s, 0:03 left");
  EXPECT_EQ(ProgressBar::Line("Checking", 4, 4, 2, 120, ProgressUnit::Compositions),
            "Checking [########################] 4 of 4 compositions, 2/s");
}

}  // namespace
