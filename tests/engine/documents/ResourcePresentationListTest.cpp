// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/ResourcePresentationList.h>

#include "../../support/LogCapture.h"
#include "../../support/RecordCheck.h"
#include "../../support/SchemaCheck.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

namespace Strata {
namespace {

using RPL = ResourcePresentationList;
using StrataTest::ID;

RPL::ReelResource Caption() {
  RPL::ReelResource resource;
  resource.ID = ID("11111111-2222-3333-4444-555555555555");
  resource.ResourceType = "ClosedCaption";
  resource.Language = "en-GB";
  resource.EntryPoint = 24;
  resource.Duration = 1440;
  resource.IntrinsicDuration = 1500;
  resource.ResourceFileList.push_back({UUID(), "http://media/text?a=1&b=<2>"});
  resource.ResourceFileList.push_back({ID("99999999-8888-7777-6666-555555555555"), "http://media/font"});
  return resource;
}

RPL TwoReels() {
  RPL list;
  list.PlayoutID = 4000000000;
  RPL::ReelResources& first = list.ReelResourcesList.emplace_back();
  first.ReelID = ID("00112233-4455-6677-8899-aabbccddeeff");
  first.EditRate = QUIRE::Rational(24, 1);
  first.ReelResourceList.push_back(Caption());
  RPL::ReelResources& second = list.ReelResourcesList.emplace_back();
  second.TimelineOffset = 1440;
  second.ReelID = ID("ffeeddcc-bbaa-9988-7766-554433221100");
  second.EditRate = QUIRE::Rational(24000, 1001);
  RPL::ReelResource& subtitle = second.ReelResourceList.emplace_back();
  subtitle.ID = ID("22222222-3333-4444-5555-666666666666");
  subtitle.ResourceType = "MainSubtitle";
  subtitle.IntrinsicDuration = 10;
  subtitle.ResourceFileList.push_back({UUID(), "file:///text.xml"});
  return list;
}

std::string Encoded(const RPL& list) {
  std::string out;
  EXPECT_EQ(list.EncodeXML(out), Ferro::RESULT_OK);
  return out;
}

TEST(ResourcePresentationList, NewListIsEmpty) {
  EXPECT_EQ(RPL().PlayoutID, 0u);
  EXPECT_TRUE(RPL().ReelResourcesList.empty());
}

TEST(ResourcePresentationList, WithoutReelsIsAnEmptyElement) {
  EXPECT_EQ(Encoded(RPL()),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<ResourcePresentationList xmlns=\"http://www.smpte-ra.org/schemas/430-11/2010/RPL\" PlayoutID=\"0\"/>\n");
}

TEST(ResourcePresentationList, ValuesStandInAttributesAndURLsInContent) {
  EXPECT_EQ(Encoded(TwoReels()), R"(<?xml version="1.0" encoding="UTF-8"?>
<ResourcePresentationList xmlns="http://www.smpte-ra.org/schemas/430-11/2010/RPL" PlayoutID="4000000000">
  <ReelResources TimelineOffset="0" ReelID="urn:uuid:00112233-4455-6677-8899-aabbccddeeff" EditRate="24 1">)"
                                 R"(
    <ReelResource Id="urn:uuid:11111111-2222-3333-4444-555555555555" ResourceType="ClosedCaption" Language="en-GB" )"
                                 R"(EntryPoint="24" Duration="1440" IntrinsicDuration="1500">
      <ResourceFile>http://media/text?a=1&amp;b=&lt;2&gt;</ResourceFile>
      <ResourceFile ResourceID="urn:uuid:99999999-8888-7777-6666-555555555555">http://media/font</ResourceFile>
    </ReelResource>
  </ReelResources>
  <ReelResources TimelineOffset="1440" ReelID="urn:uuid:ffeeddcc-bbaa-9988-7766-554433221100" EditRate="24000 1001">)"
                                 R"(
    <ReelResource Id="urn:uuid:22222222-3333-4444-5555-666666666666" ResourceType="MainSubtitle" )"
                                 R"(EntryPoint="0" IntrinsicDuration="10">
      <ResourceFile>file:///text.xml</ResourceFile>
    </ReelResource>
  </ReelResources>
</ResourcePresentationList>
)");
}

TEST(ResourcePresentationList, ZeroDurationHasNoAttribute) {
  RPL list = TwoReels();
  EXPECT_NE(Encoded(list).find(" Duration=\"1440\""), std::string::npos);
  list.ReelResourcesList.front().ReelResourceList.front().Duration = 0;
  EXPECT_EQ(Encoded(list).find(" Duration="), std::string::npos);
}

TEST(ResourcePresentationList, EmptyLanguageHasNoAttribute) {
  RPL list = TwoReels();
  list.ReelResourcesList.front().ReelResourceList.front().Language.clear();
  EXPECT_EQ(Encoded(list).find("Language"), std::string::npos);
}

