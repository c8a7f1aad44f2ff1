// SPDX-License-Identifier: BSD-3-Clause
#include "ReaderFixture.h"

#include <QUIRE/Crypto.h>

namespace {

using namespace testsupport;
using namespace QUIRE;
using Ferro::RESULT_OK;

const Bytes ContentKey = Hex("00112233 44556677 8899aabb ccddeeff");

MxfBuilder EncryptedBuilder(MxfBuilder::Kind_t kind, size_t count) {
  MxfBuilder builder = MakeBuilder(kind, count);
  builder.Key = ContentKey;
  return builder;
}

struct Contexts {
  explicit Contexts(const Bytes& key = ContentKey, LabelSet_t labels = LS_MXF_SMPTE) {
    const std::span<const ui8_t, KeyLen> bytes(key.data(), KeyLen);
    EXPECT_EQ(Decryption.InitKey(bytes), RESULT_OK);
    EXPECT_EQ(Integrity.InitKey(bytes, labels), RESULT_OK);
  }
  AESDecContext Decryption;
  HMACContext Integrity;
};

class EncryptedReader : public ::testing::Test {
 protected:
  void Open(const MxfBuilder& builder) {
    MxfBuilder copy = builder;
    Open(copy.Build());
  }
  void Open(const Bytes& bytes) {
    m_File.Write(bytes);
    ASSERT_EQ(m_Reader.OpenRead(m_File.Name()), RESULT_OK);
    ASSERT_EQ(m_Frame.Capacity(1000), RESULT_OK);
  }

