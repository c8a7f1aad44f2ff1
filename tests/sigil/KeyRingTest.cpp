// SPDX-License-Identifier: BSD-3-Clause
#include "MessageSamples.h"

#include "../support/LogCapture.h"
#include "../support/TemporaryFile.h"

#include <Sigil/KeyRing.h>

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

using namespace SigilTest;
using Ferro::RESULT_OK;
using Sigil::KeyRing;

const std::string FirstID = "00000000-0000-4000-8000-000000000005";
const std::string FirstKey = "00112233445566778899aabbccddeeff";
const std::string SecondKey = "ffeeddccbbaa99887766554433221100";

Sigil::Result_t Add(KeyRing& ring, const std::string& text) {
  return ring.AddKeyText({reinterpret_cast<const Ferro::ui8_t*>(text.data()), text.size()}, Ferro::DefaultLogSink());
}

QUIRE::TrackEncryption TrackOf(const Sigil::UUID& key) {
  QUIRE::TrackEncryption track;
  track.IsEncrypted = true;
  track.KeyID = key;
  track.LabelSet = QUIRE::LS_MXF_SMPTE;
  return track;
}

// Sixteen zero bytes, encrypted under the key that contexts hold.
std::string Encrypted(std::array<Ferro::ui8_t, 16> key) {
  QUIRE::AESEncContext encryption;
  std::array<Ferro::ui8_t, 16> block{};
  EXPECT_EQ(encryption.InitKey(key), RESULT_OK);
  EXPECT_EQ(encryption.SetIVec(std::array<Ferro::ui8_t, 16>{}), RESULT_OK);
  EXPECT_EQ(encryption.EncryptBlock(block, block), RESULT_OK);
  return std::string(block.begin(), block.end());
}

// True when a ring's key for a track is this one: it decrypts what this one encrypted.
bool Gives(const KeyRing& ring, const Sigil::UUID& id, const std::array<Ferro::ui8_t, 16>& key) {
  QUIRE::FrameContexts contexts;
  if (ring.FillContexts(TrackOf(id), contexts).Failure()) return false;
  const std::string cipher = Encrypted(key);
  std::array<Ferro::ui8_t, 16> block{};
  EXPECT_EQ(contexts.Decryption.SetIVec(std::array<Ferro::ui8_t, 16>{}), RESULT_OK);
  EXPECT_EQ(
      contexts.Decryption.DecryptBlock({reinterpret_cast<const Ferro::ui8_t*>(cipher.data()), cipher.size()}, block),
      RESULT_OK);
  return block == std::array<Ferro::ui8_t, 16>{};
}

std::array<Ferro::ui8_t, 16> Filled(Ferro::ui8_t byte) {
  std::array<Ferro::ui8_t, 16> key{};
  key.fill(byte);
  return key;
}

TEST(KeyRing, AMessagesKeysAreFoundByTheirIdentifiers) {
  const Sigil::MessageRequest request = SoundRequest();
  KeyRing ring;
  testsupport::LogCapture log;
  ASSERT_EQ(ring.AddMessage(ReadMessage(SoundMessage()), Key("device"), Ferro::DefaultLogSink()), RESULT_OK);
  ASSERT_EQ(ring.Size(), request.Keys.size());
  for (const Sigil::ContentKey& key : request.Keys) {
    EXPECT_TRUE(ring.Has(key.Entry.ID));
    EXPECT_TRUE(Gives(ring, key.Entry.ID, Filled(key.Key.Bytes()[0]))) << key.Entry.Type;
  }
  EXPECT_EQ(ring.AddMessage(ReadMessage(SoundMessage()), Key("device"), Ferro::DefaultLogSink()), RESULT_OK);
  EXPECT_EQ(ring.Size(), request.Keys.size());
  EXPECT_EQ(log.Text(), "");
}

TEST(KeyRing, AMessageForSomebodyElseAddsNothing) {
  KeyRing ring;
  testsupport::LogCapture log;
  EXPECT_EQ(ring.AddMessage(ReadMessage(SoundMessage()), Key("leaf"), Ferro::DefaultLogSink()),
            Sigil::RESULT_SG_CONTENT);
  EXPECT_EQ(ring.Size(), 0U);
}

TEST(KeyRing, AKeyThatIsNotThereIsAskedForByItsResult) {
  KeyRing ring;
  QUIRE::FrameContexts contexts;
  EXPECT_EQ(ring.FillContexts(TrackOf(ID(5)), contexts), QUIRE::RESULT_DECRYPT_CTX);
  ASSERT_EQ(ring.AddKey(ID(5), Filled(7), Ferro::DefaultLogSink()), RESULT_OK);
  EXPECT_EQ(ring.FillContexts(TrackOf(ID(6)), contexts), QUIRE::RESULT_DECRYPT_CTX);
  QUIRE::TrackEncryption unlabelled = TrackOf(ID(5));
  unlabelled.LabelSet = QUIRE::LS_MXF_UNKNOWN;
  EXPECT_EQ(ring.FillContexts(unlabelled, contexts), Ferro::RESULT_PARAM);
  EXPECT_TRUE(Gives(ring, ID(5), Filled(7)));
  EXPECT_FALSE(Gives(ring, ID(5), Filled(8)));
}

