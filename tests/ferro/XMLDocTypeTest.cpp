// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/XMLDocType.h>

#include <gtest/gtest.h>

using namespace Ferro;

namespace {

void Expect(std::string_view document, std::string_view namespace_name, std::string_view element_name) {
  XMLDocType type;
  EXPECT_TRUE(GetXMLDocType(document, type)) << document;
  EXPECT_EQ(type.NamespaceName, namespace_name) << document;
  EXPECT_EQ(type.ElementName, element_name) << document;
}

void ExpectRefused(std::string_view document) {
  XMLDocType type{"before", "Before"};
  EXPECT_FALSE(GetXMLDocType(document, type)) << document;
  EXPECT_EQ(type.NamespaceName, "before") << document;
  EXPECT_EQ(type.ElementName, "Before") << document;
}

std::string InUTF16(std::u16string_view text, bool big_endian) {
  std::string bytes;
  for (const char16_t unit : u"\xfeff" + std::u16string(text)) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xff);
    bytes += big_endian ? high : low;
    bytes += big_endian ? low : high;
  }
  return bytes;
}

}  // namespace

TEST(XMLDocType, ElementWithADefaultNamespace) {
  Expect("<CompositionPlaylist xmlns=\"http://www.smpte-ra.org/schemas/429-7/2006/CPL\"><Id/></CompositionPlaylist>",
         "http://www.smpte-ra.org/schemas/429-7/2006/CPL", "CompositionPlaylist");
}

TEST(XMLDocType, ElementWithoutANamespace) {
  Expect("<DCSubtitle Version=\"1.0\"><SubtitleID/></DCSubtitle>", "", "DCSubtitle");
  Expect("<DCSubtitle/>", "", "DCSubtitle");
  Expect("<DCSubtitle >", "", "DCSubtitle");
}

TEST(XMLDocType, EmptyDefaultNamespaceIsNone) {
  Expect("<a xmlns=\"\"/>", "", "a");
}

TEST(XMLDocType, PrefixIsBoundByItsOwnDeclaration) {
  Expect("<p:a xmlns=\"urn:default\" xmlns:q=\"urn:q\" xmlns:p=\"urn:p\"/>", "urn:p", "a");
  Expect("<a xmlns:p=\"urn:p\"/>", "", "a");
}

TEST(XMLDocType, UnboundPrefixIsRefused) {
  ExpectRefused("<p:a xmlns=\"urn:default\"/>");
  ExpectRefused("<p:a xmlns:q=\"urn:q\"/>");
  ExpectRefused("<p:a xmlns:p=\"\"/>");
  ExpectRefused("<p:a q:p=\"urn:p\"/>");
}

TEST(XMLDocType, ReservedPrefixes) {
  Expect("<xml:a/>", "http://www.w3.org/XML/1998/namespace", "a");
  ExpectRefused("<xmlns:a xmlns:xmlns=\"urn:x\"/>");
}

TEST(XMLDocType, DeclarationCommentsInstructionsAndSpaceArePassedOver) {
  Expect(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
      "<!-- <not xmlns='urn:not'> -- -->\n"
      "<?target data <not> ?\?>\t<a xmlns='urn:a'>",
      "urn:a", "a");
  Expect("<!----><!--->--><?\?><a/>", "", "a");
}

TEST(XMLDocType, OnlyMarkupMayStandBeforeTheElement) {
  ExpectRefused("text <a/>");
  ExpectRefused("&amp;<a/>");
  ExpectRefused(std::string_view("\0<a/>", 5));
  ExpectRefused("<![CDATA[ ]]><a/>");
  ExpectRefused("</a>");
}

TEST(XMLDocType, DocumentTypeDeclarationIsPassedOver) {
  Expect("<!DOCTYPE a><a/>", "", "a");
  Expect("<!DOCTYPE a SYSTEM \"http://x/?<a>[\"><b/>", "", "b");
  Expect("<!DOCTYPE a PUBLIC '-//x>//' \"y'>\" [ ] ><b/>", "", "b");
}

