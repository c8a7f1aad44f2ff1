// SPDX-License-Identifier: BSD-3-Clause
// Frames that were delivered as they are stored, verified and decrypted afterwards.
#include "ReaderFixture.h"

#include <QUIRE/FrameDecryption.h>

#include <algorithm>
#include <thread>

namespace {

using namespace testsupport;
using namespace QUIRE;
using Ferro::RESULT_OK;

const Bytes ContentKey = Hex("00112233 44556677 8899aabb ccddeeff");

class FrameDecryption : public ::testing::Test {
 protected:
  FrameDecryption() {
    m_Builder.Key = ContentKey;
    EXPECT_EQ(m_Frame.Capacity(1000), RESULT_OK);
    SetKey(ContentKey);
  }

  void SetKey(const Bytes& key) {
    const std::span<const ui8_t, KeyLen> bytes(key.data(), KeyLen);
    EXPECT_EQ(m_Contexts.InitKey(bytes, m_Builder.Interop ? LS_MXF_INTEROP : LS_MXF_SMPTE), RESULT_OK);
  }
  void Open(const Bytes& bytes) {
    m_File.Write(bytes);
    ASSERT_EQ(m_Reader.OpenRead(m_File.Name()), RESULT_OK);
    ASSERT_EQ(ReadTrackEncryption(m_File.Name(), m_Track), RESULT_OK);
  }
  void Open() { Open(m_Builder.Build()); }

  // What reading a frame as it is stored and decrypting it gives; the plaintext is in m_Plain.
  Result_t Take(ui32_t number) {
    EXPECT_EQ(m_Reader.ReadFrame(number, m_Frame), RESULT_OK);
    return Decrypt(number);
  }
  Result_t Decrypt(ui32_t number) {
    m_Plain.assign(m_Frame.SourceLength(), Untouched);
    return VerifyAndDecrypt(m_Track, m_Frame, m_Track.SequenceNumber(number), &m_Contexts, m_Plain);
  }
  [[nodiscard]] bool IsUntouched() const {
    return std::all_of(m_Plain.begin(), m_Plain.end(), [](ui8_t byte) { return byte == Untouched; });
  }

