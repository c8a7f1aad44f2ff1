// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/XercesCallWrapper.h>

#include "../support/LogCapture.h"

#include <Cairn/AssetMap.h>
#include <Cairn/XMLNode.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>
#include <xsec/enc/XSECCryptoException.hpp>
#include <xsec/framework/XSECException.hpp>

#include <functional>
#include <string>
#include <thread>
#include <utility>

namespace {

using Cairn::Result_t;
using testing::ElementsAre;
using testing::IsEmpty;

struct Seen {
  Cairn::DCPFormat_t Format = Cairn::DFT_NONE;
  std::string RootName;
  std::vector<std::string> Nodes;
  std::vector<std::string> Calls;
};

// Takes down what the frame hands over; runs a given action first.
class Recorder : public Cairn::XercesCallWrapper<Seen> {
 public:
  explicit Recorder(std::function<void()> action = {}) : m_Action(std::move(action)) {}

  void SetupParser(Ferro::ILogSink& log) override {
    m_Calls.emplace_back("SetupParser");
    XercesCallWrapper::SetupParser(log);
    if (m_DropsParser) m_parser.set(nullptr);
  }

  Result_t SetupCaller(Seen* seen, Cairn::DCPFormat_t format, Ferro::ILogSink&) override {
    m_Calls.emplace_back("SetupCaller");
    seen->Calls = m_Calls;
    seen->Format = format;
    seen->RootName = Cairn::LocalName(m_doc->getDocumentElement());
    for (const xercesc::DOMNode* node = m_iter->getRoot(); node != nullptr; node = m_iter->nextNode())
      seen->Nodes.push_back(node->getNodeType() == xercesc::DOMNode::TEXT_NODE ? Cairn::TextContent(node)
                                                                               : "<" + Cairn::LocalName(node) + ">");
    if (m_Action) m_Action();
    return m_Result;
  }

  Result_t m_Result = Ferro::RESULT_OK;
  bool m_DropsParser = false;

 private:
  std::function<void()> m_Action;
  std::vector<std::string> m_Calls;
};

class ParsingFrame : public testing::Test {
 protected:
  void SetUp() override { Cairn::init_xml_libs(); }

  Result_t Parse(const std::string& xml) {
    Recorder recorder;
    return recorder.Parse(xml, &m_Seen, m_Log);
  }

  Result_t ParseAndDo(std::function<void()> action) {
    Recorder recorder(std::move(action));
    return recorder.Parse("<a xmlns=\"http://www.smpte-ra.org/x\"/>", &m_Seen, m_Log);
  }

  std::vector<std::string> Messages() const {
    std::vector<std::string> messages;
    for (const Ferro::LogEntry& entry : m_Log.Entries()) messages.push_back(entry.Message);
    return messages;
  }

