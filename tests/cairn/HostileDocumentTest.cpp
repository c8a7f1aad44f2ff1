// SPDX-License-Identifier: BSD-3-Clause
#include "../support/LogCapture.h"
#include "HostileDocuments.h"
#include "SampleDocuments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <ctime>

namespace {

using CairnTest::HostileDocument;
using CairnTest::VolumeIndexText;

// Generous, so that sanitizers pass; what they guard against takes hours and all memory.
constexpr std::clock_t MostTime = 30 * CLOCKS_PER_SEC;  // of the processor, whatever else the machine does
constexpr long MostMemory = 2'000'000;                  // KiB

void ExpectRefused(const std::vector<HostileDocument>& documents) {
  for (const HostileDocument& document : documents) {
    const testsupport::LogCapture log;
    const std::clock_t start = std::clock();
    Cairn::VolumeIndex volume;
    EXPECT_TRUE(volume.DecodeXML(document.Text).Failure()) << document.Name;
    EXPECT_LT(std::clock() - start, MostTime) << document.Name;
    EXPECT_EQ(log.Errors(), document.Lines) << document.Name;
  }
  rusage usage{};
  ASSERT_EQ(getrusage(RUSAGE_SELF, &usage), 0);
  EXPECT_LT(usage.ru_maxrss, MostMemory);
}

Cairn::Result_t Read(const std::string& text, Cairn::VolumeIndex& volume) {
  const testsupport::LogCapture log;
  return volume.DecodeXML(text);
}

TEST(HostileDocument, DocumentTypeDeclarationsAreRefused) {
  ExpectRefused(CairnTest::DocumentsWithTypes());
}

TEST(HostileDocument, DocumentsBeyondTheLimitsAreRefused) {
  ExpectRefused(CairnTest::DocumentsBeyondLimits());
}

TEST(HostileDocument, OddEncodingsAreRefused) {
  ExpectRefused(CairnTest::DocumentsOfOddEncodings());
}

TEST(HostileDocument, DocumentsAtTheLimitsAreRead) {
  const auto repeat = [](const std::string& text, int count) {
    std::string out;
    for (int i = 0; i < count; ++i) out += text;
    return out;
  };
  std::string attributes;
  for (int i = 0; i < 64; ++i) attributes += " a" + std::to_string(i) + "=\"\"";
  for (const std::string& content : {repeat("<a>", 255) + repeat("</a>", 255), "<a" + attributes + "/>",
                                     "<a b=\"" + std::string(65'536, 'x') + "\"/>", repeat("<a/>", 499'998)}) {
    Cairn::VolumeIndex volume;
    EXPECT_EQ(Read(VolumeIndexText(content + "<Index>5</Index>"), volume), Ferro::RESULT_OK);
    EXPECT_EQ(volume.Index, 5u);
  }
}

TEST(HostileDocument, EqualSignsOutsideOfStartTagsAreNoAttributes) {
  std::string pairs;
  for (int i = 0; i < 200; ++i) pairs += " a='1' b = \"2\"";
  for (const std::string& content :
       {std::string(10'000, '='), pairs, "<!-- " + pairs + " > <a" + pairs + " -->", "<![CDATA[<a" + pairs + "]]>",
        "<?pi " + pairs + "?>", "<a b='" + std::string(1000, '=') + "'/>", "&lt;&#60;&#x3c;" + pairs}) {
    Cairn::VolumeIndex volume;
    EXPECT_EQ(Read(VolumeIndexText("<Index>1</Index>" + content, "<?xml version='1.0'?><!--" + pairs + "-->"), volume),
              Ferro::RESULT_OK)
        << content.substr(0, 40);
  }
}

TEST(HostileDocument, LongTextWithoutBlanksIsNoName) {
  Cairn::VolumeIndex volume;
  EXPECT_EQ(Read(VolumeIndexText("<Index>1</Index>" + std::string(200'000, 'a')), volume), Ferro::RESULT_OK);
}

TEST(HostileDocument, CharactersBeyondTheBasicPlaneAreRead) {
  using namespace std::string_literals;
  Cairn::VolumeIndex volume;
  EXPECT_EQ(Read(VolumeIndexText("<Index>1</Index>\xF0\x9F\x8E\xAC"), volume), Ferro::RESULT_OK);
  const std::string wide = CairnTest::Widen(VolumeIndexText("<Index>1</Index>"), 2, true);
  EXPECT_EQ(Read("\xFE\xFF" + wide + CairnTest::Widen("<!--", 2, true) + "\xD8\x3C\xDF\xAC" +
                     CairnTest::Widen("-->", 2, true),
                 volume),
            Ferro::RESULT_OK);
}

TEST(HostileDocument, ADocumentTypeInsideTheDocumentIsMalformed) {
  const testsupport::LogCapture log;
  Cairn::VolumeIndex volume;
  EXPECT_EQ(volume.DecodeXML(VolumeIndexText("<!DOCTYPE v SYSTEM \"file:///etc/passwd\"><Index>1</Index>")),
            Cairn::RESULT_XML_PARSE);
  EXPECT_EQ(log.Errors().back().substr(0, 24), "XML parser error count: ");
}

TEST(HostileDocument, AcceptedEncodingsAreRead) {
  using namespace std::string_literals;
  const auto declared = [](const std::string& encoding, const std::string& content = "") {
    return VolumeIndexText("<Index>9</Index>" + content, "<?xml version='1.0' encoding='" + encoding + "'?>");
  };
  for (const std::string& text : {VolumeIndexText("<Index>9</Index>"), declared("utf-8"),
                                  "\xEF\xBB\xBF" + declared("UTF-8"), declared("ISO-8859-1", "<!-- \xE9 -->"),
                                  declared("us-ascii"), "\xFF\xFE" + CairnTest::Widen(declared("UTF-16"), 2, false),
                                  "\xFF\xFE" + CairnTest::Widen(declared("UTF-16LE"), 2, false),
                                  "\xFE\xFF" + CairnTest::Widen(declared("utf-16"), 2, true),
                                  "\xFE\xFF" + CairnTest::Widen(VolumeIndexText("<Index>9</Index>"), 2, true)}) {
    Cairn::VolumeIndex volume;
    EXPECT_EQ(Read(text, volume), Ferro::RESULT_OK) << text.substr(0, 60);
    EXPECT_EQ(volume.Index, 9u);
  }
}

TEST(HostileDocument, Latin1BecomesUTF8) {
  Cairn::DCSubtitle document;
  EXPECT_EQ(document.DecodeXML("<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><DCSubtitle><SubtitleID>00000000-0000-"
                               "4000-8000-000000000001</SubtitleID><MovieTitle>caf\xE9</MovieTitle></DCSubtitle>"),
            Ferro::RESULT_OK);
  EXPECT_EQ(document.MovieTitle, "caf\xC3\xA9");
}

// Cuts a written document at every byte before the end of its document element.
template <class T>
void ExpectCutsRefused(const CairnTest::Sample<T>& sample) {
  std::string xml;
  ASSERT_EQ(CairnTest::Encode(sample.Model, xml, sample.Format), Ferro::RESULT_OK);
  const size_t end = xml.find_last_of('>');
  for (size_t size = 0; size <= end; ++size) {
    const testsupport::LogCapture log;
    T model;
    ASSERT_EQ(model.DecodeXML(xml.substr(0, size)), Cairn::RESULT_XML_PARSE) << sample.Golden << " cut at " << size;
    ASSERT_FALSE(log.Errors().empty()) << sample.Golden << " cut at " << size;
  }
}

TEST(TruncatedDocument, CompositionPlaylistsAreRefusedCutAtAnyByte) {
  ExpectCutsRefused(CairnTest::CompositionSamples()[1]);
  ExpectCutsRefused(CairnTest::CompositionSamples()[3]);
}

TEST(TruncatedDocument, PackingListsAreRefusedCutAtAnyByte) {
  for (const auto& sample : CairnTest::PackingListSamples()) ExpectCutsRefused(sample);
}

TEST(TruncatedDocument, AssetMapsAreRefusedCutAtAnyByte) {
  for (const auto& sample : CairnTest::AssetMapSamples()) ExpectCutsRefused(sample);
}

TEST(TruncatedDocument, VolumeIndexesAreRefusedCutAtAnyByte) {
  for (const auto& sample : CairnTest::VolumeIndexSamples()) ExpectCutsRefused(sample);
}

TEST(TruncatedDocument, SubtitleDocumentsAreRefusedCutAtAnyByte) {
  for (const auto& sample : CairnTest::SubtitleSamples()) ExpectCutsRefused(sample);
}

}  // namespace
