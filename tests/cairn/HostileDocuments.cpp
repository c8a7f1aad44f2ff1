// SPDX-License-Identifier: BSD-3-Clause
#include "HostileDocuments.h"

namespace CairnTest {
namespace {

constexpr char TypeLine[] = "XML document refused: it has a document type declaration\n";
constexpr char NoElementLine[] = "Unable to parse XML document element.\n";

std::string Repeat(const std::string& text, size_t count) {
  std::string out;
  out.reserve(text.size() * count);
  for (size_t i = 0; i < count; ++i) out += text;
  return out;
}

// `count` times `before` + number + `after`.
std::string Numbered(const std::string& before, const std::string& after, size_t count) {
  std::string out;
  for (size_t i = 0; i < count; ++i) out += before + std::to_string(i) + after;
  return out;
}

HostileDocument WithType(const std::string& name, const std::string& type, const std::string& content = "1") {
  return {name, VolumeIndexText("<Index>" + content + "</Index>", "<?xml version=\"1.0\"?>\n" + type), {TypeLine}};
}

HostileDocument Refused(const std::string& name, const std::string& content, const std::string& reason) {
  return {name, VolumeIndexText(content), {"XML document refused: " + reason + "\n"}};
}

std::string Declared(const std::string& encoding) {
  return VolumeIndexText("<Index>1</Index>", "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>\n");
}

HostileDocument OddEncoding(const std::string& name, const std::string& text, const std::string& reason) {
  return {name, text, {"XML document refused: " + reason + "\n"}};
}

}  // namespace

std::string VolumeIndexText(const std::string& content, const std::string& before) {
  return before + "<VolumeIndex xmlns=\"http://www.smpte-ra.org/schemas/429-9/2007/AM\">" + content +
         "</VolumeIndex>\n";
}

std::string Widen(const std::string& ascii, size_t unit_bytes, bool is_big_endian) {
  std::string out;
  for (const char c : ascii) {
    std::string unit(unit_bytes, '\0');
    unit[is_big_endian ? unit_bytes - 1 : 0] = c;
    out += unit;
  }
  return out;
}

std::vector<HostileDocument> DocumentsWithTypes() {
  std::string laughs = "<!DOCTYPE VolumeIndex [<!ENTITY a0 \"ha\">";
  for (int i = 1; i < 30; ++i) {
    const std::string below = "&a" + std::to_string(i - 1) + ";";
    laughs += "<!ENTITY a" + std::to_string(i) + " \"" + Repeat(below, 10) + "\">";
  }
  return {
      WithType("EntityExpansion", laughs + "]>", "&a29;"),
      WithType("QuadraticExpansion", "<!DOCTYPE v [<!ENTITY a \"" + std::string(100'000, 'x') + "\">]>",
               Repeat("&a;", 100'000)),
      WithType("ExternalEntityFromFile", "<!DOCTYPE v [<!ENTITY x SYSTEM \"file:///etc/passwd\">]>", "&x;"),
      WithType("ExternalEntityFromPath", "<!DOCTYPE v [<!ENTITY x SYSTEM \"/etc/passwd\">]>", "&x;"),
      WithType("ExternalEntityFromNetwork", "<!DOCTYPE v [<!ENTITY x SYSTEM \"http://127.0.0.1:9/x\">]>", "&x;"),
      WithType("PublicExternalEntity", "<!DOCTYPE v [<!ENTITY x PUBLIC \"p\" \"ftp://127.0.0.1/x\">]>", "&x;"),
      WithType("ParameterEntity", "<!DOCTYPE v [<!ENTITY % p SYSTEM \"file:///etc/passwd\"> %p;]>"),
      WithType("ParameterEntityThatDeclares",
               "<!DOCTYPE v [<!ENTITY % p \"<!ENTITY x SYSTEM 'file:///etc/passwd'>\"> %p;]>", "&x;"),
      WithType("TypeFromFile", "<!DOCTYPE v SYSTEM \"file:///etc/passwd\">"),
      WithType("TypeFromRelativePath", "<!DOCTYPE v SYSTEM \"pidc_rules_file\">"),
      WithType("TypeFromNetwork", "<!DOCTYPE v SYSTEM \"http://127.0.0.1:9/x.dtd\">"),
      WithType("PublicTypeFromNetwork", "<!DOCTYPE v PUBLIC \"-//X//Y\" \"https://127.0.0.1:9/x.dtd\">"),
      WithType("EmptyType", "<!DOCTYPE v>"),
      WithType("AttributeDefaults", "<!DOCTYPE v [<!ATTLIST Index a CDATA \"x\">]>"),
      WithType("TypeBehindComments", "<!-- <v> --><?pi <v?>\n<!-- - -->\t<!DOCTYPE v SYSTEM \"file:///etc/passwd\">"),
  };
}

std::vector<HostileDocument> DocumentsBeyondLimits() {
  const std::string open = Repeat("<a>", 1'000'000);
  const std::string close = Repeat("</a>", 1'000'000);
  const std::string depth = "it nests more than 256 elements inside each other";
  const std::string name = "a name is longer than 1024 bytes";
  const std::string attributes = "an element has more than 64 attributes";
  return {
      Refused("AMillionLevels", open + close, depth),
      Refused("AMillionLevelsLeftOpen", open, depth),
      Refused("OneLevelTooMany", Repeat("<a>", 256) + Repeat("</a>", 256), depth),
      Refused("AMillionElements", Repeat("<a/>", 1'000'000), "it has more than 500000 elements"),
      Refused("AGiantAttribute", "<a b=\"" + std::string(8'000'000, 'x') + "\"/>",
              "an attribute's value is longer than 65536 characters"),
      Refused("AnAttributeOneTooLong", "<a b=\"" + std::string(65'537, 'x') + "\"/>",
              "an attribute's value is longer than 65536 characters"),
      Refused("AMillionAttributes", "<a" + Numbered(" a", "=''", 1'000'000) + "/>", attributes),
      Refused("AMillionAttributesWithBlanks", "<a" + Numbered(" a", " =\n''", 1'000'000) + "/>", attributes),
      Refused("OneAttributeTooMany", "<a" + Numbered(" a", "=\"\"", 65) + "/>", attributes),
      Refused("AttributesInTotal", Repeat("<a" + Numbered(" a", "=''", 60) + "/>", 17'000),
              "it has more than 1000000 attributes"),
      Refused("AHundredThousandNames", Numbered("<a", "/>", 100'000), "it has more than 4096 different names"),
      Refused("AHundredThousandAttributeNames", Numbered("<a b", "=''/>", 100'000),
              "it has more than 4096 different names"),
      Refused("AttributesBehindAnError", "<a>&</a><a" + Numbered(" a", "=''", 1'000'000) + "/>", attributes),
      Refused("AttributesInWhatLooksLikeText", "<a b='1' = \">\" " + Numbered(" a", "=''", 1'000'000) + "/>",
              attributes),
      Refused("AttributesInWhatLooksLikeAComment", "<?1 > <!-- " + Numbered(" a", "=''", 65) + "?> -->", attributes),
      Refused("AttributesBehindTheDocument", "</VolumeIndex> a " + Numbered(" a", "=''", 65), attributes),
      Refused("AnElementsNameOfThirtyMegabytes", "<" + std::string(30'000'000, 'a') + "/>", name),
      Refused("AnElementsNameOneTooLong", "<" + std::string(1025, 'a') + "/>", name),
      Refused("AnAttributesNameOneTooLong", "<a " + std::string(1025, 'a') + "=''/>", name),
      Refused("AnEndTagsNameTooLong", "<a></" + std::string(1025, 'a') + ">", name),
      Refused("AnEntitysNameTooLong", "&" + std::string(1025, 'a') + ";", name),
      Refused("AnInstructionsNameTooLong", "<?" + std::string(1025, 'a') + " ?>", name),
      Refused("ALongNameBehindAnError", "<1/><" + std::string(30'000'000, 'a') + "/>", name),
      Refused("ALongNameThatIsNotASCII", "<\xC3\xA4" + std::string(30'000'000, 'a') + "/>", name),
      Refused("NamespacesInScope", Repeat("<a" + Numbered(" xmlns:p", "='u'", 60) + ">", 250) + Repeat("</a>", 250),
              "it has more than 256 namespace declarations in scope"),
      {"SixtyFourMebibytesAndAByte",
       VolumeIndexText(std::string(64 * 1024 * 1024, ' ')),
       {"XML document refused: it has more than 67108864 bytes\n"}},
  };
}

std::vector<HostileDocument> DocumentsOfOddEncodings() {
  const std::string plain = VolumeIndexText("<Index>1</Index>", "<?xml version=\"1.0\"?>");
  const std::string high =
      VolumeIndexText("<Index>1</Index><!-- \xE9 -->", "<?xml version=\"1.0\" encoding=\"US-ASCII\"?>");
  using namespace std::string_literals;
  return {
      OddEncoding("UTF7", Declared("UTF-7"), "the encoding \"UTF-7\" is not supported"),
      OddEncoding("UTF32Declared", Declared("UTF-32"), "the encoding \"UTF-32\" is not supported"),
      OddEncoding("EBCDICDeclared", Declared("ebcdic-cp-us"), "the encoding \"EBCDIC-CP-US\" is not supported"),
      OddEncoding("WindowsCodePage", Declared("windows-1252"), "the encoding \"WINDOWS-1252\" is not supported"),
      OddEncoding("UTF16DeclaredInUTF8", Declared("UTF-16"),
                  "the encoding \"UTF-16\" is declared, but the text is not UTF-16"),
      OddEncoding("UTF16LEDeclaredInUTF8", Declared("utf-16le"),
                  "the encoding \"UTF-16LE\" is declared, but the text is not UTF-16"),
      OddEncoding("UTF8DeclaredInUTF16", "\xFF\xFE" + Widen(Declared("UTF-8"), 2, false),
                  "the encoding \"UTF-8\" is declared, but the text is UTF-16"),
      OddEncoding("BigEndianDeclaredInLittle", "\xFF\xFE" + Widen(Declared("UTF-16BE"), 2, false),
                  "the encoding \"UTF-16BE\" is declared, but the text is UTF-16"),
      OddEncoding("Latin1DeclaredBehindAMark", "\xEF\xBB\xBF" + Declared("ISO-8859-1"),
                  "the encoding \"ISO-8859-1\" is declared, but the text is UTF-8"),
      OddEncoding("HighBytesInASCII", high, "the encoding \"US-ASCII\" is declared, but the text is not ASCII"),
      OddEncoding("UTF16WithHalfAUnit", "\xFE\xFF" + Widen(plain, 2, true) + "x",
                  "UTF-16 text with an odd number of bytes"),
      OddEncoding("SurrogateInUTF8", VolumeIndexText("<Index>1</Index>\xED\xA0\x80"), "it has an unpaired surrogate"),
      OddEncoding("HighSurrogateAlone", "\xFE\xFF" + Widen(plain, 2, true) + "\xD8\x3D\0 "s,
                  "it has an unpaired surrogate"),
      OddEncoding("HighSurrogateAtTheEnd", "\xFE\xFF" + Widen(plain, 2, true) + "\xD8\x3D",
                  "it has an unpaired surrogate"),
      OddEncoding("LowSurrogateAlone", "\xFE\xFF" + Widen(plain, 2, true) + "\xDC\x00"s,
                  "it has an unpaired surrogate"),
      {"UTF16WithoutMark", Widen(plain, 2, false), {NoElementLine}},
      {"UTF32WithoutMark", Widen(plain, 4, true), {NoElementLine}},
      {"UTF32BigEndian", "\0\0\xFE\xFF"s + Widen(plain, 4, true), {NoElementLine}},
      {"UTF32LittleEndian", "\xFF\xFE\0\0"s + Widen(plain, 4, false), {NoElementLine}},
      {"UTF8Overlong",
       VolumeIndexText("<Index>\xC0\xB1</Index>"),
       {"line 1: invalid byte '\xEF\xBF\xBD' at position 1 of a 1-byte sequence\n", "XML parser error count: 1\n"}},
      OddEncoding("NULInContent", VolumeIndexText("<Index>1\0</Index>"s), "it has a NUL character"),
      OddEncoding("NULInAName", VolumeIndexText("<Ind\0ex>1</Index>"s), "it has a NUL character"),
      OddEncoding("NULBehindTheDocument", VolumeIndexText("<Index>1</Index>") + "\0"s, "it has a NUL character"),
      OddEncoding("NULInUTF16", "\xFE\xFF" + Widen(VolumeIndexText("<Index>1</Index>\0"s), 2, true),
                  "it has a NUL character"),
      {"NULFirst", "\0"s + plain, {NoElementLine}},
  };
}

}  // namespace CairnTest