  TemporaryFile m_File;
  JP2K::MXFReader m_Reader;
  JP2K::FrameBuffer m_Frame;
};

TEST_F(EncryptedReader, WriterInfoTellsContextAndKey) {
  Open(EncryptedBuilder(MxfBuilder::JP2K, 1));
  WriterInfo info;
  ASSERT_EQ(m_Reader.FillWriterInfo(info), RESULT_OK);
  EXPECT_TRUE(info.EncryptedEssence);
  EXPECT_TRUE(info.UsesHMAC);
  EXPECT_EQ(Raw(info.ContextID), MxfBuilder::ContextID());
  EXPECT_EQ(Raw(info.CryptographicKeyID), MxfBuilder::KeyID());
}

TEST_F(EncryptedReader, WithoutAKeyTheValueIsDeliveredAsStored) {
  MxfBuilder builder = EncryptedBuilder(MxfBuilder::JP2K, 3);
  builder.PlaintextOffset = 20;
  const Bytes bytes = builder.Build();
  Open(bytes);
  for (ui32_t i : {0u, 1u, 2u, 0u}) {
    ASSERT_EQ(m_Reader.ReadFrame(i, m_Frame), RESULT_OK);
    const size_t size = 48 + 20 + 16 * ((builder.Frames[i].size() - 20) / 16);
    const auto stored = bytes.begin() + static_cast<std::ptrdiff_t>(builder.ElementAt[i]) + 88;
    EXPECT_EQ(Content(m_Frame), Bytes(stored, stored + static_cast<std::ptrdiff_t>(size)));
    EXPECT_EQ(m_Frame.SourceLength(), builder.Frames[i].size());
    EXPECT_EQ(m_Frame.PlaintextOffset(), 20u);
    EXPECT_EQ(m_Frame.FrameNumber(), i);
  }
}

TEST_F(EncryptedReader, WithTheKeyThePlaintextIsDelivered) {
  for (ui64_t offset : {0U, 1U, 16U, 50U}) {
    MxfBuilder builder = EncryptedBuilder(MxfBuilder::JP2K, 4);
    builder.Frames.push_back(Bytes(144, 0x5a));  // a multiple of the block size
    builder.PlaintextOffset = offset;
    Open(builder);
    Contexts contexts;
    for (ui32_t i : {0u, 1u, 4u, 2u, 3u, 3u}) {
      ASSERT_EQ(m_Reader.ReadFrame(i, m_Frame, &contexts.Decryption, &contexts.Integrity), RESULT_OK) << i;
      EXPECT_EQ(Content(m_Frame), builder.Frames[i]);
      EXPECT_EQ(m_Frame.SourceLength(), 0u);
      EXPECT_EQ(m_Frame.PlaintextOffset(), 0u);
    }
  }
}

TEST_F(EncryptedReader, PlaintextFitsABufferOfExactlyItsSize) {
  MxfBuilder builder = EncryptedBuilder(MxfBuilder::JP2K, 20);
  Open(builder);
  Contexts contexts;
  for (ui32_t i = 0; i < 20; ++i) {
    const auto size = static_cast<ui32_t>(builder.Frames[i].size());
    ASSERT_EQ(m_Frame.Capacity(size), RESULT_OK);
    ASSERT_EQ(m_Reader.ReadFrame(i, m_Frame, &contexts.Decryption, &contexts.Integrity), RESULT_OK) << i;
    EXPECT_EQ(Content(m_Frame), builder.Frames[i]);
    ASSERT_EQ(m_Frame.Capacity(size - 1), RESULT_OK);
    EXPECT_EQ(m_Reader.ReadFrame(i, m_Frame, &contexts.Decryption), Ferro::RESULT_SMALLBUF);
  }
}

TEST_F(EncryptedReader, FileWithoutIntegrityPacksIsDecrypted) {
  MxfBuilder builder = EncryptedBuilder(MxfBuilder::JP2K, 2);
  builder.UseHMAC = false;
  Open(builder);
  WriterInfo info;
  ASSERT_EQ(m_Reader.FillWriterInfo(info), RESULT_OK);
  EXPECT_TRUE(info.EncryptedEssence);
  EXPECT_FALSE(info.UsesHMAC);
  Contexts contexts;
  for (ui32_t i = 0; i < 2; ++i) {
    ASSERT_EQ(m_Reader.ReadFrame(i, m_Frame, &contexts.Decryption, &contexts.Integrity), RESULT_OK);
    EXPECT_EQ(Content(m_Frame), builder.Frames[i]);
  }
}

TEST_F(EncryptedReader, InteropFileIsVerifiedWithItsOwnKeyDerivation) {
  MxfBuilder builder = EncryptedBuilder(MxfBuilder::JP2K, 2);
  builder.Interop = true;
  Open(builder);
  WriterInfo info;
  ASSERT_EQ(m_Reader.FillWriterInfo(info), RESULT_OK);
  EXPECT_EQ(info.LabelSetType, LS_MXF_INTEROP);
  Contexts contexts(ContentKey, LS_MXF_INTEROP);
  ASSERT_EQ(m_Reader.ReadFrame(1, m_Frame, &contexts.Decryption, &contexts.Integrity), RESULT_OK);
  EXPECT_EQ(Content(m_Frame), builder.Frames[1]);
}

TEST_F(EncryptedReader, WrongKeyIsAFailedCheckAndHandsOutNothing) {
  Open(EncryptedBuilder(MxfBuilder::JP2K, 2));
  Contexts contexts(Bytes(16, 0x77));
  LogCapture log;
  EXPECT_EQ(m_Reader.ReadFrame(1, m_Frame, &contexts.Decryption, &contexts.Integrity), RESULT_CHECKFAIL);
  EXPECT_EQ(m_Frame.Size(), 0u);
  EXPECT_EQ(m_Frame.FrameNumber(), NoFrame);
  EXPECT_NE(log.Text().find(m_File.Name() + ": the key does not decrypt the element at offset "), std::string::npos);
}

TEST_F(EncryptedReader, AlteredFrameFailsItsIntegrityCode) {
  MxfBuilder builder = EncryptedBuilder(MxfBuilder::JP2K, 3);
  Bytes bytes = builder.Build();
  bytes[builder.ElementAt[1] + 88 + 40] ^= 1;
  Open(bytes);
  Contexts contexts;
  LogCapture log;
  EXPECT_EQ(m_Reader.ReadFrame(0, m_Frame, &contexts.Decryption, &contexts.Integrity), RESULT_OK);
  EXPECT_EQ(m_Reader.ReadFrame(1, m_Frame, &contexts.Decryption, &contexts.Integrity), RESULT_HMACFAIL);
  EXPECT_EQ(m_Frame.Size(), 0u);
  EXPECT_EQ(log.Text(), m_File.Name() + ": wrong integrity code of the element at offset " +
                            std::to_string(builder.ElementAt[1]) + "\n");
  EXPECT_EQ(m_Reader.ReadFrame(1, m_Frame, &contexts.Decryption), RESULT_OK);
}

TEST_F(EncryptedReader, IntegrityOfCiphertextIsVerifiedToo) {
  MxfBuilder builder = EncryptedBuilder(MxfBuilder::JP2K, 2);
  Bytes bytes = builder.Build();
  Contexts contexts;
  Open(bytes);
  EXPECT_EQ(m_Reader.ReadFrame(1, m_Frame, nullptr, &contexts.Integrity), RESULT_OK);
  bytes[builder.ElementAt[1] + 88] ^= 1;
  Open(bytes);
  EXPECT_EQ(m_Reader.ReadFrame(1, m_Frame, nullptr, &contexts.Integrity), RESULT_HMACFAIL);
}

TEST_F(EncryptedReader, FrameOfAnotherFileFailsTheIntegrityCheck) {
  // The code is right for the bytes, but the pack names another file: the triplets are moved under another header.
  MxfBuilder builder = EncryptedBuilder(MxfBuilder::JP2K, 1);
  Bytes bytes = builder.Build();
  const Bytes umid_tail = Hex("13000000") + MxfBuilder::AssetID();
  for (size_t at = 0; at + umid_tail.size() < builder.HeaderEnd; ++at)
    if (std::equal(umid_tail.begin(), umid_tail.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at)))
      bytes[at + 19] ^= 0x40;
  Open(bytes);
  Contexts contexts;
  LogCapture log;
  EXPECT_EQ(m_Reader.ReadFrame(0, m_Frame, &contexts.Decryption, &contexts.Integrity), RESULT_HMACFAIL);
  EXPECT_NE(log.Text().find("element of another track file at offset "), std::string::npos);
}

