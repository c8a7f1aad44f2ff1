// SPDX-License-Identifier: BSD-3-Clause
// A sample show is what a package should be: nothing speaks against it, however deep one looks.
#include "sample/SampleShow.h"

#include "TemporaryFolder.h"

#include <Assay/Check.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

using namespace Tool;
using Assay::Depth;
using Assay::FindingClass;

namespace {

/// What a sample of these options is found to be: "error picture-size Trailer", each once for each package.
std::set<std::string> FindingsOf(SampleOptions options, const Assay::DepthSet& depths) {
  const testsupport::TemporaryFolder folder;
  options.Folder = folder.Path("show");
  EXPECT_TRUE(MakeSampleShow(
      options, [](const std::string&) {}, [](Ferro::ui64_t, Ferro::ui64_t) {}));
  Assay::CheckRequest request;
  request.Depths = depths;
  for (const auto& entry : std::filesystem::directory_iterator(options.Folder))
    if (std::filesystem::exists(entry.path() / "CPL.xml")) request.Folders.push_back(entry.path().string());
  EXPECT_GE(request.Folders.size(), 3U);
  Assay::CheckReport report;
  EXPECT_TRUE(Assay::Check(request, report).Success());
  std::set<std::string> found;
  for (const Assay::Finding& finding : report.Findings)
    if (finding.Class != FindingClass::Note)
      found.insert(std::string(Assay::FindingClassName(finding.Class)) + ' ' + Assay::RuleOf(finding.ID).Name + ' ' +
                   std::filesystem::path(finding.Place.Package).filename().string());
  return found;
}

/// Takes out what is only outside RDD 52, of which `known` may be there.
std::set<std::string> WithoutProfile(const std::set<std::string>& found, const std::set<std::string>& known) {
  std::set<std::string> rest;
  for (const std::string& each : found)
    if (!each.starts_with("profile ") || !known.contains(each.substr(8, each.rfind(' ') - 8))) rest.insert(each);
  return rest;
}

/// OpenJPEG writes two guard bits, and text begins with the first second, so that the shortest show has some.
const std::set<std::string> KnownOfSMPTE = {"j2k-guard-bits", "text-first", "text-gap", "text-duration"};
const std::set<std::string> KnownOfInterop = {"j2k-guard-bits", "text-first", "text-gap", "text-duration",
                                              "package-interop"};

SampleOptions CinemaSize() {
  SampleOptions options;
  options.Seconds = 1;
  options.Width = 1998;
  options.Height = 1080;
  options.Still = true;
  return options;
}

SampleOptions Small() {
  SampleOptions options;
  options.Seconds = 1;
  options.Width = 96;
  options.Height = 64;
  return options;
}

Assay::DepthSet AllButDecode() {
  return {Depth::Files, Depth::Frames, Depth::Hash};
}

}  // namespace

TEST(SampleFindings, CinemaSizeHasNone) {
  EXPECT_THAT(WithoutProfile(FindingsOf(CinemaSize(), AllButDecode()), KnownOfSMPTE), testing::IsEmpty());
}

TEST(SampleFindings, InteropCinemaSizeHasNone) {
  SampleOptions options = CinemaSize();
  options.Flavour = Cairn::DFT_Interop;
  EXPECT_THAT(WithoutProfile(FindingsOf(options, AllButDecode()), KnownOfInterop), testing::IsEmpty());
}

TEST(SampleFindings, SmallPicturesHaveThatOfTheirSizeAlone) {
  std::vector<SampleOptions> all(11, Small());
  all[1].Rate = 25;
  all[2].Rate = 30;
  all[3].Rate = 48;
  all[4].Rate = 50;
  all[5].Rate = 60;
  all[6].Channels = 2;
  all[7].Channels = 8;
  all[8].Channels = 16;
  all[9].Unsigned = true;
  all[10].Seconds = 6;
  const Assay::DepthSet depths = {Depth::Files, Depth::Frames, Depth::Hash, Depth::Decode};
  for (const size_t interop : {0U, 5U, 7U}) {
    all.push_back(all[interop]);
    all.back().Flavour = Cairn::DFT_Interop;
  }
  for (const SampleOptions& options : all) {
    const bool is_interop = options.Flavour == Cairn::DFT_Interop;
    std::set<std::string> expected;
    for (const char* package : {"Trailer", "Feature", "Stereoscopic", "Immersive", "Encrypted"}) {
      const bool is_there = (std::string(package) != "Immersive" || !is_interop) &&
                            (std::string(package) != "Stereoscopic" || options.Rate <= 30);
      if (is_there) expected.insert(std::string("warning picture-size ") + package);
    }
    std::set<std::string> known = is_interop ? KnownOfInterop : KnownOfSMPTE;
    if (options.Channels != 6 && options.Channels != 8) known.insert("sound-labels");  // some channels have no use
    if (options.Rate != 24 && options.Rate != 25 && options.Rate != 48) known.insert("picture-rate");
    EXPECT_EQ(WithoutProfile(FindingsOf(options, depths), known), expected)
        << "rate " << options.Rate << ", channels " << options.Channels << ", unsigned " << options.Unsigned
        << ", flavour " << options.Flavour;
  }
}