TEST(XMLDocType, InternalSubsetIsPassedOverWhole) {
  Expect(
      "<!DOCTYPE a [\n"
      "  <!ELEMENT a ANY>\n"
      "  <!ENTITY e \"]><not xmlns='urn:not'>\">\n"
      "  <!ENTITY f ']><not>\"'>\n"
      "  <!-- ]><not> ' \" -->\n"
      "  <?target ]><not> ' \" ?>\n"
      "  %parameters;\n"
      "  <!ATTLIST a b CDATA \"]>\">\n"
      "]>\n"
      "<a xmlns='urn:a'/>",
      "urn:a", "a");
}

TEST(XMLDocType, NothingOfTheInternalSubsetIsExpanded) {
  // An attribute's default declares a namespace to a parser that reads declarations; here it does not.
  Expect("<!DOCTYPE a [<!ATTLIST a xmlns CDATA #FIXED 'urn:hidden'>]><a/>", "", "a");
  ExpectRefused("<!DOCTYPE a [<!ENTITY n 'urn:n'>]><a xmlns='&n;'/>");
  std::string bomb = "<!DOCTYPE a [<!ENTITY e0 'x'>";
  for (int i = 1; i < 100; ++i) {
    bomb += "<!ENTITY e" + std::to_string(i) + " '";
    for (int j = 0; j < 10; ++j) bomb += "&e" + std::to_string(i - 1) + ";";
    bomb += "'>";
  }
  Expect(bomb + "]><a b='&e99;'/>", "", "a");
}

TEST(XMLDocType, MalformedDocumentTypeDeclarationIsRefused) {
  for (const char* document :
       {"<!DOCTYPE a", "<!DOCTYPE a [", "<!DOCTYPE a []", "<!DOCTYPE a SYSTEM \"x>", "<!DOCTYPE a SYSTEM 'x\"><a/>",
        "<!DOCTYPE a [<!ENTITY e \"]><a/>", "<!DOCTYPE a [<!--]><a/>", "<!DOCTYPE a [<?]><a/>",
        "<!DOCTYPE a [<b>]><a/>", "<!DOCTYPE a [text]><a/>", "<!DOCTYPE a [%e]><a/>", "<!DOCTYPE a [<!ENTITY <e>]><a/>",
        "<!DOCTYPE <a><a/>"})
    ExpectRefused(document);
}

TEST(XMLDocType, AttributeValuesMayHoldTheEndOfATag) {
  Expect("<a b=\"1 > 0\" c='/>' d='\"' xmlns='urn:a'>", "urn:a", "a");
}

TEST(XMLDocType, EqualsSignMayStandBetweenBlanks) {
  Expect("<a\n\txmlns \r= \n 'urn:a'\n>", "urn:a", "a");
}

TEST(XMLDocType, ReferencesInANamespaceAreReplaced) {
  Expect("<a xmlns='urn:&#x61;&#98;&amp;&lt;&gt;&quot;&apos;&#xE4;'/>", "urn:ab&<>\"'\xc3\xa4", "a");
  Expect("<a xmlns='&#x10FFFF;'/>", "\xf4\x8f\xbf\xbf", "a");
}

TEST(XMLDocType, WhiteSpaceInANamespaceIsNormalised) {
  Expect("<a xmlns=' u\r\nr\nn\t:\ra&#10;'/>", " u r n : a\n", "a");
}

TEST(XMLDocType, MalformedReferencesInANamespaceAreRefused) {
  for (const char* value : {"&", "&;", "&amp", "&e;", "&#;", "&#x;", "&#0;", "&#x0;", "&#xD800;", "&#xFFFE;",
                            "&#x110000;", "&#99999999999999999999;", "&#x1ffffffff;", "&#xg;", "&#12a;", "&#65"})
    ExpectRefused("<a xmlns='" + std::string(value) + "'/>");
}

