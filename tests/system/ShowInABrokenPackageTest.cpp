// SPDX-License-Identifier: BSD-3-Clause
//
// What the commands make of a whole show in which something is broken, where the message alone does not tell.
#include "BrokenShow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace {

TEST(ShowInABrokenPackage, LengthOfAShowWithMissingAssetsIsThatOfItsDocuments) {
  const BrokenShow show;
  show.Remove("Feature/sound-2.mxf");
  StrataProgram check({"check", show.Path(), "--json"});
  EXPECT_EQ(check.Wait(), 3);
  EXPECT_THAT(check.Output(), testing::HasSubstr("\"duration_seconds\": 7,"));
}

// The engine's warning holds the digits of the other composition's rate.
TEST(ShowInABrokenPackage, EngineWarningIsToldBesideTheChangeOfEditRate) {
  const BrokenShow show;
  show.Replace("Trailer/CPL.xml", "<MainPicture>",
               "<s:MainStereoscopicPicture xmlns:s=\"http://www.smpte-ra.org/schemas/429-10/2008/"
               "Main-Stereo-Picture-CPL\">");
  show.Replace("Trailer/CPL.xml", "</MainPicture>", "</s:MainStereoscopicPicture>");
  show.Replace("Trailer/CPL.xml", "<FrameRate>24 1", "<FrameRate>48 1");
  for (const char* document : {"Trailer/CPL.xml", "Trailer/PKL.xml", "Trailer/ASSETMAP.xml"})
    show.Replace(document, "58ce4e14-c900-51d0", "58ce4e14-c925-51d0");
  show.ListSize("Trailer/CPL.xml");
  const std::string other = show.Beside("other");
  StrataProgram maker({"make-sample", other, "--length", "1", "--size", "96x64", "--rate", "25", "--seed", "2"});
  ASSERT_EQ(maker.Wait(), 0) << maker.Errors();
  const std::string answer = show.Check({show.Path("Trailer/CPL.xml"), other + "/Trailer/CPL.xml"});
  EXPECT_THAT(answer, testing::StartsWith("0\n"));
  EXPECT_THAT(answer, testing::HasSubstr("The edit rate changes from the composition before"));
  EXPECT_THAT(answer,
              testing::HasSubstr("warning: The show was laid out as one timeline with a remark. Found: Promoting SMPTE "
                                 "track file to stereoscopic image in reel 1 of 58ce4e14-c925-"));
}

TEST(ShowInABrokenPackage, PlayingATrackFileThatWasCutIsNoSuccess) {
  const BrokenShow show;
  show.Cut("Trailer/picture-1.mxf", 60'000);
  show.ListSize("Trailer/picture-1.mxf");
  StrataProgram play({"play", show.Path("Trailer"), "--speed", "max", "--verify"});
  EXPECT_EQ(play.Wait(), 2);
  EXPECT_THAT(play.Output(),
              testing::HasSubstr(" frames could not be read: `strata check --hash` says which file is damaged.\n"));
  EXPECT_THAT(play.Errors(), testing::EndsWith("strata: warning: edit unit 13, picture: frame 13 of the file cannot be "
                                               "read; others of this file are only counted\n"));
  EXPECT_THAT(play.Errors(), testing::Not(testing::HasSubstr("IMG (frame")));
}

TEST(ShowInABrokenPackage, TheOnlyCompositionOfAFolderIsNamedWhenItIsDamaged) {
  const BrokenShow show;
  show.Cut("Trailer/CPL.xml", 66);
  EXPECT_EQ(
      show.Check({show.Path("Trailer")}),
      "2\nstrata: SHOW/Trailer: there is no composition in this folder that can be used. Copy it again; wrong are:\n"
      "  SHOW/Trailer/CPL.xml: The file does not have the size that the package lists.\n");
}

// In a package, beside packages, and by its name.
TEST(ShowInABrokenPackage, CompositionInAnotherEncodingSaysSo) {
  const BrokenShow show;
  show.Replace("Trailer/CPL.xml", "encoding=\"UTF-8\"", "encoding=\"windows-1252\"");
  show.ListSize("Trailer/CPL.xml");
  std::filesystem::create_directory(show.Beside("loose"));
  std::filesystem::copy(show.Path("Trailer/CPL.xml"), show.Beside("loose/CPL.xml"));
  const std::string reason = "the encoding \"WINDOWS-1252\" is not supported";
  EXPECT_THAT(show.Check({show.Path("Trailer")}), testing::HasSubstr(" Found: " + reason));
  const std::string file = show.Beside("loose/CPL.xml");
  for (const std::string& name : {show.Beside("loose"), file}) {
    StrataProgram check({"check", name});
    EXPECT_EQ(check.Wait(), 2);
    EXPECT_EQ(check.Errors(),
              "strata: " + file + ": this composition cannot be read: " + reason + ". Ask for it in UTF-8.\n");
  }
}

TEST(ShowInABrokenPackage, TheOnlyCompositionOfAFolderIsMissedWhenItIsNotThere) {
  const BrokenShow show;
  show.Remove("Trailer/CPL.xml");
  StrataProgram check({"check", show.Path("Trailer")});
  EXPECT_EQ(check.Wait(), 3);
  EXPECT_THAT(check.Errors(), testing::EndsWith(": The file is missing.\n"));
}

// What the libraries say of a document on the way, a line and a number without its file, would only confuse.
TEST(ShowInABrokenPackage, CommandsThatNeedAWholeShowSayOnceWhatIsWrong) {
  const BrokenShow show;
  show.Replace("Feature/CPL.xml", "</ReelList>", "</ReelLost>");
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"play", show.Path()}, {"export", "spl", show.Path()}}) {
    StrataProgram program(arguments);
    EXPECT_EQ(program.Wait(), 2);
    EXPECT_THAT(program.Errors(),
                testing::StartsWith(
                    "error: Feature: The composition does not have the form that compositions have. Found: line "));
    EXPECT_THAT(program.Errors(), testing::HasSubstr("\n    file  " + show.Path("Feature/CPL.xml") + "\n"));
    EXPECT_THAT(program.Errors(), testing::Not(testing::HasSubstr("XML parser error count")));
  }
}

}  // namespace
