// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/Crypto.h>

#include <Ferro/TextEncoding.h>

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace {

using namespace QUIRE;
using Bytes = std::vector<ui8_t>;

constexpr std::array<ui8_t, KeyLen> ContentKey = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
constexpr CipherBlock IVec = {0xe2, 0x7c, 0x8c, 0xbb, 0x72, 0xb7, 0x17, 0xea,
                              0xd0, 0x51, 0x1c, 0xe6, 0x19, 0x0a, 0x87, 0x1f};

// 20 bytes 00 to 13 with the first four in clear, under ContentKey and IVec.
constexpr std::array<ui8_t, 68> EncryptedTwenty = {
    0xe2, 0x7c, 0x8c, 0xbb, 0x72, 0xb7, 0x17, 0xea, 0xd0, 0x51, 0x1c, 0xe6, 0x19, 0x0a, 0x87, 0x1f, 0x5d,
    0x3d, 0x7f, 0xf4, 0xa0, 0xfd, 0x72, 0xc3, 0xf4, 0xf8, 0xb2, 0x45, 0x15, 0x91, 0x61, 0x60, 0x00, 0x01,
    0x02, 0x03, 0x6d, 0xbe, 0x4e, 0xa1, 0xa1, 0x69, 0xd9, 0x5b, 0xc0, 0x21, 0x72, 0xe8, 0x72, 0x8d, 0xd3,
    0x60, 0x48, 0x4c, 0x86, 0x63, 0x7d, 0x92, 0xaf, 0x68, 0x87, 0x83, 0xa8, 0x52, 0x67, 0xbd, 0x86, 0x2f};

Bytes Counting(size_t size) {
  Bytes bytes(size);
  std::iota(bytes.begin(), bytes.end(), ui8_t{0});
  return bytes;
}

AESEncContext Encryptor() {
  AESEncContext context;
  EXPECT_EQ(context.InitKey(ContentKey), Ferro::RESULT_OK);
  return context;
}

AESDecContext Decryptor(ui8_t first_byte = 0) {
  auto key = ContentKey;
  key[0] = first_byte;
  AESDecContext context;
  EXPECT_EQ(context.InitKey(key), Ferro::RESULT_OK);
  return context;
}

TEST(DeriveMICKey, SMPTETakesTheSecondBlockOfTheGenerator) {
  std::array<ui8_t, KeyLen> key{};
  ASSERT_EQ(DeriveMICKey(ContentKey, LS_MXF_SMPTE, key), Ferro::RESULT_OK);
  EXPECT_EQ(key, (std::array<ui8_t, KeyLen>{0xbb, 0x12, 0xf6, 0xb8, 0x4b, 0x2e, 0x7b, 0x25, 0x8c, 0xd8, 0xc3, 0x5e,
                                            0x8f, 0x87, 0xfc, 0x18}));
}

TEST(DeriveMICKey, InteropTruncatesADigest) {
  std::array<ui8_t, KeyLen> key{};
  ASSERT_EQ(DeriveMICKey(ContentKey, LS_MXF_INTEROP, key), Ferro::RESULT_OK);
  EXPECT_EQ(key, (std::array<ui8_t, KeyLen>{0x9a, 0x7b, 0xc0, 0x68, 0x01, 0xb2, 0x6c, 0xb9, 0x30, 0xb9, 0x70, 0x9e,
                                            0x57, 0x8b, 0xe8, 0xbe}));
}

TEST(DeriveMICKey, AnUnknownLabelSetIsAParameterError) {
  std::array<ui8_t, KeyLen> key{};
  EXPECT_EQ(DeriveMICKey(ContentKey, LS_MXF_UNKNOWN, key), Ferro::RESULT_PARAM);
  EXPECT_EQ(HMACContext().InitKey(ContentKey, LS_MXF_UNKNOWN), Ferro::RESULT_PARAM);
}

TEST(EncryptedSourceLength, AddsVectorCheckValueAndPadding) {
  EXPECT_EQ(EncryptedSourceLength(0, 0), 48u);
  EXPECT_EQ(EncryptedSourceLength(15, 0), 48u);
  EXPECT_EQ(EncryptedSourceLength(16, 0), 64u);  // a full block of padding
  EXPECT_EQ(EncryptedSourceLength(20, 4), 68u);
  EXPECT_EQ(EncryptedSourceLength(20, 20), 68u);
  EXPECT_EQ(EncryptedSourceLength(20065, 0), 20112u);
}

TEST(EncryptFrame, FollowsTheKnownAnswer) {
  AESEncContext context = Encryptor();
  Bytes out(68);
  ASSERT_EQ(EncryptFrame(Counting(20), 4, IVec, context, out), Ferro::RESULT_OK);
  EXPECT_EQ(out, Bytes(EncryptedTwenty.begin(), EncryptedTwenty.end()));
}

TEST(EncryptFrame, AnOffsetBeyondTheFrameIsRefused) {
  AESEncContext context = Encryptor();
  Bytes out(68);
  EXPECT_EQ(EncryptFrame(Counting(20), 21, IVec, context, out), RESULT_LARGE_PTO);
}

TEST(EncryptFrame, ABufferOfAnotherSizeIsRefused) {
  AESEncContext context = Encryptor();
  Bytes out(67);
  EXPECT_EQ(EncryptFrame(Counting(20), 4, IVec, context, out), Ferro::RESULT_SMALLBUF);
}

TEST(EncryptFrame, NeedsAKey) {
  AESEncContext context;
  Bytes out(68);
  EXPECT_EQ(EncryptFrame(Counting(20), 4, IVec, context, out), Ferro::RESULT_INIT);
}

TEST(DecryptFrame, FollowsTheKnownAnswer) {
  AESDecContext context = Decryptor();
  Bytes out(20);
  ASSERT_EQ(DecryptFrame(EncryptedTwenty, 20, 4, context, out), Ferro::RESULT_OK);
  EXPECT_EQ(out, Counting(20));
}

TEST(DecryptFrame, ReturnsWhatWasEncryptedAtEveryLengthAndOffset) {
  AESEncContext encryptor = Encryptor();
  AESDecContext decryptor = Decryptor();
  for (size_t length = 0; length <= 50; ++length) {
    const Bytes source = Counting(length);
    for (size_t offset = 0; offset <= length; ++offset) {
      Bytes value(EncryptedSourceLength(length, offset)), out(length);
      ASSERT_EQ(EncryptFrame(source, offset, IVec, encryptor, value), Ferro::RESULT_OK);
      ASSERT_EQ(DecryptFrame(value, length, offset, decryptor, out), Ferro::RESULT_OK) << length << ' ' << offset;
      ASSERT_EQ(out, source) << length << ' ' << offset;
    }
  }
}

TEST(DecryptFrame, AWrongKeyIsNamedAndHandsOutNothing) {
  AESDecContext context = Decryptor(0xff);
  Bytes out(20, 0xaa);
  EXPECT_EQ(DecryptFrame(EncryptedTwenty, 20, 4, context, out), RESULT_CHECKFAIL);
  EXPECT_EQ(out, Bytes(20, 0xaa));
}

TEST(DecryptFrame, LengthsThatContradictEachOtherAreFormatErrors) {
  AESDecContext context = Decryptor();
  Bytes out(20);
  EXPECT_EQ(DecryptFrame(EncryptedTwenty, 20, 5, context, out), RESULT_FORMAT);
  EXPECT_EQ(DecryptFrame(EncryptedTwenty, 20, 21, context, out), RESULT_FORMAT);
  EXPECT_EQ(DecryptFrame(EncryptedTwenty, ~ui64_t{0}, 4, context, out), RESULT_FORMAT);
  EXPECT_EQ(DecryptFrame(EncryptedTwenty, ~ui64_t{0}, ~ui64_t{0} - 19, context, out), RESULT_FORMAT);
  EXPECT_EQ(DecryptFrame(std::span(EncryptedTwenty).first(67), 20, 4, context, out), RESULT_FORMAT);
  EXPECT_EQ(DecryptFrame({}, 0, 0, context, std::span<ui8_t>()), RESULT_FORMAT);
}

TEST(DecryptFrame, ABufferOfAnotherSizeIsRefused) {
  AESDecContext context = Decryptor();
  Bytes out(19);
  EXPECT_EQ(DecryptFrame(EncryptedTwenty, 20, 4, context, out), Ferro::RESULT_SMALLBUF);
}

TEST(AESContexts, FollowTheNISTVectorInOneChainOfTwoCalls) {
  // SP 800-38A, F.2.1, first two blocks.
  const auto bytes = [](const char* hex) {
    CipherBlock block{};
    EXPECT_TRUE(Ferro::hex2bin(hex, block));
    return block;
  };
  AESEncContext context;
  ASSERT_EQ(context.InitKey(bytes("2b7e151628aed2a6abf7158809cf4f3c")), Ferro::RESULT_OK);
  ASSERT_EQ(context.SetIVec(bytes("000102030405060708090a0b0c0d0e0f")), Ferro::RESULT_OK);
  CipherBlock block = bytes("6bc1bee22e409f96e93d7e117393172a");
  ASSERT_EQ(context.EncryptBlock(block, block), Ferro::RESULT_OK);
  EXPECT_EQ(block, bytes("7649abac8119b246cee98e9b12e9197d"));
  block = bytes("ae2d8a571e03ac9c9eb76fac45af8e51");
  ASSERT_EQ(context.EncryptBlock(block, block), Ferro::RESULT_OK);
  EXPECT_EQ(block, bytes("5086cb9b507219ee95db113a917678b2"));
}

TEST(AESContexts, RefuseWorkBeforeTheirKeyAndVector) {
  AESEncContext encryptor;
  AESDecContext decryptor;
  CipherBlock block{};
  EXPECT_EQ(encryptor.SetIVec(IVec), Ferro::RESULT_INIT);
  EXPECT_EQ(decryptor.SetIVec(IVec), Ferro::RESULT_INIT);
  ASSERT_EQ(encryptor.InitKey(ContentKey), Ferro::RESULT_OK);
  ASSERT_EQ(decryptor.InitKey(ContentKey), Ferro::RESULT_OK);
  EXPECT_EQ(encryptor.EncryptBlock(block, block), Ferro::RESULT_INIT);
  EXPECT_EQ(decryptor.DecryptBlock(block, block), Ferro::RESULT_INIT);
}

TEST(AESContexts, RefusePartsOfBlocks) {
  AESEncContext context = Encryptor();
  ASSERT_EQ(context.SetIVec(IVec), Ferro::RESULT_OK);
  Bytes in(17), out(17);
  EXPECT_EQ(context.EncryptBlock(in, out), Ferro::RESULT_PARAM);
  in.resize(16);
  EXPECT_EQ(context.EncryptBlock(in, out), Ferro::RESULT_PARAM);
}

TEST(HMACContext, FollowsTheKnownAnswerOfBothLabelSets) {
  // The covered bytes of one triplet: encrypted source value, track file ID, sequence number 1 with their length bytes,
  // and the length bytes of the value itself.
  Bytes covered(EncryptedTwenty.begin(), EncryptedTwenty.end());
  for (const ui8_t byte :
       std::initializer_list<ui8_t>{0x83, 0x00, 0x00, 0x10, 0xaa, 0xaa, 0xaa, 0xaa, 0xbb, 0xbb, 0x4c, 0xcc,
                                    0x8d, 0xdd, 0xee, 0xee, 0xee, 0xee, 0xee, 0xee, 0x83, 0x00, 0x00, 0x08,
                                    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01, 0x83, 0x00, 0x00, 0x14}) {
    covered.push_back(byte);
  }
  const std::array<ui8_t, HMAC_SIZE> smpte = {0xdf, 0x65, 0xd3, 0x84, 0xa5, 0x6e, 0x0e, 0x56, 0x38, 0xc4,
                                              0xe5, 0x31, 0x55, 0x60, 0xd4, 0xe8, 0xfd, 0xcf, 0x5f, 0x63};
  const std::array<ui8_t, HMAC_SIZE> interop = {0x47, 0x0b, 0x5d, 0xc6, 0x92, 0x8f, 0x64, 0x54, 0xce, 0x6b,
                                                0xac, 0xbb, 0xf6, 0x83, 0x17, 0x65, 0xf3, 0x2e, 0xe7, 0x52};
  for (const auto& [label_set, expected, other] :
       {std::tuple(LS_MXF_SMPTE, smpte, interop), std::tuple(LS_MXF_INTEROP, interop, smpte)}) {
    HMACContext context;
    ASSERT_EQ(context.InitKey(ContentKey, label_set), Ferro::RESULT_OK);
    for (int run = 0; run < 2; ++run) {  // the second time after Reset
      ASSERT_EQ(context.Update(std::span(covered).first(30)), Ferro::RESULT_OK);
      ASSERT_EQ(context.Update(std::span(covered).subspan(30)), Ferro::RESULT_OK);
      ASSERT_EQ(context.Finalize(), Ferro::RESULT_OK);
      std::array<ui8_t, HMAC_SIZE> value{};
      ASSERT_EQ(context.GetHMACValue(value), Ferro::RESULT_OK);
      EXPECT_EQ(value, expected);
      EXPECT_EQ(context.TestHMACValue(expected), Ferro::RESULT_OK);
      EXPECT_EQ(context.TestHMACValue(other), RESULT_HMACFAIL);
      ASSERT_EQ(context.Reset(), Ferro::RESULT_OK);
    }
  }
}

TEST(HMACContext, RefusesWorkOutOfOrder) {
  HMACContext context;
  std::array<ui8_t, HMAC_SIZE> value{};
  EXPECT_EQ(context.Reset(), Ferro::RESULT_INIT);
  EXPECT_EQ(context.Update(value), Ferro::RESULT_INIT);
  EXPECT_EQ(context.Finalize(), Ferro::RESULT_INIT);
  ASSERT_EQ(context.InitKey(ContentKey, LS_MXF_SMPTE), Ferro::RESULT_OK);
  EXPECT_EQ(context.GetHMACValue(value), Ferro::RESULT_INIT);
  EXPECT_EQ(context.TestHMACValue(value), Ferro::RESULT_INIT);
  ASSERT_EQ(context.Finalize(), Ferro::RESULT_OK);
  EXPECT_EQ(context.Update(value), Ferro::RESULT_INIT);
}

}  // namespace
