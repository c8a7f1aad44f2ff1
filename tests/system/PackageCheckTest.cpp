// SPDX-License-Identifier: BSD-3-Clause
// strata check of packages, whatever a show plays of them: how far it looks, and by whose rules.
#include "BrokenShow.h"
#include "EncryptedShow.h"
#include "JsonSchema.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <thread>

using testing::AllOf;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Json = nlohmann::json;

namespace fs = std::filesystem;

namespace {

struct Checked {
  int Code = -1;
  Json Report;

  /// The names of the findings of those classes that are no consequences.
  [[nodiscard]] std::set<std::string> Found(const std::set<std::string>& classes = {"error", "warning"}) const {
    std::set<std::string> names;
    for (const Json& finding : Report["findings"])
      if (classes.contains(finding["class"]) && !finding.contains("cause")) names.insert(finding["id"]);
    return names;
  }
  /// The worst class of the package in a folder of that name; "none" for none.
  [[nodiscard]] std::string WorstOf(const std::string& folder) const {
    for (const Json& package : Report["packages"])
      if (package["folder"].get<std::string>().ends_with('/' + folder)) return package.value("worst", "none");
    return "there is no such package";
  }
};

/// Runs strata check --json, and holds what it prints against its schema.
Checked Check(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "check");
  arguments.emplace_back("--json");
  StrataProgram program(arguments);
  Checked checked;
  checked.Code = program.Wait();
  ExpectMatchesSchema(program.Output(), "strata-check-packages-1");
  checked.Report = Json::parse(program.Output(), nullptr, false);
  return checked;
}

std::string TextOf(std::vector<std::string> arguments, int code) {
  arguments.insert(arguments.begin(), "check");
  StrataProgram program(arguments);
  EXPECT_EQ(program.Wait(), code) << program.Errors();
  return program.Output();
}

using Names = std::set<std::string>;

/// Takes away the beginning of a codestream, by which it is known as one.
void DamageCodestream(const BrokenShow& show, const std::string& name) {
  show.Replace(name, "\xff\x4f\xff\x51", "\xff\x4f\x11\x11");
}

/// Results are not kept of files that may still be written: has all of them be an hour old.
void Age(const BrokenShow& show) {
  for (const auto& entry : fs::recursive_directory_iterator(show.Path()))
    if (entry.is_regular_file()) fs::last_write_time(entry, entry.last_write_time() - std::chrono::hours(1));
}

class SampleAtDepth : public testing::TestWithParam<const char*> {};

TEST_P(SampleAtDepth, HasNothingButItsSizeOfPicture) {
  const BrokenShow show;
  const std::string depth = GetParam();
  const Checked checked = Check({show.Path(), "--depth", depth});
  EXPECT_EQ(checked.Code, 0);
  EXPECT_EQ(checked.Found(), depth == "documents" ? Names{} : Names{"picture-size"});
  EXPECT_EQ(checked.Report["packages"].size(), 5U);
  EXPECT_EQ(checked.Report["compositions"].size(), 5U);
  EXPECT_EQ(checked.Report["needs_keys"], 1);
  EXPECT_EQ(checked.Report["looked_at"].front(), "documents");
  EXPECT_EQ(checked.Report["profile"], "plays");
}

INSTANTIATE_TEST_SUITE_P(OfEachName, SampleAtDepth, testing::Values("documents", "files", "frames", "hash", "decode"),
                         [](const auto& test) { return std::string(test.param); });

TEST(PackageCheck, TellsPackagesAndCompositionsOnLessThanAPage) {
  const BrokenShow show;
  const std::string text = TextOf({show.Path(), "--frames", "--hash"}, 0);
  EXPECT_THAT(text,
              HasSubstr(show.Path("Feature") + ": There are warnings.\n  SampleFeature  (96×64, 24 fps, 5.1, en with "
                                               "en subtitles, captions, SMPTE, OV, 3 reels): There are warnings.\n"));
  EXPECT_THAT(text, HasSubstr(": There are warnings. It needs keys.\n"));
  EXPECT_THAT(text, HasSubstr("--profile all tells them.\n"));
  EXPECT_THAT(text, HasSubstr("Mbit/s\n"));
  EXPECT_THAT(text, HasSubstr(": peaks in dBFS L -"));
  EXPECT_THAT(text, Not(HasSubstr("note:")));
  EXPECT_THAT(text, Not(HasSubstr("will play")));
  EXPECT_THAT(text, HasSubstr("1 composition needs keys. Looked at: documents, files, hash; in part: frames. Not "
                              "looked at: decoded pictures (--decode). Not read to the end: 2 files (no key).\n"));
}

