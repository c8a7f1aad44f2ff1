// SPDX-License-Identifier: BSD-3-Clause
#include "xml/DocumentTree.h"

#include <Cairn/DOMTreeErrorReporter.h>
#include <Cairn/DocumentParser.h>
#include <Ferro/LogSink.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace {

using Cairn::Element;
using Cairn::Result_t;

Result_t Read(const std::string& xml, const std::function<void(const Element*)>& checks) {
  Ferro::MemoryLogSink log;
  return Cairn::ReadDocument(xml, log, [&](const Element* root, Cairn::DCPFormat_t, Ferro::ILogSink&) {
    checks(root);
    return Result_t(Ferro::RESULT_OK);
  });
}

void Check(const std::string& content, const std::function<void(const Element*)>& checks) {
  bool were_run = false;
  EXPECT_EQ(Read("<DCSubtitle>" + content + "</DCSubtitle>",
                 [&](const Element* root) {
                   were_run = true;
                   checks(root);
                 }),
            Ferro::RESULT_OK);
  EXPECT_TRUE(were_run);
}

TEST(DocumentTree, EachElementHasTheLineWhereItsStartTagEnds) {
  Check("<a>\n<b\n x='1'/>\r\n<c/></a>", [](const Element* root) {
    const Element* a = root->FirstChild;
    EXPECT_EQ(root->Line, 1U);
    EXPECT_EQ(a->Line, 1U);
    EXPECT_EQ(a->FirstChild->Line, 3U);
    EXPECT_EQ(a->LastChild->Line, 4U);
  });
}

TEST(DocumentTree, ADocumentOfNoKnownKindIsParsedWhereItsKindDoesNotMatter) {
  Ferro::MemoryLogSink log;
  Cairn::DOMTreeErrorReporter reporter;
  reporter.m_LogSink = &log;
  std::string name;
  const auto read = [&](const Element* root) {
    name = Cairn::LocalName(root);
    return Result_t(Ferro::RESULT_OK);
  };
  EXPECT_EQ(Cairn::ParseDocument("<x xmlns='urn:unknown'/>", reporter, log, read), Ferro::RESULT_OK);
  EXPECT_EQ(name, "x");
  EXPECT_EQ(Cairn::ParseDocument("<x>\n<y>\n</x>", reporter, log, read), Cairn::RESULT_XML_PARSE);
  EXPECT_EQ(reporter.m_FirstErrorLine, 3U);
}

TEST(DocumentTree, NamesComeWithoutTheirPrefix) {
  Check("<x:a xmlns:x='urn:x'><b xmlns='urn:b'/></x:a>", [](const Element* root) {
    const Element* a = root->FirstChild;
    EXPECT_EQ(Cairn::LocalName(a), "a");
    EXPECT_EQ(Cairn::NamespaceName(a), "urn:x");
    EXPECT_EQ(Cairn::LocalName(a->FirstChild), "b");
    EXPECT_EQ(Cairn::NamespaceName(a->FirstChild), "urn:b");
    EXPECT_EQ(Cairn::NamespaceName(root), "");
  });
}

TEST(DocumentTree, TextIsThatOfAllDescendantsInOrder) {
  Check("a<b>c<d>e</d></b>f<g/>", [](const Element* root) {
    EXPECT_EQ(Cairn::TextContent(root), "acef");
    EXPECT_EQ(Cairn::TextContent(root->FirstChild), "ce");
    EXPECT_EQ(Cairn::TextContent(root->FirstChild->FirstChild), "e");
    EXPECT_EQ(Cairn::TextContent(root->LastChild), "");
  });
}

TEST(DocumentTree, ReferencesAndCharacterDataSectionsAreText) {
  Check("<a>x &amp; y &#x1F600;<![CDATA[<z>]]><!-- not this --><?nor this?></a>",
        [](const Element* root) { EXPECT_EQ(Cairn::TextContent(root), "x & y \xF0\x9F\x98\x80<z>"); });
}

TEST(DocumentTree, BlanksAreKeptAndTrimmedOnRequest) {
  Check("<a> \n b \t</a><c> </c>", [](const Element* root) {
    EXPECT_EQ(Cairn::TextContent(root->FirstChild), " \n b \t");
    EXPECT_EQ(Cairn::TrimmedText(root->FirstChild), "b");
    EXPECT_EQ(Cairn::TrimmedText(root->LastChild), "");
  });
}

