// SPDX-License-Identifier: BSD-3-Clause
#include "SampleDocuments.h"
#include "form/FormCheck.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Assay::FaultKind;
using Assay::FormFault;
using Assay::ParsedDocument;

/// A sample with one place of its text changed.
std::string Changed(std::string text, const std::string& from, const std::string& to) {
  const size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

struct Checked {
  ParsedDocument Document;
  std::vector<FormFault> Faults;
};

Checked Check(const std::string& text) {
  Checked checked{Assay::ParseDocument(text), {}};
  if (!checked.Document.Root) {
    ADD_FAILURE() << checked.Document.Error;
    return checked;
  }
  const Assay::Grammar* grammar = Assay::FindGrammar(checked.Document.Root->Namespace, checked.Document.Root->Name);
  EXPECT_NE(grammar, nullptr);
  if (grammar != nullptr) checked.Faults = CheckForm(*checked.Document.Root, *grammar);
  return checked;
}

void ExpectOne(const std::string& text, FaultKind kind, const std::string& words, Assay::ui64_t line) {
  const Checked checked = Check(text);
  ASSERT_EQ(checked.Faults.size(), 1U) << words;
  EXPECT_EQ(checked.Faults[0].Kind, kind) << words;
  EXPECT_EQ(DescribeFault(checked.Faults[0]), words);
  EXPECT_EQ(checked.Faults[0].Line, line) << words;
}

TEST(FormCheck, AMissingElementIsToldAtItsParent) {
  ExpectOne(Changed(testsupport::SMPTEVolumeIndex(), "<Index>1</Index>", ""), FaultKind::MissingElement,
            "VolumeIndex has no Index", 2);
  ExpectOne(Changed(testsupport::SMPTEAssetMap(), "<Creator>Creator 1.0</Creator>\n", ""), FaultKind::MissingElement,
            "AssetMap has no Creator", 2);
}

TEST(FormCheck, ARepeatedElementIsToldOnceAtItself) {
  ExpectOne(Changed(testsupport::SMPTEVolumeIndex(), "<Index>1</Index>", "<Index>1</Index>\n<Index>1</Index>"),
            FaultKind::RepeatedElement, "Index is repeated in VolumeIndex", 4);
}

TEST(FormCheck, AMisplacedElementIsNotMissingAsWell) {
  const std::string creator = "<Creator>Creator 1.0</Creator>\n";
  const std::string without = Changed(testsupport::SMPTEAssetMap(), creator, "");
  ExpectOne(Changed(without, "<AssetList>", creator + "<AssetList>"), FaultKind::MisplacedElement,
            "Creator stands at the wrong place in AssetMap", 8);
}

TEST(FormCheck, AnUnknownElementIsTold) {
  ExpectOne(Changed(testsupport::SMPTEVolumeIndex(), "<Index>", "<Other/><Index>"), FaultKind::UnknownElement,
            "Other is unknown in VolumeIndex", 3);
  ExpectOne(Changed(testsupport::SMPTEVolumeIndex(), "<Index>1", "<Index>1<x/>"), FaultKind::UnknownElement,
            "x is unknown in Index", 3);
}

TEST(FormCheck, AWrongValueIsToldWithTheFormExpected) {
  const Checked checked = Check(Changed(testsupport::SMPTEVolumeIndex(), "<Index>1", "<Index>one"));
  ASSERT_EQ(checked.Faults.size(), 1U);
  EXPECT_EQ(checked.Faults[0].Kind, FaultKind::WrongValue);
  EXPECT_EQ(checked.Faults[0].Expected, "a whole number from 1 on");
  EXPECT_EQ(checked.Faults[0].Found, "one");
  EXPECT_EQ(DescribeFault(checked.Faults[0]), "Index is \"one\"");
}

TEST(FormCheck, AttributesAreToldLikeElements) {
  ExpectOne(Changed(testsupport::InteropText(), " Version=\"1.1\"", ""), FaultKind::MissingAttribute,
            "DCSubtitle has no attribute Version", 2);
  ExpectOne(Changed(testsupport::InteropText(), "<MovieTitle>", "<MovieTitle a=\"1\">"), FaultKind::UnknownAttribute,
            "MovieTitle has the unknown attribute a", 4);
  ExpectOne(Changed(testsupport::InteropText(), "Size=\"42\"", "Size=\"0\""), FaultKind::WrongValue, "Size is \"0\"",
            8);
}

TEST(FormCheck, TextBesideElementsIsTold) {
  ExpectOne(Changed(testsupport::SMPTEVolumeIndex(), "<Index>", "stray <Index>"), FaultKind::LooseText,
            "VolumeIndex has text beside its elements", 2);
  ExpectOne(
      "<VolumeIndex xmlns='http://www.smpte-ra.org/schemas/429-9/2007/AM'><Index>1</Index><!-- x --> y</VolumeIndex>",
      FaultKind::LooseText, "VolumeIndex has text beside its elements", 1);
}

TEST(FormCheck, ExtensionsOfACompositionAreHeldAgainstTheirOwnTables) {
  EXPECT_TRUE(Check(testsupport::SMPTEStereoscopicComposition()).Faults.empty());
  const Checked checked = Check(
      Changed(testsupport::SMPTEComposition(), "<meta:Height>1080</meta:Height>", "<meta:Height>x</meta:Height>"));
  ASSERT_EQ(checked.Faults.size(), 1U);
  EXPECT_EQ(DescribeFault(checked.Faults[0]), "Height is \"x\"");
  EXPECT_TRUE(Check(Changed(testsupport::SMPTEComposition(), "<meta:CompositionMetadataAsset",
                            "<x:New xmlns:x=\"urn:x\"><any/></x:New><meta:CompositionMetadataAsset"))
                  .Faults.empty());
}

TEST(FormCheck, BothHomesOfACaptionsLanguageAreRight) {
  EXPECT_TRUE(
      Check(Changed(testsupport::SMPTEComposition(), "<tt:Language>en</tt:Language>", "<Language>en</Language>"))
          .Faults.empty());
}

TEST(FormCheck, DeclarationsAndSchemaLocationsAreNoAttributes) {
  EXPECT_TRUE(Check(Changed(testsupport::SMPTEVolumeIndex(), "<VolumeIndex ",
                            "<VolumeIndex xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                            "xsi:schemaLocation=\"a b\" "))
                  .Faults.empty());
}

TEST(FormCheck, OldNamespacesHaveTheFormOfTheLaterOnes) {
  EXPECT_TRUE(Check(Changed(testsupport::SMPTEVolumeIndex(), "2007/AM", "2006/AM")).Faults.empty());
  EXPECT_TRUE(Check(Changed(testsupport::SMPTEPackingList(), "2007/PKL", "2006/PKL")).Faults.empty());
  EXPECT_EQ(Assay::FindGrammar("http://www.smpte-ra.org/schemas/429-9/2700/AM", "AssetMap"), nullptr);
}

TEST(FormCheck, OneDocumentHasAtMostSoManyFaults) {
  std::string strangers;
  for (int i = 0; i < 500; ++i) strangers += "<Other/>";
  EXPECT_EQ(Check(Changed(testsupport::SMPTEVolumeIndex(), "<Index>", strangers + "<Index>")).Faults.size(),
            Assay::MaxFormFaults);
}

TEST(ParsedDocument, AMalformedOneHasTheLineOfItsFirstError) {
  const ParsedDocument document = Assay::ParseDocument("<a>\n<b>\n</a>");
  EXPECT_FALSE(document.Root.has_value());
  EXPECT_EQ(document.ErrorLine, 3U);
  EXPECT_FALSE(document.Error.empty());
  EXPECT_FALSE(Assay::ParseDocument("<!DOCTYPE a><a/>").Root.has_value());
  EXPECT_FALSE(Assay::ParseDocument("").Root.has_value());
}

TEST(ParsedDocument, TextIsKeptWhereItMeansSomething) {
  const ParsedDocument document = Assay::ParseDocument("<a>\n <b> x<!-- -->y </b>\n <c>1<d>2</d>3</c></a>");
  ASSERT_TRUE(document.Root.has_value());
  EXPECT_EQ(document.Root->Text, "");
  EXPECT_FALSE(document.Root->HasLooseText);
  EXPECT_EQ(TextOf(document.Root->Child("b")), "xy");
  EXPECT_EQ(TextOf(document.Root->Child("c")), "123");
  EXPECT_TRUE(document.Root->Child("c")->HasLooseText);
  EXPECT_EQ(TextOf(document.Root->Path({"c", "d"})), "2");
  EXPECT_EQ(document.Root->Path({"x", "d"}), nullptr);
}

}  // namespace