  Seen m_Seen;
  Ferro::MemoryLogSink m_Log;
};

struct FormatCase {
  const char* Name;
  const char* Document;
  Cairn::DCPFormat_t Format;
};

class ParsingFrameFormat : public ParsingFrame, public testing::WithParamInterface<FormatCase> {};

TEST_P(ParsingFrameFormat, FollowsFromTheNamespaceThenTheElement) {
  EXPECT_EQ(Parse(GetParam().Document), Ferro::RESULT_OK);
  EXPECT_EQ(m_Seen.Format, GetParam().Format);
}

constexpr FormatCase FormatCases[] = {
    {"RegistrationAuthority", R"(<a xmlns="http://www.smpte-ra.org/schemas/429-7/2006/CPL"/>)", Cairn::DFT_DCI_SMPTE},
    {"HostWithoutHyphen", R"(<a xmlns="http://www.smptera.org/schemas/430-11/2010/RPL"/>)", Cairn::DFT_DCI_SMPTE},
    {"IMFUserGroup", R"(<a xmlns="http://www.imfug.com/schemas/x"/>)", Cairn::DFT_DCI_SMPTE},
    {"EarlierInitiative", R"(<a xmlns="http://www.digicine.com/PROTO-ASDCP-CPL-20040511#"/>)", Cairn::DFT_Interop},
    {"Maker", R"(<a xmlns="http://www.strata.example/ra/xsd/strata-spl-1"/>)", Cairn::DFT_Interop},
    {"SubtitleWithoutNamespace", "<DCSubtitle/>", Cairn::DFT_Interop},
    {"SubtitleInAnUnknownNamespace", R"(<DCSubtitle xmlns="urn:x"/>)", Cairn::DFT_Interop},
    {"SubtitleElementInAnSMPTENamespace", R"(<DCSubtitle xmlns="http://www.smpte-ra.org/x"/>)", Cairn::DFT_DCI_SMPTE},
};

INSTANTIATE_TEST_SUITE_P(Each, ParsingFrameFormat, testing::ValuesIn(FormatCases),
                         [](const auto& each) { return each.param.Name; });

TEST_F(ParsingFrame, AnUnknownNamespaceIsRefusedBeforeAnyParsing) {
  EXPECT_EQ(Parse("<a xmlns=\"urn:unknown\">never looked at &"), Cairn::RESULT_XML_NAMESPACE);
  EXPECT_THAT(Messages(), ElementsAre("Document does not contain SMPTE or JPEG Interop XML.\n"));
  EXPECT_THAT(m_Seen.Calls, IsEmpty());
}

TEST_F(ParsingFrame, ANamespaceThatOnlyContainsAPrefixIsRefused) {
  EXPECT_EQ(Parse("<a xmlns=\"x-http://www.smpte-ra.org/\"/>"), Cairn::RESULT_XML_NAMESPACE);
}

TEST_F(ParsingFrame, TextWithoutDocumentElementIsRefused) {
  for (const char* text : {"", "   ", "plain text", "<?xml version=\"1.0\"?>", "<!-- only -->", "<", "<1/>"}) {
    m_Log.Clear();
    EXPECT_EQ(Parse(text), Cairn::RESULT_XML_PARSE) << text;
    EXPECT_THAT(Messages(), ElementsAre("Unable to parse XML document element.\n")) << text;
  }
}

TEST_F(ParsingFrame, TwoMalformedConstructsGiveTwoLinesThenTheCount) {
  EXPECT_EQ(Parse("<a xmlns=\"http://www.smpte-ra.org/x\">\n<b c=1/>\n<d>&undefined;</d>\n</a>"),
            Cairn::RESULT_XML_PARSE);
  EXPECT_THAT(Messages(), ElementsAre("line 2: attribute value expected\n", "line 3: entity 'undefined' not found\n",
                                      "XML parser error count: 2\n"));
  for (const Ferro::LogEntry& entry : m_Log.Entries()) EXPECT_EQ(entry.Level, Ferro::LogLevel::Error);
  EXPECT_THAT(m_Seen.Calls, IsEmpty());
}

TEST_F(ParsingFrame, WhatDoesNotNestIsRefused) {
  for (const char* declaration : {"", "<?xml version=\"1.0\"?>", "<?xml a?>"})
    for (const char* content : {"<b c<b d</b></b></a>", "<b c<b d</b</b", "</b></a></a></a>", "</a><a/><a>text</a>",
                                "<b></a></b></a>", "</a>text</a><c></c></c><!-- comment --><?pi?>",
                                "<b a='1' a='2'/></b></a></a><b>", "<![CDATA[</a>]]></b></b>"}) {
      m_Log.Clear();
      const std::string text = declaration + std::string("<a xmlns=\"http://www.smpte-ra.org/\">") + content;
      EXPECT_EQ(Parse(text), Cairn::RESULT_XML_PARSE) << text;
      EXPECT_THAT(Messages().back(), testing::StartsWith("XML parser error count: ")) << text;
    }
  EXPECT_THAT(m_Seen.Calls, IsEmpty());
}

TEST_F(ParsingFrame, AnUnboundPrefixIsAnError) {
  EXPECT_EQ(Parse("<a xmlns=\"http://www.smpte-ra.org/x\"><p:b/></a>"), Cairn::RESULT_XML_PARSE);
  EXPECT_EQ(Messages().back(), "XML parser error count: 1\n");
}

TEST_F(ParsingFrame, ADocumentOfManyErrorsHasAHundredLinesAndAllErrorsCounted) {
  std::string xml = "<a xmlns=\"http://www.smpte-ra.org/x\">";
  for (int i = 0; i < 1000; ++i) xml += "&undefined;\n";
  EXPECT_EQ(Parse(xml + "</a>"), Cairn::RESULT_XML_PARSE);
  EXPECT_EQ(Messages().size(), 101u);
  EXPECT_EQ(Messages().back(), "XML parser error count: 1000\n");
}

TEST_F(ParsingFrame, ADocumentOfAMillionErrorsIsGivenUp) {
  std::string xml = "<a xmlns=\"http://www.smpte-ra.org/x\">";
  for (int i = 0; i < 1'000'000; ++i) xml += "&u;";
  EXPECT_EQ(Parse(xml + "</a>"), Cairn::RESULT_XML_PARSE);
  EXPECT_EQ(Messages().size(), 101u);
  EXPECT_EQ(Messages().back(), "XML parser error count: 100000\n");
}

// Has no memory to give.
class NoMemory : public xercesc::MemoryManager {
 public:
  xercesc::MemoryManager* getExceptionMemoryManager() override { return this; }
  void* allocate(XMLSize_t) override { throw xercesc::OutOfMemoryException(); }
  void deallocate(void*) override {}
};

TEST_F(ParsingFrame, AParserThatCannotBeMadeForWantOfMemoryIsAFailure) {
  NoMemory none;
  Result_t framed = Ferro::RESULT_OK;
  Result_t decoded = Ferro::RESULT_OK;
  xercesc::MemoryManager* manager = std::exchange(xercesc::XMLPlatformUtils::fgMemoryManager, &none);
  // A thread of its own, which keeps no parser from a document before.
  std::thread([&] {
    Cairn::AssetMap map;
    framed = Parse("<a xmlns=\"http://www.smpte-ra.org/x\"/>");
    decoded = map.DecodeXML("<AssetMap xmlns=\"http://www.smpte-ra.org/x\"/>");
  }).join();
  xercesc::XMLPlatformUtils::fgMemoryManager = manager;
  EXPECT_EQ(framed, Cairn::RESULT_XML_PARSE);
  EXPECT_EQ(decoded, Cairn::RESULT_XML_PARSE);
  EXPECT_THAT(Messages(), testing::Contains("Out of memory exception\n"));
}

TEST_F(ParsingFrame, TheOperationsAreCalledInTheirOrder) {
  EXPECT_EQ(Parse("<a xmlns=\"http://www.smpte-ra.org/x\"/>"), Ferro::RESULT_OK);
  EXPECT_THAT(m_Seen.Calls, ElementsAre("SetupParser", "SetupCaller"));
}

TEST_F(ParsingFrame, TheResultIsTheHandlers) {
  Recorder recorder;
  recorder.m_Result = Cairn::RESULT_NOT_CPL;
  EXPECT_EQ(recorder.Parse("<DCSubtitle/>", &m_Seen, m_Log), Cairn::RESULT_NOT_CPL);
  EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(ParsingFrame, TheWalkerShowsElementsAndTextsFromTheDocumentElementOn) {
  EXPECT_EQ(Parse("<!-- x --><DCSubtitle>a<!-- b --><c>d</c><?e?></DCSubtitle>"), Ferro::RESULT_OK);
  EXPECT_THAT(m_Seen.Nodes, ElementsAre("<DCSubtitle>", "a", "<c>", "d"));
}

TEST_F(ParsingFrame, ATextSplitByCommentsAndCDATAIsOneNode) {
  EXPECT_EQ(Parse("<DCSubtitle>2<!-- - -->4<?p?><![CDATA[0 & <x>]]>&#65;&amp;</DCSubtitle>"), Ferro::RESULT_OK);
  EXPECT_THAT(m_Seen.Nodes, ElementsAre("<DCSubtitle>", "240 & <x>A&"));
}

TEST_F(ParsingFrame, PartsReadBeforeAFailureStay) {
  EXPECT_EQ(ParseAndDo([] { throw 1; }), Cairn::RESULT_XML_PARSE);
  EXPECT_EQ(m_Seen.RootName, "a");
}

// The exceptions of the XML libraries, one by one.

TEST_F(ParsingFrame, ACryptoExceptionIsLoggedWithItsMessage) {
  EXPECT_EQ(ParseAndDo([] { throw XSECCryptoException(XSECCryptoException::MDError, "bad digest"); }),
            Cairn::RESULT_XML_PARSE);
  EXPECT_THAT(Messages(), ElementsAre("Crypto error: bad digest\n"));
}

TEST_F(ParsingFrame, ASecurityExceptionIsLoggedWithItsMessage) {
  EXPECT_EQ(ParseAndDo([] { throw XSECException(XSECException::SigVfyError, u"bad signature"); }),
            Cairn::RESULT_XML_PARSE);
  EXPECT_THAT(Messages(), ElementsAre("Signing error: bad signature\n"));
}

TEST_F(ParsingFrame, ADOMExceptionIsLoggedWithItsCode) {
  EXPECT_EQ(ParseAndDo([] { throw xercesc::DOMException(xercesc::DOMException::NOT_FOUND_ERR); }),
            Cairn::RESULT_XML_PARSE);
  EXPECT_THAT(Messages(), ElementsAre("XML DOMException code: 8\n"));
}

TEST_F(ParsingFrame, AnXMLExceptionIsLoggedWithItsMessage) {
  EXPECT_EQ(ParseAndDo([] {
              throw xercesc::RuntimeException(__FILE__, __LINE__, xercesc::XMLExcepts::Str_ZeroSizedTargetBuf);
            }),
            Cairn::RESULT_XML_PARSE);
  EXPECT_THAT(Messages(), ElementsAre("XML parse error: target buffer cannot have zero max size\n"));
}

TEST_F(ParsingFrame, RunningOutOfMemoryIsLogged) {
  EXPECT_EQ(ParseAndDo([] { throw xercesc::OutOfMemoryException(); }), Cairn::RESULT_XML_PARSE);
  EXPECT_THAT(Messages(), ElementsAre("Out of memory exception\n"));
}

TEST_F(ParsingFrame, ASAXExceptionIsLogged) {
  EXPECT_EQ(ParseAndDo([] { throw xercesc::SAXException("x"); }), Cairn::RESULT_XML_PARSE);
  EXPECT_THAT(Messages(), ElementsAre("XML SAXException\n"));
}

TEST_F(ParsingFrame, AnyOtherExceptionIsLogged) {
  EXPECT_EQ(ParseAndDo([] { throw std::runtime_error("x"); }), Cairn::RESULT_XML_PARSE);
  EXPECT_THAT(Messages(), ElementsAre("Unexpected XML library exception\n"));
}

using ParsingFrameDeathTest = ParsingFrame;

TEST_F(ParsingFrameDeathTest, AMissingParserIsAnAssertion) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  EXPECT_DEATH(
      {
        Recorder recorder;
        recorder.m_DropsParser = true;
        (void)recorder.Parse("<DCSubtitle/>", &m_Seen, m_Log);
      },
      "Assertion 'm_parser' failed");
}

}  // namespace