// The parser hands long text over in pieces; a character of two UTF-16 units must not come apart between them.
TEST(DocumentTree, LongTextStaysWhole) {
  std::string text;
  for (int i = 0; i < 100'000; ++i) text += i % 3 == 0 ? "x" : "\xF0\x9F\x98\x80";
  Check("<a>" + text + "</a>", [&](const Element* root) { EXPECT_TRUE(Cairn::TextContent(root) == text); });
}

TEST(DocumentTree, ChildrenAreLinkedInOrder) {
  Check("<a/>text<b/><c><d/></c>", [](const Element* root) {
    const Element* a = Cairn::FirstChildElement(root);
    const Element* b = Cairn::NextSiblingElement(a);
    const Element* c = Cairn::NextSiblingElement(b);
    EXPECT_EQ(Cairn::LocalName(b), "b");
    EXPECT_EQ(Cairn::NextSiblingElement(c), nullptr);
    EXPECT_EQ(Cairn::FirstChildNamed(root, "c"), c);
    EXPECT_EQ(Cairn::FirstChildNamed(root, "d"), nullptr);
    EXPECT_EQ(c->FirstChild->Parent, c);
    EXPECT_EQ(c->FirstChild->Root, root);
    EXPECT_EQ(root->Parent, nullptr);
  });
}

TEST(DocumentTree, AttributesAreFoundByTheirWholeName) {
  Check("<Label scope='a &amp; b' x:scope='other' xmlns:x='urn:x'/>", [](const Element* root) {
    EXPECT_EQ(Cairn::AttributeValue(root->FirstChild, "scope"), "a & b");
    EXPECT_EQ(Cairn::AttributeValue(root->FirstChild, "x:scope"), "other");
    EXPECT_EQ(Cairn::AttributeValue(root->FirstChild, "Scope"), "");
  });
}

TEST(DocumentTree, NothingGivesNothing) {
  const Element* nothing = nullptr;
  EXPECT_EQ(Cairn::LocalName(nothing), "");
  EXPECT_EQ(Cairn::NamespaceName(nothing), "");
  EXPECT_EQ(Cairn::TextContent(nothing), "");
  EXPECT_EQ(Cairn::AttributeValue(nothing, "a"), "");
  EXPECT_EQ(Cairn::FirstChildElement(nothing), nullptr);
  EXPECT_EQ(Cairn::NextSiblingElement(nothing), nullptr);
  EXPECT_EQ(Cairn::FirstChildNamed(nothing, "a"), nullptr);
}

TEST(DocumentTree, AnElementIsItsDocumentsOwnByTheRootsOrItsParentsNamespace) {
  Check("<a/><x:b xmlns:x='urn:x'><x:c/></x:b>", [](const Element* root) {
    EXPECT_TRUE(Cairn::IsOwnElement(root));
    EXPECT_TRUE(Cairn::IsOwnElement(root->FirstChild));
    EXPECT_FALSE(Cairn::IsOwnElement(root->LastChild));
    EXPECT_TRUE(Cairn::IsOwnElement(root->LastChild->FirstChild));
  });
}

TEST(DocumentTree, MalformedDocumentIsNotRead) {
  for (const char* xml : {"<DCSubtitle><a></DCSubtitle>", "<DCSubtitle></a></DCSubtitle>", "<DCSubtitle/></a>",
                          "<DCSubtitle/><b/>", "<DCSubtitle><x:a/></DCSubtitle>", "<DCSubtitle>"})
    EXPECT_EQ(Read(xml, [&](const Element*) { ADD_FAILURE() << xml; }), Cairn::RESULT_XML_PARSE);
}

TEST(DocumentTree, ReadersResultIsPassedOn) {
  Ferro::MemoryLogSink log;
  const auto fail = [](const Element*, Cairn::DCPFormat_t, Ferro::ILogSink&) { return Result_t(Ferro::RESULT_FAIL); };
  EXPECT_EQ(Cairn::ReadDocument("<DCSubtitle/>", log, fail), Ferro::RESULT_FAIL);
}

TEST(DocumentTree, ReaderIsToldTheFlavour) {
  Ferro::MemoryLogSink log;
  Cairn::DCPFormat_t seen = Cairn::DFT_NONE;
  const auto look = [&](const Element*, Cairn::DCPFormat_t format, Ferro::ILogSink&) {
    seen = format;
    return Result_t(Ferro::RESULT_OK);
  };
  EXPECT_EQ(Cairn::ReadDocument("<a xmlns='http://www.smpte-ra.org/x'/>", log, look), Ferro::RESULT_OK);
  EXPECT_EQ(seen, Cairn::DFT_DCI_SMPTE);
  EXPECT_EQ(Cairn::ReadDocument("<a xmlns='http://www.digicine.com/x'/>", log, look), Ferro::RESULT_OK);
  EXPECT_EQ(seen, Cairn::DFT_Interop);
}

// The parser is kept from one document to the next: nothing of a document, however it ended, shows in the one after.
TEST(DocumentTree, ADocumentLeavesNothingToTheNext) {
  const std::string deep = "<DCSubtitle>" + [] {
    std::string text;
    for (unsigned i = 0; i <= Cairn::DocumentParser::MaxDepth; ++i) text += "<a>";
    return text;
  }();
  const auto nothing = [](const Element*) {};
  const auto check = [] {
    Check("<b x='1'>t</b>", [](const Element* root) {
      EXPECT_EQ(Cairn::TextContent(root), "t");
      EXPECT_EQ(root->FirstChild, root->LastChild);
      EXPECT_EQ(root->Attributes.size(), 0U);
      EXPECT_EQ(Cairn::AttributeValue(root->FirstChild, "x"), "1");
    });
  };
  check();
  EXPECT_EQ(Read("<DCSubtitle xmlns:x='urn:x' y='2'>long<c>er</c><d/></DCSubtitle>", nothing), Ferro::RESULT_OK);
  check();
  EXPECT_EQ(Read("<DCSubtitle><c>lost", nothing), Cairn::RESULT_XML_PARSE);
  check();
  EXPECT_EQ(Read(deep, nothing), Cairn::RESULT_XML_PARSE);
  check();
  EXPECT_EQ(Read("<DCSubtitle/>", [](const Element*) { throw std::runtime_error("reader"); }), Cairn::RESULT_XML_PARSE);
  check();
}

TEST(DocumentTree, AReaderMayReadAnotherDocument) {
  Check("<a>outer</a>", [](const Element* outer) {
    Check("<a>inner</a>", [&](const Element* inner) {
      EXPECT_EQ(Cairn::TextContent(inner), "inner");
      EXPECT_EQ(Cairn::TextContent(outer), "outer");
    });
    EXPECT_EQ(Cairn::TextContent(outer), "outer");
  });
}

TEST(DocumentTree, EachThreadReadsItsOwn) {
  std::vector<std::thread> threads;
  for (int number = 0; number < 4; ++number)
    threads.emplace_back([text = std::to_string(number)] {
      for (int i = 0; i < 200; ++i)
        Check("<a>" + text + "</a>", [&](const Element* root) { EXPECT_EQ(Cairn::TextContent(root), text); });
    });
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