TEST(PackageCheck, OneFolderIsOnePackage) {
  const BrokenShow show;
  const std::string text = TextOf({show.Path("Trailer"), "--frames"}, 0);
  EXPECT_THAT(text, EndsWith("Looked at: documents, files, frames. Not looked at: digests (--hash), decoded pictures "
                             "(--decode).\n"));
  EXPECT_LT(std::count(text.begin(), text.end(), '\n'), 24);
}

TEST(PackageCheck, DamagedFramesAreFoundWhereTheyAreLookedAt) {
  const BrokenShow show;
  DamageCodestream(show, "Trailer/picture-1.mxf");
  EXPECT_EQ(Check({show.Path(), "--depth", "files"}).Code, 0);
  const Checked hashed = Check({show.Path("Trailer"), "--depth", "files", "--hash"});
  EXPECT_EQ(hashed.Code, 2);
  EXPECT_THAT(hashed.Found({"error"}), Contains("pkl-asset-hash"));
  const Checked decoded = Check({show.Path(), "--frames", "--decode"});
  EXPECT_EQ(decoded.Code, 2);
  EXPECT_FALSE(decoded.Found({"error"}).empty());
  EXPECT_EQ(decoded.WorstOf("Trailer"), "error");
  EXPECT_EQ(decoded.WorstOf("Feature"), "warning");
}

TEST(PackageCheck, TheProfileSaysWhatCounts) {
  const BrokenShow show;
  EXPECT_EQ(Check({show.Path("Trailer"), "--profile", "plays"}).Code, 0);
  for (const char* profile : {"smpte", "interop", "all"}) {
    const Checked checked = Check({show.Path("Trailer"), "--profile", profile});
    EXPECT_EQ(checked.Code, 2) << profile;
    EXPECT_EQ(checked.Report["profile"], profile);
  }
  EXPECT_THAT(TextOf({show.Path("Trailer"), "--profile", "smpte"}, 2),
              HasSubstr("It is not as the profile smpte asks: "));
}

TEST(PackageCheck, MissingFilesAreTold) {
  const BrokenShow show;
  show.Remove("Trailer/sound-1.mxf");
  const Checked checked = Check({show.Path(), "--profile", "plays"});
  EXPECT_EQ(checked.Code, 3);
  EXPECT_THAT(checked.Found({"error"}), Contains("pkl-asset-missing"));
  EXPECT_EQ(checked.WorstOf("Trailer"), "error");
  EXPECT_EQ(checked.WorstOf("Stereoscopic"), "warning");
}

TEST(PackageCheck, TheShowIsOneTimelineAsWell) {
  const BrokenShow show;
  fs::remove_all(show.Path("Trailer"));
  const Checked checked = Check({show.Path(), "--depth", "files"});
  EXPECT_EQ(checked.Code, 3);
  EXPECT_THAT(checked.Found(), Contains("show-composition-missing"));
}

TEST(PackageCheck, ADamagedShowPlaylistIsTold) {
  const BrokenShow show;
  show.Cut("show.xml", 300);
  const Checked checked = Check({show.Path(), "--depth", "files"});
  EXPECT_EQ(checked.Code, 2);
  EXPECT_THAT(checked.Found(), Contains("show-refused"));
}

// The sound of one reel is in another package than the composition, as with a version file and its original.
TEST(PackageCheck, AVersionFileFindsItsOriginal) {
  const BrokenShow show;
  for (const char* name : {"show.xml", "before-the-feature.xml"}) show.Remove(name);
  for (const char* name : {"Encrypted", "Stereoscopic", "Immersive"}) fs::remove_all(show.Path(name));
  show.Unlist("Feature/sound-2.mxf");
  const std::string original = show.Beside("original");
  fs::create_directory(original);
  fs::rename(show.Path("Feature/sound-2.mxf"), original + "/sound-2.mxf");
  const Checked alone = Check({show.Path(), "--depth", "files"});
  EXPECT_EQ(alone.Code, 3);
  EXPECT_EQ(alone.Report["packages"].size(), 2U);
  EXPECT_THAT(alone.Found(), Contains("cpl-asset-external"));
  const Checked together = Check({show.Path(), "--depth", "files", "--store", original});
  EXPECT_EQ(together.Report["packages"].size(), 2U);
  EXPECT_THAT(together.Found(), Not(Contains("cpl-asset-external")));
}