TEST(ResourcePresentationList, FileWithoutIdentifierHasNoAttribute) {
  RPL list = TwoReels();
  list.ReelResourcesList.front().ReelResourceList.front().ResourceFileList.pop_back();
  EXPECT_EQ(Encoded(list).find("ResourceID"), std::string::npos);
}

TEST(ResourcePresentationList, ReelWithoutIdentifierHasNoAttribute) {
  RPL list = TwoReels();
  for (RPL::ReelResources& reel : list.ReelResourcesList) reel.ReelID.Reset();
  EXPECT_EQ(Encoded(list).find("ReelID"), std::string::npos);
}

TEST(ResourcePresentationList, CountsAreWrittenAsTheirLow32Bits) {
  RPL list = TwoReels();
  list.ReelResourcesList.pop_back();
  list.ReelResourcesList.front().TimelineOffset = 0x100000000;
  RPL::ReelResource& resource = list.ReelResourcesList.front().ReelResourceList.front();
  resource.EntryPoint = 0x100000001;
  resource.Duration = 0x100000000;
  resource.IntrinsicDuration = 0xFFFFFFFFFFFFFFFF;
  const std::string document = Encoded(list);
  EXPECT_NE(document.find(" TimelineOffset=\"0\""), std::string::npos);
  EXPECT_NE(document.find(" EntryPoint=\"1\" Duration=\"0\" IntrinsicDuration=\"4294967295\""), std::string::npos);
}

TEST(ResourcePresentationList, TextThatXMLCannotCarryIsRefused) {
  RPL list = TwoReels();
  list.ReelResourcesList.front().ReelResourceList.front().ResourceType = "\x01";
  std::string out = "as before";
  EXPECT_EQ(list.EncodeXML(out), Ferro::RESULT_PARAM);
  EXPECT_EQ(out, "as before");
}

TEST(ResourcePresentationList, CopiesAreDeep) {
  const RPL::ReelResources reel = TwoReels().ReelResourcesList.front();
  RPL::ReelResources copy = reel;
  copy.ReelResourceList.front().ResourceFileList.clear();
  EXPECT_EQ(reel.ReelResourceList.front().ResourceFileList.size(), 2u);
}

TEST(ResourcePresentationList, RandomIdentifiersDiffer) {
  std::set<ui32_t> seen;
  for (int i = 0; i < 8; ++i) {
    RPL list;
    list.GenRandomIDValue();
    seen.insert(list.PlayoutID);
  }
  EXPECT_GT(seen.size(), 6u);
}

TEST(ResourcePresentationList, RandomIdentifiersUseAll32Bits) {
  ui32_t set = 0;
  ui32_t clear = 0;
  for (int i = 0; i < 100; ++i) {
    RPL list;
    list.GenRandomIDValue();
    set |= list.PlayoutID;
    clear |= ~list.PlayoutID;
  }
  EXPECT_EQ(set, 0xFFFFFFFF);
  EXPECT_EQ(clear, 0xFFFFFFFF);
}

// Lists with none, one and several of each thing.
std::vector<std::string> AllShapes() {
  std::vector<std::string> documents{Encoded(RPL()), Encoded(TwoReels())};
  for (size_t reels = 0; reels < 4; ++reels) {
    for (size_t resources = 0; resources < 4; ++resources) {
      for (size_t files = 1; files < 4; ++files) {
        RPL list;
        list.GenRandomIDValue();
        RPL::ReelResource resource = Caption();
        resource.Duration = files - 1;
        resource.ResourceFileList.assign(files, {UUID::Random(), "http://media/" + std::to_string(files)});
        RPL::ReelResources reel;
        reel.ReelID = UUID::Random();
        reel.ReelResourceList.assign(resources, resource);
        list.ReelResourcesList.assign(reels, reel);
        documents.push_back(Encoded(list));
      }
    }
  }
  return documents;
}

TEST(ResourcePresentationList, WrittenListsAreRecognisedAndChangeNothing) {
  testsupport::LogCapture log;
  for (const std::string& document : AllShapes()) {
    RPL list = TwoReels();
    EXPECT_EQ(list.DecodeXML(document), Ferro::RESULT_OK);
    EXPECT_EQ(Encoded(list), Encoded(TwoReels()));
  }
  EXPECT_EQ(log.TextWithLevels(), "");
}

TEST(ResourcePresentationList, WrittenListsAreValidByThePublishedSchema) {
  const char* folder = std::getenv("STRATA_SCHEMAS");
  if (folder == nullptr)
    GTEST_SKIP() << "NOT RUN: STRATA_SCHEMAS does not name a folder with the schema of ST 430-11:2010";
  EXPECT_EQ(testsupport::ValidateDocuments(std::string(folder) + "/reconstructed-430-11-2010-RPL.xsd", AllShapes()),
            "");
}

}  // namespace
}  // namespace Strata
