// SPDX-License-Identifier: BSD-3-Clause
#include "../../support/LogCapture.h"
#include "ResourcePresentationList/h__RPLParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Strata {
namespace {

using testsupport::LogCapture;

TEST(RPLParser, AnotherDocumentIsNotRecognised) {
  ResourcePresentationList list;
  LogCapture log;
  EXPECT_EQ(list.DecodeXML("<ShowPlaylist xmlns=\"http://www.strata.example/ra/xsd/strata-spl-1\"/>"),
            Cairn::RESULT_NOT_CPL);
  EXPECT_EQ(log.TextWithLevels(), "");
}

TEST(RPLParser, ContentIsPassedOver) {
  ResourcePresentationList list;
  EXPECT_EQ(list.DecodeXML("<r:ResourcePresentationList xmlns:r=\"http://www.smpte-ra.org/schemas/430-11/2010/RPL\" "
                           "PlayoutID=\"17\"><r:ReelResources TimelineOffset=\"x\"/> text <Other/>"
                           "</r:ResourcePresentationList>"),
            Ferro::RESULT_OK);
  EXPECT_EQ(list.PlayoutID, 0u);
  EXPECT_TRUE(list.ReelResourcesList.empty());
}

TEST(RPLParser, UnknownNamespaceAndMalformedTextAreRefused) {
  ResourcePresentationList list;
  LogCapture log;
  EXPECT_EQ(list.DecodeXML("<ResourcePresentationList xmlns=\"http://other.example/\"/>"), Cairn::RESULT_XML_NAMESPACE);
  EXPECT_EQ(list.DecodeXML(""), Cairn::RESULT_XML_PARSE);
  EXPECT_EQ(log.TextWithLevels(),
            "E Document does not contain SMPTE or JPEG Interop XML.\nE Unable to parse XML document element.\n");
}

TEST(RPLParser, UnclosedDocumentIsRefused) {
  ResourcePresentationList list;
  LogCapture log;
  EXPECT_EQ(list.DecodeXML("<ResourcePresentationList xmlns=\"http://www.smpte-ra.org/schemas/430-11/2010/RPL\">"),
            Cairn::RESULT_XML_PARSE);
  EXPECT_THAT(log.TextWithLevels(), testing::EndsWith("E XML parser error count: 1\n"));
}

TEST(RPLParser, DocumentTypeDeclarationIsRefused) {
  ResourcePresentationList list;
  LogCapture log;
  EXPECT_EQ(list.DecodeXML("<!DOCTYPE x [<!ENTITY e SYSTEM \"file:///etc/hostname\">]><ResourcePresentationList "
                           "xmlns=\"http://www.smpte-ra.org/schemas/430-11/2010/RPL\">&e;</ResourcePresentationList>"),
            Cairn::RESULT_XML_PARSE);
  EXPECT_NE(log.TextWithLevels(), "");
}

TEST(RPLParser, WithoutADocumentTheStateIsWrong) {
  Cairn::init_xml_libs();
  h__RPLParser parser;
  ResourcePresentationList list;
  Ferro::MemoryLogSink log;
  EXPECT_EQ(parser.SetupCaller(&list, Cairn::DFT_NONE, log), Ferro::RESULT_STATE);
  ASSERT_EQ(log.Entries().size(), 1u);
  EXPECT_EQ(log.Entries()[0].Level, Ferro::LogLevel::Error);
  EXPECT_THAT(log.Entries()[0].Message,
              testing::MatchesRegex("RESULT_STATE RETURNED at .*h__RPLParser\\.cpp \\([0-9]+\\)\n"));
}

TEST(RPLParser, WithoutAListTheStateIsWrong) {
  Cairn::init_xml_libs();
  h__RPLParser parser;
  Ferro::MemoryLogSink log;
  EXPECT_EQ(parser.Parse("<ResourcePresentationList xmlns=\"http://www.smpte-ra.org/schemas/430-11/2010/RPL\"/>",
                         nullptr, log),
            Ferro::RESULT_STATE);
  EXPECT_EQ(log.Entries().size(), 1u);
}

}  // namespace
}  // namespace Strata
