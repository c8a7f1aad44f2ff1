// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/XMLElement.h>

#include <gtest/gtest.h>

using namespace Ferro;

namespace {

const std::string s_Declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

std::string Rendered(const XMLElement& element) {
  std::string out;
  EXPECT_EQ(element.Render(out), RESULT_OK);
  EXPECT_TRUE(out.starts_with(s_Declaration)) << out;
  return out.substr(s_Declaration.size());
}

std::string RenderedBody(std::string_view text) {
  XMLElement element("a");
  element.SetBody(text);
  return Rendered(element);
}

std::string RenderedAttribute(std::string_view value) {
  XMLElement element("a");
  element.SetAttr("b", value);
  return Rendered(element);
}

void ExpectRefused(std::string_view text) {
  std::string out = "before";
  XMLElement body("a");
  body.AddChildWithContent("b", text);
  EXPECT_EQ(body.Render(out), RESULT_PARAM);
  XMLElement attribute("a");
  attribute.SetAttr("b", text);
  EXPECT_EQ(attribute.Render(out), RESULT_PARAM);
  XMLElement comment("a");
  comment.AddComment(text);
  EXPECT_EQ(comment.Render(out), RESULT_PARAM);
  EXPECT_EQ(out, "before");
}

}  // namespace

TEST(XMLElement, EmptyElement) {
  EXPECT_EQ(Rendered(XMLElement("a")), "<a/>\n");
  EXPECT_EQ(RenderedBody(""), "<a/>\n");
}

TEST(XMLElement, TreeIsIndentedByTwoBlanksALevel) {
  XMLElement root("Root");
  root.SetAttr("xmlns", "http://www.strata.example/test");
  XMLElement& list = root.AddChild("List");
  list.AddChildWithContent("Id", "1");
  list.AddChild("Empty");
  root.AddComment(" end ");
  root.AddChildWithContent("p:Title", "A title");
  EXPECT_EQ(root.Name(), "Root");
  EXPECT_EQ(Rendered(root),
            "<Root xmlns=\"http://www.strata.example/test\">\n"
            "  <List>\n"
            "    <Id>1</Id>\n"
            "    <Empty/>\n"
            "  </List>\n"
            "  <!-- end -->\n"
            "  <p:Title>A title</p:Title>\n"
            "</Root>\n");
}

TEST(XMLElement, AttributesAndChildrenKeepTheirOrder) {
  XMLElement root("a");
  root.SetAttr("z", "1");
  root.SetAttr("b", "2");
  root.SetAttr("z", "3");
  root.AddChild("y");
  root.AddChild("c");
  EXPECT_EQ(Rendered(root), "<a z=\"3\" b=\"2\">\n  <y/>\n  <c/>\n</a>\n");
}

TEST(XMLElement, MarkupInTextIsEscaped) {
  EXPECT_EQ(RenderedBody("<b>&amp; ]]> \"'"), "<a>&lt;b&gt;&amp;amp; ]]&gt; \"'</a>\n");
}

TEST(XMLElement, MarkupInAttributesIsEscaped) {
  EXPECT_EQ(RenderedAttribute("<b>&'\""), "<a b=\"&lt;b&gt;&amp;'&quot;\"/>\n");
}

TEST(XMLElement, WhiteSpaceSurvivesTheParsersNormalisation) {
  EXPECT_EQ(RenderedBody(" a\tb\nc\rd\r\ne "), "<a> a\tb\nc&#xD;d&#xD;\ne </a>\n");
  EXPECT_EQ(RenderedAttribute(" a\tb\nc\rd "), "<a b=\" a&#x9;b&#xA;c&#xD;d \"/>\n");
}

TEST(XMLElement, TextOfBlanksIsKept) {
  EXPECT_EQ(RenderedBody("  "), "<a>  </a>\n");
  EXPECT_EQ(RenderedBody("\n"), "<a>\n</a>\n");
}