TEST_F(EncryptedReader, FrameFromAnotherPlaceFailsTheIntegrityCheck) {
  MxfBuilder builder = EncryptedBuilder(MxfBuilder::JP2K, 2);
  builder.Frames[1] = Bytes(builder.Frames[0].size(), 9);
  Bytes bytes = builder.Build();
  const auto begin = bytes.begin();
  std::swap_ranges(begin + static_cast<std::ptrdiff_t>(builder.ElementAt[0]),
                   begin + static_cast<std::ptrdiff_t>(builder.ElementAt[1]),
                   begin + static_cast<std::ptrdiff_t>(builder.ElementAt[1]));
  Open(bytes);
  Contexts contexts;
  LogCapture log;
  EXPECT_EQ(m_Reader.ReadFrame(0, m_Frame, &contexts.Decryption, &contexts.Integrity), RESULT_SEQUENCE);
  EXPECT_NE(log.Text().find("element of another place in the sequence at offset "), std::string::npos);
}

TEST_F(EncryptedReader, MissingIntegrityCodeFailsWhereTheHeaderPromisesOne) {
  MxfBuilder builder = EncryptedBuilder(MxfBuilder::JP2K, 1);
  builder.UseHMAC = false;
  const ui16_t mic_algorithm = builder.DynamicTag("060e2b34.01010109.02090302.01000000");
  builder.Overrides["CryptoContext"][mic_algorithm] = Hex("060e2b34.04010107.02090202.01000000");
  Bytes bytes = builder.Build();
  Open(bytes);
  WriterInfo info;
  ASSERT_EQ(m_Reader.FillWriterInfo(info), RESULT_OK);
  ASSERT_TRUE(info.UsesHMAC);
  Contexts contexts;
  EXPECT_EQ(m_Reader.ReadFrame(0, m_Frame, &contexts.Decryption, &contexts.Integrity), RESULT_HMACFAIL);
}

TEST_F(EncryptedReader, BERSourceLengthOfEarlyWritersIsRead) {
  MxfBuilder builder = EncryptedBuilder(MxfBuilder::JP2K, 1);
  builder.SourceLengthItem = Length4(100);
  Open(builder);
  Contexts contexts;
  ASSERT_EQ(m_Reader.ReadFrame(0, m_Frame, &contexts.Decryption), RESULT_OK);
  EXPECT_EQ(Content(m_Frame), builder.Frames[0]);
}

