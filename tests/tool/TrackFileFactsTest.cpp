// SPDX-License-Identifier: BSD-3-Clause
#include "show/TrackFileFacts.h"

#include "../support/EssenceMaker.h"
#include "../support/TemporaryFolder.h"

#include <QUIRE/TimedTextWriter.h>

#include <gtest/gtest.h>

namespace {

using namespace Tool;

constexpr char DocumentID[] = "00000000-0000-4000-8000-000000000001";
constexpr char FontID[] = "00000000-0000-4000-8000-000000000002";
constexpr char ImageID[] = "00000000-0000-4000-8000-000000000003";

/// What is found of a track file without fonts and images that carries the text.
TrackFileFacts FactsOfText(const std::string& text) {
  const testsupport::TemporaryFolder folder;
  const std::string path = folder.Path("a.mxf");
  QUIRE::TimedText::TimedTextDescriptor descriptor;
  descriptor.EditRate = QUIRE::EditRate_24;
  descriptor.ContainerDuration = 48;
  descriptor.AssetID = *Ferro::UUID::FromHex(DocumentID);
  descriptor.NamespaceName = "http://www.smpte-ra.org/schemas/428-7/2010/DCST";
  QUIRE::WriterInfo info;
  info.AssetUUID = Ferro::UUID::Random();
  info.LabelSetType = QUIRE::LS_MXF_SMPTE;
  QUIRE::TimedText::MXFWriter writer;
  EXPECT_TRUE(writer.OpenWrite(path, info, descriptor).Success());
  EXPECT_TRUE(writer.WriteTimedTextResource(text).Success());
  EXPECT_TRUE(writer.Finalize().Success());
  return ReadTrackFileFacts(path, Cairn::FT_QUIRE_TIMED_TEXT, 0);
}

TEST(TrackFileFacts, FontsAndImagesThatTheFileLacksAreNamed) {
  const TrackFileFacts facts =
      FactsOfText(testsupport::MakeTextDocument(DocumentID, {FontID}, {ImageID}, QUIRE::EditRate_24));
  EXPECT_EQ(facts.Problem, TrackFileProblem::None);
  EXPECT_EQ(facts.MissingFont, FontID);
  EXPECT_EQ(facts.MissingImage, ImageID);
}

TEST(TrackFileFacts, TextWithoutFontsAndImagesLacksNothing) {
  const TrackFileFacts facts = FactsOfText(testsupport::MakeTextDocument(DocumentID, {}, {}, QUIRE::EditRate_24));
  EXPECT_EQ(facts.Problem, TrackFileProblem::None);
  EXPECT_EQ(facts.MissingFont + facts.MissingImage, "");
}

TEST(TrackFileFacts, TextThatIsNotWellFormedIsToldFromAnotherDocument) {
  EXPECT_EQ(FactsOfText("<SubtitleReel xmlns=\"http://www.smpte-ra.org/schemas/428-7/2010/DCST\">").Problem,
            TrackFileProblem::TextIsNotXML);
  const TrackFileFacts other =
      FactsOfText("<CompositionPlaylist xmlns=\"http://www.smpte-ra.org/schemas/429-7/2006/CPL\"/>");
  EXPECT_EQ(other.Problem, TrackFileProblem::TextUnreadable);
  EXPECT_EQ(other.Reason, "the document is not a subtitle document");
}

}  // namespace
