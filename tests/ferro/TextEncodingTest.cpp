// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/TextEncoding.h>

#include <gtest/gtest.h>

#include <array>

using namespace Ferro;

namespace {

using Bytes = std::vector<ui8_t>;

Bytes BytesOfText(std::string_view text) {
  return Bytes(text.begin(), text.end());
}

}  // namespace

TEST(TextEncoding, HexadecimalIsLowerCase) {
  EXPECT_EQ(bin2hex(Bytes{0x00, 0x0f, 0xa5, 0xff}), "000fa5ff");
  EXPECT_EQ(bin2hex({}), "");
}

TEST(TextEncoding, HexadecimalReadsEitherCaseAndPassesOverHyphens) {
  Bytes bytes(4);
  EXPECT_TRUE(hex2bin("000fA5Ff", bytes));
  EXPECT_EQ(bytes, (Bytes{0x00, 0x0f, 0xa5, 0xff}));
  bytes.assign(4, 0);
  EXPECT_TRUE(hex2bin("-0-00-fa5-ff-", bytes));
  EXPECT_EQ(bytes, (Bytes{0x00, 0x0f, 0xa5, 0xff}));
  EXPECT_TRUE(hex2bin("", {}));
}

TEST(TextEncoding, HexadecimalOfAnotherLengthIsRefused) {
  Bytes bytes(2);
  EXPECT_FALSE(hex2bin("", bytes));
  EXPECT_FALSE(hex2bin("ab", bytes));
  EXPECT_FALSE(hex2bin("abc", bytes));
  EXPECT_FALSE(hex2bin("abcde", bytes));
  EXPECT_FALSE(hex2bin("abcdef", bytes));
  EXPECT_FALSE(hex2bin("a", {}));
}

TEST(TextEncoding, HexadecimalWithAnotherCharacterIsRefused) {
  Bytes bytes(2);
  for (const char* text : {"abcg", "abc ", " abcd", "0xab", "ab:cd", "abc\xc3"})
    EXPECT_FALSE(hex2bin(text, bytes)) << text;
  EXPECT_FALSE(hex2bin(std::string_view("abc\0", 4), bytes));
}

TEST(TextEncoding, UUIDIsHyphenated) {
  const std::array<ui8_t, 16> bytes{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
  EXPECT_EQ(bin2UUIDhex(bytes), "00010203-0405-0607-0809-0a0b0c0d0e0f");
}

// The vectors of RFC 4648, 10.
TEST(TextEncoding, Base64BothWays) {
  const std::pair<const char*, const char*> vectors[] = {
      {"", ""},
      {"f", "Zg=="},
      {"fo", "Zm8="},
      {"foo", "Zm9v"},
      {"foob", "Zm9vYg=="},
      {"fooba", "Zm9vYmE="},
      {"foobar", "Zm9vYmFy"},
  };
  for (const auto& [plain, encoded] : vectors) {
    EXPECT_EQ(base64encode(BytesOfText(plain)), encoded);
    Bytes bytes{1, 2, 3};
    EXPECT_TRUE(base64decode(encoded, bytes)) << encoded;
    EXPECT_EQ(bytes, BytesOfText(plain)) << encoded;
  }
}

TEST(TextEncoding, Base64UsesPlusAndSlash) {
  EXPECT_EQ(base64encode(Bytes{0xfb, 0xff, 0xbf}), "+/+/");
  Bytes bytes;
  EXPECT_TRUE(base64decode("+/+/", bytes));
  EXPECT_EQ(bytes, (Bytes{0xfb, 0xff, 0xbf}));
}

TEST(TextEncoding, Base64PassesOverWhiteSpace) {
  Bytes bytes;
  EXPECT_TRUE(base64decode("\r\n Zm9v\n\tYg = =\n", bytes));
  EXPECT_EQ(bytes, BytesOfText("foob"));
}

TEST(TextEncoding, MalformedBase64IsRefusedAndLeavesNothing) {
  for (const char* text : {"Z", "Zg", "Zg=", "Zg===", "Zm8", "Zm8==", "Zm9v=", "Zm9vY", "=",
                           "====", "Zg==Zg==", "Z=g=", "Zm9-", "Zm9_", "Zm9*", "Zm9\xff"}) {
    Bytes bytes{1, 2, 3};
    EXPECT_FALSE(base64decode(text, bytes)) << text;
    EXPECT_TRUE(bytes.empty()) << text;
  }
}

TEST(TextEncoding, Base64WithSpareBitsSetIsRefused) {
  Bytes bytes;
  EXPECT_FALSE(base64decode("Zh==", bytes));
  EXPECT_FALSE(base64decode("Zm9=", bytes));
}

TEST(TextEncoding, Base64IntoASpanMustFillItExactly) {
  std::array<ui8_t, 3> bytes{};
  EXPECT_TRUE(base64decode("Zm9v", bytes));
  EXPECT_EQ(bytes, (std::array<ui8_t, 3>{'f', 'o', 'o'}));
  EXPECT_FALSE(base64decode("Zm8=", bytes));
  EXPECT_FALSE(base64decode("Zm9vYg==", bytes));
  EXPECT_FALSE(base64decode("", bytes));
}
