// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/XMLNode.h>

#include <Cairn/XMLAttrPtr.h>
#include <Cairn/XercesCallWrapper.h>

#include <Ferro/LogSink.h>

#include <gtest/gtest.h>

namespace {

using Cairn::Result_t;

// Runs checks on a parsed document.
class Checker : public Cairn::XercesCallWrapper<void(const xercesc::DOMElement*)> {
 public:
  using Checks = void(const xercesc::DOMElement*);
  Result_t SetupCaller(Checks* checks, Cairn::DCPFormat_t, Ferro::ILogSink&) override {
    checks(m_doc->getDocumentElement());
    return Ferro::RESULT_OK;
  }
};

void Check(const std::string& content, Checker::Checks* checks) {
  Cairn::init_xml_libs();
  Checker checker;
  Ferro::MemoryLogSink log;
  ASSERT_EQ(checker.Parse("<DCSubtitle>" + content + "</DCSubtitle>", checks, log), Ferro::RESULT_OK);
}

TEST(XMLAttrPtr, TheNamedAttributeOfAnElementIsGiven) {
  Check("<Label scope='a &amp; b' x:scope='other' xmlns:x='urn:x'/>", [](const xercesc::DOMElement* root) {
    EXPECT_EQ(Cairn::XMLAttrPtr::get_attr_with_name(root->getFirstChild(), "scope"), "a & b");
  });
}

TEST(XMLAttrPtr, AnAbsentAttributeIsEmpty) {
  Check("<Label/>", [](const xercesc::DOMElement* root) {
    EXPECT_EQ(Cairn::XMLAttrPtr::get_attr_with_name(root->getFirstChild(), "scope"), "");
  });
}

TEST(XMLAttrPtr, ATextAndNothingHaveNoAttributes) {
  Check("text", [](const xercesc::DOMElement* root) {
    EXPECT_EQ(Cairn::XMLAttrPtr::get_attr_with_name(root->getFirstChild(), "scope"), "");
    EXPECT_EQ(Cairn::XMLAttrPtr::get_attr_with_name(nullptr, "scope"), "");
    EXPECT_EQ(Cairn::XMLAttrPtr::get_attr_with_name(root, nullptr), "");
  });
}

TEST(XMLNode, NamesComeWithoutTheirPrefix) {
  Check("<x:a xmlns:x='urn:x'/>", [](const xercesc::DOMElement* root) {
    EXPECT_EQ(Cairn::LocalName(root->getFirstChild()), "a");
    EXPECT_EQ(Cairn::NamespaceName(root->getFirstChild()), "urn:x");
    EXPECT_EQ(Cairn::NamespaceName(root), "");
  });
}

TEST(XMLNode, TextIsThatOfAllDescendantsInOrder) {
  Check("a<b>c<d>e</d></b>f", [](const xercesc::DOMElement* root) { EXPECT_EQ(Cairn::TextContent(root), "acef"); });
}

TEST(XMLNode, TextBeyondTheBasicPlaneBecomesFourBytes) {
  Check("&#x1F3AC;", [](const xercesc::DOMElement* root) { EXPECT_EQ(Cairn::TextContent(root), "\xF0\x9F\x8E\xAC"); });
}

TEST(XMLNode, TrimmingTakesOffXMLsFourBlanks) {
  Check("&#9;&#10;&#13; a b &#13;\n",
        [](const xercesc::DOMElement* root) { EXPECT_EQ(Cairn::TrimmedText(root), "a b"); });
}

TEST(XMLNode, WalkingPassesOverTexts) {
  Check("x<a/>y<b/>z", [](const xercesc::DOMElement* root) {
    const xercesc::DOMElement* first = Cairn::FirstChildElement(root);
    EXPECT_EQ(Cairn::LocalName(first), "a");
    EXPECT_EQ(Cairn::LocalName(Cairn::NextSiblingElement(first)), "b");
    EXPECT_EQ(Cairn::NextSiblingElement(Cairn::NextSiblingElement(first)), nullptr);
    EXPECT_EQ(Cairn::LocalName(Cairn::FirstChildNamed(root, "b")), "b");
    EXPECT_EQ(Cairn::FirstChildNamed(root, "c"), nullptr);
  });
}

TEST(XMLNode, NothingGivesNothing) {
  EXPECT_EQ(Cairn::XMLChToUTF8(nullptr), "");
  EXPECT_EQ(Cairn::LocalName(nullptr), "");
  EXPECT_EQ(Cairn::NamespaceName(nullptr), "");
  EXPECT_EQ(Cairn::TextContent(nullptr), "");
  EXPECT_EQ(Cairn::TrimmedText(nullptr), "");
  EXPECT_EQ(Cairn::FirstChildElement(nullptr), nullptr);
  EXPECT_EQ(Cairn::NextSiblingElement(nullptr), nullptr);
  EXPECT_EQ(Cairn::FirstChildNamed(nullptr, "a"), nullptr);
}

TEST(XMLNode, AnUnpairedSurrogateBecomesTheReplacementCharacter) {
  const XMLCh text[] = {0xD83C, u'x', 0xDFAC, 0};
  EXPECT_EQ(Cairn::XMLChToUTF8(text), "\xEF\xBF\xBDx\xEF\xBF\xBD");
}

}  // namespace