TEST_F(EncryptedReader, InconsistentTripletIsAFormatError) {
  MxfBuilder builder = EncryptedBuilder(MxfBuilder::JP2K, 1);
  const Bytes good = builder.Build();
  const size_t value = builder.ElementAt[0] + 20;
  const struct {
    size_t At;
    Bytes Value;
  } cases[] = {
      {value + 24, BE64(101)},                 // clear bytes beyond the source
      {value + 24, BE64(~ui64_t{0})},          //
      {value + 56, BE64(99999)},               // source longer than what is encrypted
      {value + 56, BE64(ui64_t{1} << 61)},     // of exabytes
      {value + 65, BE(47, 3)},                 // less than the fixed part
      {value + 65, BE(0xffffff, 3)},           // beyond the triplet
      {value + 36, Hex("060e2b34 02530101")},  // source key that is none of an element
      {value, Hex("80")},                      // indefinite length
  };
  for (const auto& [at, change] : cases) {
    Bytes bytes = good;
    Put(bytes, at, change);
    Open(bytes);
    Contexts contexts;
    LogCapture log;
    EXPECT_EQ(m_Reader.ReadFrame(0, m_Frame, &contexts.Decryption), RESULT_FORMAT) << at - value;
    EXPECT_EQ(m_Reader.ReadFrame(0, m_Frame), RESULT_FORMAT) << at - value;
    EXPECT_EQ(log.Count(Ferro::LogLevel::Error), 2u) << log.Text();
  }
}

TEST_F(EncryptedReader, StereoscopicPairIsDecrypted) {
  MxfBuilder builder = EncryptedBuilder(MxfBuilder::JP2KS, 4);
  Open(builder);
  JP2K::MXFSReader reader;
  ASSERT_EQ(reader.OpenRead(m_File.Name()), RESULT_OK);
  JP2K::SFrameBuffer frame;
  ASSERT_EQ(frame.Left.Capacity(1000), RESULT_OK);
  ASSERT_EQ(frame.Right.Capacity(1000), RESULT_OK);
  Contexts contexts;
  for (ui32_t i : {1u, 0u}) {
    ASSERT_EQ(reader.ReadFrame(i, frame, &contexts.Decryption, &contexts.Integrity), RESULT_OK);
    EXPECT_EQ(Content(frame.Left), builder.Frames[2 * i]);
    EXPECT_EQ(Content(frame.Right), builder.Frames[2 * i + 1]);
  }
  Contexts wrong(Bytes(16, 1));
  EXPECT_EQ(reader.ReadFrame(0, frame, &wrong.Decryption), RESULT_CHECKFAIL);
  EXPECT_EQ(frame.Left.FrameNumber(), NoFrame);
  EXPECT_EQ(frame.Right.FrameNumber(), NoFrame);
}

TEST_F(EncryptedReader, SoundIsDecrypted) {
  MxfBuilder builder = EncryptedBuilder(MxfBuilder::PCM, 3);
  const TemporaryFile file(builder.Build());
  PCM::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  PCM::FrameBuffer frame;
  ASSERT_EQ(frame.Capacity(20000), RESULT_OK);
  Contexts contexts;
  for (ui32_t i : {0u, 1u, 2u}) {
    ASSERT_EQ(reader.ReadFrame(i, frame, &contexts.Decryption, &contexts.Integrity), RESULT_OK);
    EXPECT_EQ(Content(frame), builder.Frames[i]);
  }
}

class Algorithms : public EncryptedReader {
 protected:
  static constexpr const char* CipherProperty = "060e2b34.01010109.02090301.01000000";
  static constexpr const char* MICProperty = "060e2b34.01010109.02090302.01000000";

  // A file whose cryptographic context has another label in this property.
  void OpenWith(const char* property, const Bytes& label) {
    MxfBuilder builder = EncryptedBuilder(MxfBuilder::JP2K, 2);
    (void)builder.Build();  // gives out the dynamic tags
    builder.Overrides["CryptoContext"][builder.DynamicTag(property)] = label;
    Open(builder);
  }
  EncryptionInfo Info() {
    EncryptionInfo info;
    EXPECT_EQ(m_Reader.FillEncryptionInfo(info), RESULT_OK);
    return info;
  }

  LogCapture m_Log;
  const Bytes m_Other = Hex("060e2b34.0401010d.02090201.7f000000");
};

TEST_F(Algorithms, AreReadFromTheFile) {
  Open(EncryptedBuilder(MxfBuilder::JP2K, 1));
  EXPECT_EQ(Raw(Info().CipherAlgorithm), Hex("060e2b34.04010107.02090201.01000000"));
  EXPECT_EQ(Raw(Info().MICAlgorithm), Hex("060e2b34.04010107.02090202.01000000"));
  EXPECT_TRUE(Info().KnowsCipher && Info().KnowsMIC);
  EXPECT_EQ(m_Log.Text(), "");
}