TEST(XMLDocType, CharactersThatXMLCannotCarryInANamespaceAreRefused) {
  ExpectRefused("<a xmlns='\x01'/>");
  ExpectRefused("<a xmlns='\xef\xbf\xbe'/>");
  ExpectRefused("<a xmlns='\xe4'/>");
}

TEST(XMLDocType, MalformedTagIsRefused) {
  for (const char* document : {"",
                               " ",
                               "<",
                               "<a",
                               "<a ",
                               "<a/",
                               "<a b",
                               "<a b=",
                               "<a b='",
                               "<a b='c",
                               "<a b='c'",
                               "<a b=c>",
                               "<a b>",
                               "<a 'b'>",
                               "<a b='c'd='e'>",
                               "<a b='<'>",
                               "<a xmlns='<'>",
                               "< a>",
                               "<1a>",
                               "<a:>",
                               "<:a>",
                               "<a:b:c>",
                               "<a / >",
                               "<a\x01>",
                               "<a xmlns='urn:1' xmlns='urn:2'>",
                               "<?xml",
                               "<!--",
                               "<!-- ->",
                               "<a \xe4='b'>",
                               "<\xe4>"})
    ExpectRefused(document);
}

TEST(XMLDocType, EveryProperPrefixIsRefused) {
  const std::string document =
      "\xef\xbb\xbf<?xml version='1.0'?><!DOCTYPE p:a [<!ENTITY e ']>'>]><!-- c --><p:a b='&x;' xmlns:p='urn:&#x70;'>";
  Expect(document, "urn:p", "a");
  for (size_t length = 0; length < document.size(); ++length) ExpectRefused(document.substr(0, length));
}

TEST(XMLDocType, WhatFollowsTheTagIsNotLookedAt) {
  Expect("<a xmlns='urn:a'>\xff\xfe < & <<<", "urn:a", "a");
}

TEST(XMLDocType, NamesBeyondASCII) {
  Expect("<\xc3\xa4\xc3\xb6 xmlns='urn:a'/>", "urn:a", "\xc3\xa4\xc3\xb6");
}

TEST(XMLDocType, ByteOrderMarkOfUTF8IsPassedOver) {
  Expect("\xef\xbb\xbf<a xmlns='urn:a'/>", "urn:a", "a");
  ExpectRefused("\xef\xbb<a/>");
  ExpectRefused("\xef\xbb\xbf\xef\xbb\xbf<a/>");
}

TEST(XMLDocType, UTF16WithAByteOrderMark) {
  const std::u16string_view document =
      u"<?xml version='1.0' encoding='UTF-16'?><!-- \u00e4 --><\u00e4 xmlns='urn:\U00010000'/>";
  for (const bool big_endian : {false, true}) Expect(InUTF16(document, big_endian), "urn:\xf0\x90\x80\x80", "\xc3\xa4");
}

TEST(XMLDocType, MalformedUTF16IsRefused) {
  for (const bool big_endian : {false, true}) {
    const std::string whole = InUTF16(u"<a xmlns='u'/>", big_endian);
    for (size_t length = 0; length < whole.size(); ++length) ExpectRefused(whole.substr(0, length));
    ExpectRefused(InUTF16(std::u16string(u"<a xmlns='") + char16_t(0xd800) + u"'/>", big_endian));
    ExpectRefused(InUTF16(std::u16string(u"<a xmlns='") + char16_t(0xdc00) + u"'/>", big_endian));
    ExpectRefused(InUTF16(std::u16string(u"<a xmlns='u'") + char16_t(0xd800), big_endian));
  }
}

TEST(XMLDocType, UTF16WithoutAByteOrderMarkIsRefused) {
  ExpectRefused(InUTF16(u"<a/>", true).substr(2));
  ExpectRefused(InUTF16(u"<a/>", false).substr(2));
}

TEST(XMLDocType, LargePrologIsReadInOnePass) {
  const std::string filler(4 << 20, '-');
  Expect("<!-- " + filler + " --><?p " + std::string(4 << 20, '?') + "?><a/>", "", "a");
  ExpectRefused("<!-- " + filler);
  ExpectRefused("<a b='" + filler);
}
