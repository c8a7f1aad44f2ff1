// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/TimedText.h>

#include "../support/LogCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace CairnTest {

/// Reads documents of both flavours with a sound heading, and names their problems.
class TimedTextTest : public testing::Test {
 protected:
  /// An ST 428-7 document with that heading, after the required one, and that content of its list, which begins the
  /// second line.
  static std::string SMPTE(const std::string& list, const std::string& heading = "", const std::string& year = "2014",
                           const std::string& rates = "<EditRate>24 1</EditRate><TimeCodeRate>24</TimeCodeRate>") {
    return "<SubtitleReel xmlns='http://www.smpte-ra.org/schemas/428-7/" + year +
           "/DCST'><Id>urn:uuid:00000000-0000-4000-8000-000000000001</Id><ContentTitleText>T</ContentTitleText>"
           "<IssueDate>2026-01-01T00:00:00</IssueDate>" +
           rates + heading + "<SubtitleList>\n" + list + "</SubtitleList></SubtitleReel>";
  }

  /// Likewise an Interop document.
  static std::string Interop(const std::string& content) {
    return "<DCSubtitle Version='1.1'><SubtitleID>00000000-0000-4000-8000-000000000001</SubtitleID>"
           "<MovieTitle>T</MovieTitle><ReelNumber>1</ReelNumber><Language>en</Language>\n" +
           content + "</DCSubtitle>";
  }

  static std::string Instance(const std::string& content, const std::string& attributes = "") {
    return "<Subtitle SpotNumber='1' TimeIn='00:00:01:000' TimeOut='00:00:02:000' " + attributes + ">" + content +
           "</Subtitle>";
  }

  void Read(const std::string& xml) { ASSERT_EQ(m_Document.DecodeXML(xml), Ferro::RESULT_OK) << m_Log.Text(); }

  /// "LINE KIND NAME [FOUND] [USED]" of each problem.
  [[nodiscard]] std::vector<std::string> Problems() const {
    static const char* const kinds[] = {"missing",   "repeated",     "unknown",    "misplaced",   "other edition",
                                        "malformed", "out of range", "not loaded", "before start"};
    std::vector<std::string> texts;
    for (const Cairn::TextProblem& problem : m_Document.ProblemList)
      texts.push_back(std::to_string(problem.Line) + " " + kinds[static_cast<size_t>(problem.Kind)] + " " +
                      problem.Name + " [" + problem.Found + "] [" + problem.Used + "]");
    EXPECT_EQ(m_Document.ProblemCount, texts.size());
    return texts;
  }

  /// The only line of the only instance, and the font of one of its runs.
  [[nodiscard]] const Cairn::TextLine& Line() const { return m_Document.InstanceList.at(0).TextList.at(0); }
  [[nodiscard]] const Cairn::TextFont& Font(size_t run = 0) const {
    return m_Document.FontList.at(Line().RunList.at(run).Font);
  }

  testsupport::LogCapture m_Log;
  Cairn::TimedText m_Document;
};

}  // namespace CairnTest