  static constexpr ui8_t Untouched = 0xee;
  MxfBuilder m_Builder = MakeBuilder(MxfBuilder::JP2K, 4);
  TemporaryFile m_File;
  JP2K::MXFReader m_Reader;
  JP2K::FrameBuffer m_Frame;
  TrackEncryption m_Track;
  FrameContexts m_Contexts;
  Bytes m_Plain;
};

TEST_F(FrameDecryption, TheFileTellsWhatThereIsToBeKnown) {
  Open();
  EXPECT_EQ(Raw(m_Track.AssetID), MxfBuilder::AssetID());
  EXPECT_EQ(Raw(m_Track.KeyID), MxfBuilder::KeyID());
  EXPECT_TRUE(m_Track.IsEncrypted && m_Track.UsesHMAC && m_Track.Algorithms.KnowsCipher);
  EXPECT_EQ(m_Track.LabelSet, LS_MXF_SMPTE);
  EXPECT_EQ(m_Track.Sequence, SequenceRule::OnePerEditUnit);
  EXPECT_TRUE(m_Track.HasStandardSequence());
  EXPECT_EQ(m_Track.SequenceNumber(41), 42U);
  TrackEncryption by_reader;
  ASSERT_EQ(m_Reader.FillTrackEncryption(by_reader), RESULT_OK);
  EXPECT_EQ(by_reader, m_Track);
  EXPECT_EQ(m_Reader.Close(), RESULT_OK);
  EXPECT_EQ(m_Reader.FillTrackEncryption(by_reader), Ferro::RESULT_INIT);
}

TEST_F(FrameDecryption, AFileThatCannotBeReadChangesNothing) {
  Open();
  const TrackEncryption before = m_Track;
  LogCapture log;
  EXPECT_EQ(ReadTrackEncryption(m_File.Name() + ".none", m_Track), Ferro::RESULT_NOT_FOUND);
  m_File.Write(Bytes(1000, 0x20));
  EXPECT_EQ(ReadTrackEncryption(m_File.Name(), m_Track), RESULT_FORMAT);
  EXPECT_EQ(m_Track, before);
}

TEST_F(FrameDecryption, FramesOfEveryShapeAreDecrypted) {
  for (const bool interop : {false, true})
    for (const ui64_t offset : {0U, 1U, 16U, 50U}) {
      m_Builder.Interop = interop;
      m_Builder.PlaintextOffset = offset;
      m_Builder.Frames[2] = Bytes(144, 0x5a);  // a multiple of the block size
      SetKey(ContentKey);
      Open();
      for (const ui32_t i : {0U, 2U, 1U, 3U}) {
        EXPECT_EQ(Take(i), RESULT_OK) << i;
        EXPECT_EQ(m_Plain, m_Builder.Frames[i]) << i;
      }
    }
}

TEST_F(FrameDecryption, TheBufferMayBeLongerAndNotShorter) {
  Open();
  ASSERT_EQ(m_Reader.ReadFrame(1, m_Frame), RESULT_OK);
  Bytes longer(m_Frame.SourceLength() + 5, Untouched);
  EXPECT_EQ(VerifyAndDecrypt(m_Track, m_Frame, 2, &m_Contexts, longer), RESULT_OK);
  EXPECT_EQ(Bytes(longer.begin(), longer.end() - 5), m_Builder.Frames[1]);
  EXPECT_EQ(Bytes(longer.end() - 5, longer.end()), Bytes(5, Untouched));
  Bytes shorter(m_Frame.SourceLength() - 1, Untouched);
  EXPECT_EQ(VerifyAndDecrypt(m_Track, m_Frame, 2, &m_Contexts, shorter), Ferro::RESULT_SMALLBUF);
  EXPECT_EQ(shorter, Bytes(shorter.size(), Untouched));
}

TEST_F(FrameDecryption, SoundTextAndItsResourcesAreDecrypted) {
  MxfBuilder sound = MakeBuilder(MxfBuilder::PCM, 2);
  sound.Key = ContentKey;
  const TemporaryFile sound_file(sound.Build());
  PCM::MXFReader sound_reader;
  PCM::FrameBuffer samples;
  ASSERT_EQ(sound_reader.OpenRead(sound_file.Name()), RESULT_OK);
  ASSERT_EQ(ReadTrackEncryption(sound_file.Name(), m_Track), RESULT_OK);
  ASSERT_EQ(samples.Capacity(20000), RESULT_OK);
  ASSERT_EQ(sound_reader.ReadFrame(1, samples), RESULT_OK);
  Bytes plain(samples.SourceLength());
  EXPECT_EQ(VerifyAndDecrypt(m_Track, samples, m_Track.SequenceNumber(1), &m_Contexts, plain), RESULT_OK);
  EXPECT_EQ(plain, sound.Frames[1]);

  MxfBuilder text(MxfBuilder::TimedText);
  text.Frames = MakeFrames(1, 300);
  text.Resources = {{Bytes(16, 1), "image/png", Bytes(77, 7)}, {Bytes(16, 2), "image/png", Bytes(99, 9), 11}};
  text.Key = ContentKey;
  const TemporaryFile text_file(text.Build());
  TimedText::MXFReader text_reader;
  TimedText::FrameBuffer bytes;
  ASSERT_EQ(text_reader.OpenRead(text_file.Name()), RESULT_OK);
  ASSERT_EQ(ReadTrackEncryption(text_file.Name(), m_Track), RESULT_OK);
  ASSERT_EQ(text_reader.ReadTimedTextResource(bytes), RESULT_OK);
  plain.assign(bytes.SourceLength(), 0);
  EXPECT_EQ(VerifyAndDecrypt(m_Track, bytes, m_Track.SequenceNumber(0), &m_Contexts, plain), RESULT_OK);
  EXPECT_EQ(plain, text.Frames[0]);
  ASSERT_EQ(text_reader.ReadAncillaryResource(Ferro::UUID(std::span<const ui8_t, 16>(text.Resources[1].ID)), bytes),
            RESULT_OK);
  plain.assign(bytes.SourceLength(), 0);
  EXPECT_EQ(VerifyAndDecrypt(m_Track, bytes, 2, &m_Contexts, plain), RESULT_SEQUENCE);
  EXPECT_EQ(VerifyAndDecrypt(m_Track, bytes, 3, &m_Contexts, plain), RESULT_OK);
  EXPECT_EQ(plain, text.Resources[1].Data);
}

TEST_F(FrameDecryption, AFrameInClearIsToldFromAnEncryptedOne) {
  m_Builder.Key.clear();
  Open();
  EXPECT_FALSE(m_Track.IsEncrypted);
  EXPECT_EQ(Take(0), RESULT_NOT_ENCRYPTED);
  EXPECT_TRUE(m_Frame.IntegrityPack().empty());
}

TEST_F(FrameDecryption, AFrameInClearAmongEncryptedOnesIsAltered) {
  // The second triplet's place is taken by an element in clear and fill.
  Bytes bytes = m_Builder.Build();
  const size_t room = m_Builder.ElementAt[2] - m_Builder.ElementAt[1];
  const Bytes clear = m_Builder.EssenceKey() + Length4(50) + Bytes(50, 3);
  Put(bytes, m_Builder.ElementAt[1],
      clear + Hex("060e2b34.01010102.03010210.01000000") + Length4(room - clear.size() - 20));
  Open(bytes);
  EXPECT_EQ(Take(1), RESULT_HMACFAIL);
  LogCapture log;
  EXPECT_EQ(m_Reader.ReadFrame(1, m_Frame, nullptr, &m_Contexts.Integrity), RESULT_HMACFAIL);
  EXPECT_NE(log.Text().find("element in clear in an encrypted file at offset "), std::string::npos) << log.Text();
  EXPECT_EQ(m_Reader.ReadFrame(1, m_Frame), RESULT_OK);
  m_Track.UsesHMAC = false;
  EXPECT_EQ(Decrypt(1), RESULT_NOT_ENCRYPTED);
}

TEST_F(FrameDecryption, EachReasonHasItsResultAndHandsOutNothing) {
  Open();
  ASSERT_EQ(m_Reader.ReadFrame(1, m_Frame), RESULT_OK);
  m_Plain.assign(m_Frame.SourceLength(), Untouched);
  EXPECT_EQ(VerifyAndDecrypt(m_Track, m_Frame, 2, nullptr, m_Plain), RESULT_DECRYPT_CTX);
  FrameContexts without_key;
  EXPECT_EQ(VerifyAndDecrypt(m_Track, m_Frame, 2, &without_key, m_Plain), Ferro::RESULT_INIT);
  EXPECT_EQ(Decrypt(2), RESULT_SEQUENCE);
  EXPECT_TRUE(IsUntouched());
  EXPECT_EQ(VerifyAndDecrypt(m_Track, m_Frame, std::nullopt, &m_Contexts, m_Plain), RESULT_SEQUENCE);
  SetKey(Bytes(16, 0x77));
  EXPECT_EQ(Decrypt(1), RESULT_CHECKFAIL);
  EXPECT_TRUE(IsUntouched());
  SetKey(ContentKey);

  TrackEncryption other = m_Track;
  other.AssetID = other.KeyID;
  EXPECT_EQ(VerifyAndDecrypt(other, m_Frame, 2, &m_Contexts, m_Plain), RESULT_HMACFAIL);
  other = m_Track;
  other.Algorithms.KnowsCipher = false;
  EXPECT_EQ(VerifyAndDecrypt(other, m_Frame, 2, &m_Contexts, m_Plain), RESULT_ALGORITHM);

  for (const size_t at : {size_t{0}, size_t{40}, size_t{m_Frame.Size() - 1}}) {
    m_Frame.Data()[at] ^= 1;
    EXPECT_EQ(Decrypt(1), at == 0 ? RESULT_CHECKFAIL : RESULT_HMACFAIL) << at;
    EXPECT_TRUE(IsUntouched());
    m_Frame.Data()[at] ^= 1;
  }
  EXPECT_EQ(Decrypt(1), RESULT_OK);
}

TEST_F(FrameDecryption, ContradictingLengthsAreMalformed) {
  Open();
  ASSERT_EQ(m_Reader.ReadFrame(0, m_Frame), RESULT_OK);
  const ui32_t length = m_Frame.SourceLength();
  for (const ui32_t wrong : {length - 16, length + 16, 0xffffffffU}) {
    m_Frame.SourceLength(wrong);
    m_Plain.assign(200, Untouched);
    EXPECT_EQ(VerifyAndDecrypt(m_Track, m_Frame, 1, &m_Contexts, m_Plain), RESULT_FORMAT) << wrong;
    EXPECT_TRUE(IsUntouched());
  }
  m_Frame.SourceLength(length);
  m_Frame.PlaintextOffset(length + 1);
  EXPECT_EQ(Decrypt(0), RESULT_FORMAT);
  m_Frame.PlaintextOffset(0);
  m_Frame.Clear();
  m_Frame.SourceLength(10);
  EXPECT_EQ(Decrypt(0), RESULT_FORMAT);
}

TEST_F(FrameDecryption, AnIntegrityPackCutAnywhereIsRefused) {
  Open();
  ASSERT_EQ(m_Reader.ReadFrame(0, m_Frame), RESULT_OK);
  const Bytes pack(m_Frame.IntegrityPack().begin(), m_Frame.IntegrityPack().end());
  ASSERT_EQ(pack.size(), 56U);
  for (size_t length = 0; length < pack.size(); ++length) {
    m_Frame.IntegrityPack(std::span(pack).first(length));
    const Result_t result = Decrypt(0);
    // Cut between two items it has no code; elsewhere it is malformed.
    EXPECT_EQ(result, length == 0 || length == 20 || length == 32 ? RESULT_HMACFAIL : RESULT_FORMAT) << length;
    EXPECT_TRUE(IsUntouched());
  }
  m_Frame.IntegrityPack(pack);
  EXPECT_EQ(Decrypt(0), RESULT_OK);
}

TEST_F(FrameDecryption, AFileWithoutCodesIsDecrypted) {
  m_Builder.UseHMAC = false;
  Open();
  EXPECT_EQ(Take(3), RESULT_OK);
  EXPECT_EQ(m_Plain, m_Builder.Frames[3]);
}

TEST_F(FrameDecryption, SeveralThreadsDecryptOneFrame) {
  Open();
  ASSERT_EQ(m_Reader.ReadFrame(1, m_Frame), RESULT_OK);
  const auto work = [&](bool& ok) {
    FrameContexts contexts;
    ok = contexts.InitKey(std::span<const ui8_t, KeyLen>(ContentKey.data(), KeyLen), LS_MXF_SMPTE).Success();
    for (int i = 0; i < 200 && ok; ++i) {
      Bytes plain(m_Frame.SourceLength());
      ok = VerifyAndDecrypt(m_Track, m_Frame, 2, &contexts, plain).Success() && plain == m_Builder.Frames[1];
    }
  };
  bool results[3] = {};
  {
    std::vector<std::jthread> threads;
    for (bool& result : results) threads.emplace_back(work, std::ref(result));
  }
  EXPECT_TRUE(results[0] && results[1] && results[2]);
}

}  // namespace