TEST_F(Algorithms, PlaintextHasNone) {
  EncryptionInfo info;
  EXPECT_EQ(m_Reader.FillEncryptionInfo(info), Ferro::RESULT_INIT);
  Open(MakeBuilder(MxfBuilder::JP2K, 1));
  EXPECT_EQ(Info(), EncryptionInfo());
}

TEST_F(Algorithms, AnUnknownCipherIsReportedAndNotDecrypted) {
  OpenWith(CipherProperty, m_Other);
  EXPECT_FALSE(Info().KnowsCipher);
  EXPECT_NE(m_Log.Text().find("algorithm that is not known, 060e2b34.0401010d.02090201.7f000000"), std::string::npos);
  Contexts contexts;
  EXPECT_EQ(m_Reader.ReadFrame(0, m_Frame, &contexts.Decryption), RESULT_ALGORITHM);
  EXPECT_EQ(m_Frame.Size(), 0u);
  EXPECT_EQ(m_Reader.ReadFrame(0, m_Frame), RESULT_OK);  // as it is stored
  JP2K::SFrameBuffer pair;
  JP2K::MXFSReader stereoscopic;
  ASSERT_EQ(stereoscopic.OpenRead(m_File.Name()), RESULT_OK);
  EXPECT_EQ(stereoscopic.ReadFrame(0, pair, &contexts.Decryption), RESULT_ALGORITHM);
}

TEST_F(Algorithms, AnUnknownIntegrityCodeIsReportedAndNotVerified) {
  OpenWith(MICProperty, m_Other);
  EXPECT_FALSE(Info().KnowsMIC);
  EXPECT_NE(m_Log.Text().find("authenticated by an algorithm that is not known"), std::string::npos);
  Contexts contexts;
  EXPECT_EQ(m_Reader.ReadFrame(0, m_Frame, &contexts.Decryption, &contexts.Integrity), RESULT_ALGORITHM);
  EXPECT_EQ(m_Reader.ReadFrame(0, m_Frame, &contexts.Decryption), RESULT_OK);
}

TEST_F(Algorithms, OfATextAreLookedAtToo) {
  MxfBuilder builder = EncryptedBuilder(MxfBuilder::TimedText, 1);
  (void)builder.Build();
  builder.Overrides["CryptoContext"][builder.DynamicTag(CipherProperty)] = m_Other;
  const TemporaryFile file(builder.Build());
  TimedText::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  Contexts contexts;
  std::string text;
  EXPECT_EQ(reader.ReadTimedTextResource(text, &contexts.Decryption), RESULT_ALGORITHM);
}

TEST_F(EncryptedReader, ContextsWithoutAKeyAreToldFromWrongCodes) {
  LogCapture log;
  Open(EncryptedBuilder(MxfBuilder::JP2K, 1));
  HMACContext integrity;
  EXPECT_EQ(m_Reader.ReadFrame(0, m_Frame, nullptr, &integrity), Ferro::RESULT_INIT);
  EXPECT_NE(log.Text().find("no key in the integrity context"), std::string::npos) << log.Text();
  EXPECT_EQ(log.Text().find("wrong integrity code"), std::string::npos);
  AESDecContext decryption;
  EXPECT_EQ(m_Reader.ReadFrame(0, m_Frame, &decryption), Ferro::RESULT_INIT);
  EXPECT_NE(log.Text().find("no key in the context to decrypt"), std::string::npos) << log.Text();
}

TEST_F(EncryptedReader, TheIntegrityCodeIsVerifiedWithoutDecryption) {
  MxfBuilder builder = EncryptedBuilder(MxfBuilder::JP2K, 1);
  Bytes bytes = builder.Build();
  Open(bytes);
  Contexts contexts;
  EXPECT_EQ(m_Reader.ReadFrame(0, m_Frame, nullptr, &contexts.Integrity), RESULT_OK);
  LogCapture log;
  bytes[builder.ElementAt[0] + 150] ^= 1;
  Open(bytes);
  EXPECT_EQ(m_Reader.ReadFrame(0, m_Frame, nullptr, &contexts.Integrity), RESULT_HMACFAIL);
}

}  // namespace