TEST(XMLElement, IndentationNeverAddsToText) {
  XMLElement root("a");
  root.SetBody("text");
  root.AddChild("b").AddChild("c");
  root.AddComment("d");
  EXPECT_EQ(Rendered(root), "<a>text<b><c/></b><!--d--></a>\n");
}

TEST(XMLElement, BodyIsReplacedAndAppendedTo) {
  XMLElement element("a");
  element.SetBody("one");
  element.SetBody("two");
  element.AppendBody(" & three");
  EXPECT_EQ(Rendered(element), "<a>two &amp; three</a>\n");
}

TEST(XMLElement, CharactersBeyondASCIIStayAsTheyAre) {
  // U+E4, U+D7FF, U+E000, U+FFFD, U+10000, U+10FFFF
  const std::string text = "\xc3\xa4\xed\x9f\xbf\xee\x80\x80\xef\xbf\xbd\xf0\x90\x80\x80\xf4\x8f\xbf\xbf\x7f";
  EXPECT_EQ(RenderedBody(text), "<a>" + text + "</a>\n");
  EXPECT_EQ(RenderedAttribute(text), "<a b=\"" + text + "\"/>\n");
}

TEST(XMLElement, ControlCharactersAreRefused) {
  for (int c = 0; c < 0x20; ++c)
    if (c != '\t' && c != '\n' && c != '\r') ExpectRefused(std::string("a") + static_cast<char>(c));
}

TEST(XMLElement, NonCharactersAreRefused) {
  ExpectRefused("\xef\xbf\xbe");  // U+FFFE
  ExpectRefused("\xef\xbf\xbf");  // U+FFFF
}

TEST(XMLElement, InvalidUTF8IsRefused) {
  for (const char* text : {"\x80", "\xc3", "\xc3(", "\xc0\xaf", "\xc1\xbf", "\xe0\x80\xaf", "\xe2\x82", "\xe2\x82(",
                           "\xed\xa0\x80", "\xed\xbf\xbf", "\xf0\x80\x80\xaf", "\xf0\x9f\x98", "\xf4\x90\x80\x80",
                           "\xf5\x80\x80\x80", "\xff", "\xfe", "a\xe4"})
    ExpectRefused(text);
}

TEST(XMLElement, CommentsThatCannotBeWrittenAreRefused) {
  for (const char* text : {"--", "a--b", "-->", "a-", "-"}) {
    XMLElement root("a");
    root.AddComment(text);
    std::string out = "before";
    EXPECT_EQ(root.Render(out), RESULT_PARAM) << text;
    EXPECT_EQ(out, "before");
  }
}

TEST(XMLElement, CommentIsNotEscaped) {
  XMLElement root("a");
  root.AddComment("<b> & - -c");
  EXPECT_EQ(Rendered(root), "<a>\n  <!--<b> & - -c-->\n</a>\n");
}

TEST(XMLElement, RenderingTwiceGivesTheSame) {
  XMLElement root("a");
  root.AddChildWithContent("b", "c");
  EXPECT_EQ(Rendered(root), Rendered(root));
}

TEST(XMLElement, NamesMayUseAllOfXML) {
  for (const char* name : {"a", "_a", "a-b.c1", "p:a", "\xc3\xa4", "a\xc2\xb7", "\xf0\x90\x80\x80"})
    EXPECT_EQ(Rendered(XMLElement(name)), "<" + std::string(name) + "/>\n");
}

TEST(XMLElementDeathTest, WhatIsNoNameIsAProgrammingError) {
  for (const char* name : {"", "1a", "-a", "a b", "a<", ":a", "a:", "a:b:c", "a:1", "\xc3", "\xc3\x97"})
    EXPECT_DEATH(XMLElement{name}, "Assertion 'IsQualifiedName\\(m_Name\\)' failed") << name;
  XMLElement element("a");
  EXPECT_DEATH(element.SetAttr("a=", "b"), "Assertion 'IsQualifiedName\\(name\\)' failed");
  EXPECT_DEATH(element.AddChild("a>"), "Assertion 'IsQualifiedName\\(m_Name\\)' failed");
}