TEST(PackageCheck, WhatWasFoundIsKeptBesideTheIndex) {
  const BrokenShow show;
  Age(show);
  const std::string index = show.Beside("assets.index");
  const std::vector<std::string> arguments = {show.Path(), "--frames", "--hash", "--index", index};
  const Checked first = Check(arguments);
  EXPECT_EQ(first.Report["kept"], "none");
  EXPECT_TRUE(fs::exists(index + ".checked"));
  const Checked second = Check(arguments);
  EXPECT_EQ(second.Report["kept"], "used");
  EXPECT_EQ(first.Report["findings"], second.Report["findings"]);
  EXPECT_EQ(first.Report["figures"], second.Report["figures"]);
  std::ofstream(index + ".checked") << "something else";
  EXPECT_EQ(Check(arguments).Report["kept"], "damaged");
}

TEST(PackageCheck, KeysOpenWhatIsEncrypted) {
  const EncryptedShow show;
  const Checked closed = Check({show.Path(), "--frames"});
  EXPECT_EQ(closed.Report["left_out"].size(), 2U);
  EXPECT_EQ(closed.Report["left_out"][0]["reason"], "no-key");
  const Checked open = Check({show.Path(), "--frames", "--key-file", show.KeyFile()});
  EXPECT_EQ(open.Report["left_out"].size(), 0U);
  EXPECT_EQ(open.Report["figures"].size(), 2U);
  const Checked served = Check({show.Path(), "--frames", "--kdm", show.Message(), "--private-key", show.DeviceKey(),
                                "--at", "2026-03-05T20:00:00+00:00"});
  EXPECT_EQ(served.Report["left_out"].size(), 0U);
  EXPECT_EQ(served.Report["needs_keys"], 0);
  EXPECT_EQ(served.Report["compositions"][0]["keys"].back()["serves"], true);
}

TEST(PackageCheck, TheReportHasFigures) {
  const BrokenShow show;
  const Checked checked = Check({show.Path("Trailer"), "--frames"});
  ASSERT_EQ(checked.Report["figures"].size(), 2U);
  for (const Json& file : checked.Report["figures"]) {
    if (file.contains("picture"))
      EXPECT_GE(file["picture"]["peak_mbps"], file["picture"]["mean_mbps"]);
    else
      EXPECT_EQ(file["channels"].size(), 6U);
  }
}

TEST(PackageCheck, ThePageHasCharts) {
  const BrokenShow show;
  TextOf({show.Path(), "--frames", "--html", show.Beside("page.html")}, 0);
  std::ostringstream page;
  page << std::ifstream(show.Beside("page.html")).rdbuf();
  EXPECT_THAT(page.str(), AllOf(HasSubstr("Bit rate of the picture"), HasSubstr("Sound levels: the highest sample"),
                                HasSubstr("<h2>Packages</h2>"), HasSubstr("profile <code>plays</code>"),
                                HasSubstr("<h2>Findings that do not count</h2>")));
}

TEST(PackageCheck, WhatIsNotThereIsAUsageError) {
  const BrokenShow show;
  StrataProgram nothing({"check", show.Path("nothing"), "--frames"});
  EXPECT_EQ(nothing.Wait(), 1);
  EXPECT_THAT(nothing.Errors(), HasSubstr("there is no such file or folder"));
  StrataProgram store({"check", show.Path(), "--frames", "--store", show.Path("nothing")});
  EXPECT_EQ(store.Wait(), 1);
  EXPECT_THAT(store.Errors(), HasSubstr("cannot be opened"));
  StrataProgram depth({"check", show.Path(), "--depth", "deep"});
  EXPECT_EQ(depth.Wait(), 1);
}

// Interrupted at one moment after another, it tells what it found until then, and writes no page.
TEST(PackageCheck, AnInterruptKeepsWhatWasFound) {
  const BrokenShow show;
  const std::vector<std::string> arguments = {"check", show.Path(), "--depth", "decode", "--json"};
  const auto started = std::chrono::steady_clock::now();
  StrataProgram whole(arguments);
  ASSERT_EQ(whole.Wait(), 0);
  const auto length = std::chrono::steady_clock::now() - started;
  int stopped = 0;
  constexpr int Steps = 16;
  for (int step = 1; step < Steps; ++step) {
    StrataProgram run(arguments);
    std::this_thread::sleep_for(length * step / Steps);
    run.Signal(SIGINT);
    const int code = run.Wait();
    EXPECT_THAT(code, testing::AnyOf(0, 4, 128 + SIGINT));
    if (code != 4 || run.Output().empty()) continue;  // stopped while it looked for the show
    ExpectMatchesSchema(run.Output(), "strata-check-packages-1");
    const Json report = Json::parse(run.Output());
    EXPECT_EQ(report["interrupted"], true);
    EXPECT_THAT(report["verdict"].get<std::string>(), StartsWith("Interrupted: this is what was found until then."));
    ++stopped;
  }
  EXPECT_GT(stopped, 0);
}

}  // namespace
