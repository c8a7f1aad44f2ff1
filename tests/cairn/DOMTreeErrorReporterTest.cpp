// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/DOMTreeErrorReporter.h>

#include "../support/LogCapture.h"

#include <Cairn/AssetMap.h>
#include <Cairn/XMLLibraries.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xercesc/sax/SAXParseException.hpp>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DOMTreeErrorReporter : public testing::Test {
 protected:
  void SetUp() override { Cairn::init_xml_libs(); }

  static xercesc::SAXParseException At(XMLFileLoc line, const XMLCh* message) {
    return xercesc::SAXParseException(message, u"", u"", line, 1);
  }

  testsupport::LogCapture m_Log;
  Cairn::DOMTreeErrorReporter m_Reporter;
};

TEST_F(DOMTreeErrorReporter, AnErrorIsCountedAndLogged) {
  m_Reporter.error(At(7, u"caf\u00E9"));
  EXPECT_EQ(m_Reporter.m_ErrorCount, 1u);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("line 7: caf\xC3\xA9\n"));
}

TEST_F(DOMTreeErrorReporter, AFatalErrorIsCountedAndLogged) {
  m_Reporter.fatalError(At(8, u"broken"));
  EXPECT_EQ(m_Reporter.m_ErrorCount, 1u);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("line 8: broken\n"));
}

TEST_F(DOMTreeErrorReporter, AWarningIsLoggedAndNotCounted) {
  m_Reporter.warning(At(9, u"odd"));
  EXPECT_EQ(m_Reporter.m_ErrorCount, 0u);
  EXPECT_THAT(m_Log.Warnings(), ElementsAre("line 9: odd\n"));
  EXPECT_THAT(m_Log.Errors(), IsEmpty());
}

TEST_F(DOMTreeErrorReporter, ResetSetsTheCountToZero) {
  m_Reporter.error(At(1, u"x"));
  m_Reporter.resetErrors();
  EXPECT_EQ(m_Reporter.m_ErrorCount, 0u);
}

TEST_F(DOMTreeErrorReporter, AHundredLinesAreLoggedAndAllErrorsCounted) {
  for (XMLFileLoc line = 1; line <= 60; ++line) m_Reporter.warning(At(line, u"odd"));
  for (XMLFileLoc line = 1; line <= 250; ++line) m_Reporter.error(At(line, u"broken"));
  EXPECT_EQ(m_Log.Warnings().size(), 60u);
  EXPECT_EQ(m_Log.Errors().size(), 40u);
  EXPECT_EQ(m_Log.Errors().back(), "line 40: broken\n");
  EXPECT_EQ(m_Reporter.m_ErrorCount, 250u);
}

TEST_F(DOMTreeErrorReporter, TheCountLineCountsTheErrorsThatHaveNoLine) {
  std::string text = "<AssetMap xmlns=\"http://www.smpte-ra.org/schemas/429-9/2007/AM\">";
  for (int i = 0; i < 300; ++i) text += "&nothing;\n";
  Cairn::AssetMap map;
  EXPECT_EQ(map.DecodeXML(text + "</AssetMap>"), Cairn::RESULT_XML_PARSE);
  ASSERT_EQ(m_Log.Errors().size(), 101u);
  EXPECT_EQ(m_Log.Errors()[99].substr(0, 9), "line 100:");
  EXPECT_EQ(m_Log.Errors()[100], "XML parser error count: 300\n");
}

TEST_F(DOMTreeErrorReporter, ASinkOfItsOwnTakesTheLines) {
  Ferro::MemoryLogSink sink;
  m_Reporter.m_LogSink = &sink;
  m_Reporter.error(At(2, u"x"));
  EXPECT_TRUE(sink.Contains(Ferro::LogLevel::Error, "line 2: x\n"));
  EXPECT_THAT(m_Log.Errors(), IsEmpty());
}

}  // namespace