TEST(KeyRing, OneIdentifierHasOneKey) {
  KeyRing ring;
  testsupport::LogCapture log;
  ASSERT_EQ(ring.AddKey(ID(5), Filled(7), Ferro::DefaultLogSink()), RESULT_OK);
  EXPECT_EQ(ring.AddKey(ID(5), Filled(7), Ferro::DefaultLogSink()), RESULT_OK);
  EXPECT_EQ(ring.AddKey(ID(5), Filled(8), Ferro::DefaultLogSink()), Sigil::RESULT_SG_KEY_CONFLICT);
  EXPECT_TRUE(Gives(ring, ID(5), Filled(7)));
  EXPECT_EQ(log.Text(), "Key " + FirstID + ": Two different keys have the same identifier.\n");
  // Nothing of a text that contradicts what is there is added.
  EXPECT_EQ(Add(ring, ID(6).EncodeString() + ":" + FirstKey + "\n" + FirstID + ":" + FirstKey),
            Sigil::RESULT_SG_KEY_CONFLICT);
  EXPECT_EQ(Add(ring, ID(6).EncodeString() + ":" + FirstKey + "\n" + ID(6).EncodeString() + ":" + SecondKey),
            Sigil::RESULT_SG_KEY_CONFLICT);
  EXPECT_FALSE(ring.Has(ID(6)));
}

TEST(KeyRing, KeyFilesHaveALineForEachKey) {
  KeyRing ring;
  const testsupport::TemporaryFile file;
  const std::string text = "# the keys of a test\r\n\r\n  " + FirstID + ":" + FirstKey + " \r\n" +
                           "urn:uuid:00000000-0000-4000-8000-000000000006 : FFEEDDCCBBAA99887766554433221100\n" +
                           "00000000000040008000000000000007:" + SecondKey;
  file.Write(std::vector<Ferro::ui8_t>(text.begin(), text.end()));
  ASSERT_EQ(ring.AddKeyFile(file.Name(), Ferro::DefaultLogSink()), RESULT_OK);
  EXPECT_EQ(ring.Size(), 3U);
  std::array<Ferro::ui8_t, 16> first{};
  std::array<Ferro::ui8_t, 16> second{};
  for (size_t i = 0; i < 16; ++i) {
    first[i] = static_cast<Ferro::ui8_t>(0x11 * i);
    second[15 - i] = first[i];
  }
  EXPECT_TRUE(Gives(ring, ID(5), first));
  EXPECT_TRUE(Gives(ring, ID(6), second));
  EXPECT_TRUE(Gives(ring, ID(7), second));
}

TEST(KeyRing, AMalformedLineRefusesTheFileAndIsNotPrinted) {
  for (const std::string& line :
       {FirstID, FirstID + ":", FirstID + ":" + FirstKey.substr(1), FirstID + ":" + FirstKey + "0",
        FirstID + ":" + FirstKey.substr(1) + "g", FirstID.substr(1) + ":" + FirstKey, ":" + FirstKey,
        FirstKey + ":" + FirstID, std::string("urn:uuid:")}) {
    KeyRing ring;
    testsupport::LogCapture log;
    EXPECT_EQ(Add(ring, ID(6).EncodeString() + ":" + SecondKey + "\n" + line), Sigil::RESULT_SG_KEY_FILE) << line;
    EXPECT_EQ(log.Text(), "Key file: line 2 is not an identifier, a colon and a key of 32 hexadecimal digits\n");
    EXPECT_EQ(ring.Size(), 0U);
  }
  KeyRing ring;
  testsupport::LogCapture log;
  for (const std::string& text : {std::string(), std::string("\n# nothing\n\n")})
    EXPECT_EQ(Add(ring, text), Sigil::RESULT_SG_KEY_FILE);
}

TEST(KeyRing, FilesThatAreMissingOrTooLargeAreTold) {
  KeyRing ring;
  testsupport::LogCapture log;
  const testsupport::TemporaryFile file;
  EXPECT_EQ(ring.AddKeyFile(file.Name() + ".none", Ferro::DefaultLogSink()), Ferro::RESULT_NOT_FOUND);
  std::string text = FirstID + ":" + FirstKey;
  text.resize(KeyRing::MaxKeyFile, '\n');
  file.Write(std::vector<Ferro::ui8_t>(text.begin(), text.end()));
  EXPECT_EQ(ring.AddKeyFile(file.Name(), Ferro::DefaultLogSink()), RESULT_OK);
  text += '\n';
  file.Write(std::vector<Ferro::ui8_t>(text.begin(), text.end()));
  EXPECT_EQ(ring.AddKeyFile(file.Name(), Ferro::DefaultLogSink()), Ferro::RESULT_TOOLARGE);
}

TEST(KeyRing, HandsOutAKeyForWhoeverMakesAMessage) {
  KeyRing ring;
  ASSERT_EQ(Add(ring, FirstID + ':' + FirstKey), RESULT_OK);
  Sigil::SecretBytes key;
  EXPECT_EQ(ring.CopyKey(ID(5), key), RESULT_OK);
  ASSERT_EQ(key.Size(), 16U);
  EXPECT_EQ(key.Bytes()[1], 0x11);
  EXPECT_EQ(key.Bytes()[15], 0xff);
  EXPECT_EQ(ring.CopyKey(ID(6), key), QUIRE::RESULT_DECRYPT_CTX);
}

}  // namespace
