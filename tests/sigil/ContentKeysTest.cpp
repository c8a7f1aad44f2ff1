// SPDX-License-Identifier: BSD-3-Clause
#include "MessageSamples.h"

#include <Ferro/TextEncoding.h>

#include <gtest/gtest.h>

namespace {

using namespace SigilTest;

std::string Raw(std::span<const Sigil::ui8_t> bytes) {
  return {bytes.begin(), bytes.end()};
}

std::string FromHex(const std::string& hex) {
  std::vector<Sigil::ui8_t> bytes(hex.size() / 2);
  EXPECT_TRUE(Ferro::hex2bin(hex, bytes));
  return Raw(bytes);
}

/// The plaintext of the picture's key, field by field.
struct Plain {
  std::string Structure = FromHex("f1dc124460169a0e85bc300642f866ab");
  std::string Signer = Raw(SigilTest::Signer().Chain[0].Thumbprint().Bytes());
  std::string Composition = Raw(ID(1).Bytes());
  std::string Type = "MDIK";
  std::string KeyID = Raw(ID(4).Bytes());
  std::string NotBefore = Begin;
  std::string NotAfter = End;
  std::string Key = std::string(16, '\x11');

  [[nodiscard]] std::string Text() const {
    return Structure + Signer + Composition + Type + KeyID + NotBefore + NotAfter + Key;
  }
};

TEST(ContentKeys, EachPlaintextIsWhatOpenSSLDecrypts) {
  EXPECT_EQ(PlainByOpenSSL(SoundMessage(), 0), Plain().Text());
  Plain sound;
  sound.Type = "MDAK";
  sound.KeyID = Raw(ID(5).Bytes());
  sound.Key = std::string(16, '\x22');
  EXPECT_EQ(PlainByOpenSSL(SoundMessage(), 1), sound.Text());
  EXPECT_EQ(sound.Text().size(), 138U);
}

TEST(ContentKeys, WhatOpenSSLEncryptsIsOpened) {
  Plain plain;
  plain.Key = "0123456789abcdef";
  Sigil::ContentKeys keys;
  ASSERT_EQ(Sigil::ContentKeys::Open(ReadMessage(WithPlain(SoundMessage(), 0, plain.Text())), Key("device"), keys,
                                     Ferro::DefaultLogSink()),
            Ferro::RESULT_OK);
  ASSERT_NE(keys.Find(ID(4)), nullptr);
  EXPECT_EQ(Raw(keys.Find(ID(4))->Key.Bytes()), plain.Key);
  EXPECT_EQ(keys.Find(ID(4))->Entry.Type, "MDIK");
  EXPECT_EQ(Raw(keys.Find(ID(5))->Key.Bytes()), std::string(16, '\x22'));
  EXPECT_EQ(keys.Find(ID(6)), nullptr);
  EXPECT_EQ(keys.CompositionID, ID(1));
  EXPECT_EQ(keys.NotBefore.EncodeString(), Begin);
  EXPECT_EQ(keys.NotAfter.EncodeString(), End);
}

TEST(ContentKeys, TimesAgreeWhenTheyAreTheSameMoment) {
  Plain plain;
  plain.NotBefore = "2026-03-02T08:00:00+00:00";
  EXPECT_EQ(Opened(ReadMessage(WithPlain(SoundMessage(), 0, plain.Text()))), "OK");
  EXPECT_EQ(Opened(ReadMessage(Resigned(Replaced(SoundMessage(), Begin, "2026-03-02T08:00:00Z")))), "OK");
}

TEST(ContentKeys, APlaintextThatDisagreesInAnyFieldRefusesTheWholeMessage) {
  const std::vector<void (*)(Plain&)> changes = {
      [](Plain& p) { p.Structure[15] ^= 1; },
      [](Plain& p) { p.Signer[0] ^= 1; },
      [](Plain& p) { p.Signer = Raw(SigilTest::Signer().Chain[1].Thumbprint().Bytes()); },
      [](Plain& p) { p.Composition[15] ^= 1; },
      [](Plain& p) { p.Type = "MDAK"; },
      [](Plain& p) { p.KeyID[15] ^= 0x10; },
      [](Plain& p) { p.KeyID = Raw(ID(5).Bytes()); },  // twice, of the wrong type
      [](Plain& p) {
        p.KeyID = Raw(ID(5).Bytes());
        p.Type = "MDAK";
      },
      [](Plain& p) { p.NotBefore = "2026-03-02T09:00:01+01:00"; },
      [](Plain& p) { p.NotBefore = "2026-03-02T09:00:00+00:00"; },
      [](Plain& p) {
        p.NotBefore = "yesterday at half past ten";
        p.NotBefore.resize(25);
      },
      [](Plain& p) { p.NotAfter = "2026-03-09T23:59:58+01:00"; },
      [](Plain& p) { p.Key.pop_back(); },
      [](Plain& p) { p.Key += '1'; },
      [](Plain& p) { p.Key.clear(); },
  };
  ASSERT_EQ(Opened(ReadMessage(WithPlain(SoundMessage(), 0, Plain().Text()))), "OK");
  for (size_t i = 0; i < changes.size(); ++i) {
    Plain plain;
    changes[i](plain);
    const Sigil::KeyMessage message = ReadMessage(WithPlain(SoundMessage(), 0, plain.Text()));
    ASSERT_EQ(message.Signature.State, Sigil::SignatureState::Valid);
    EXPECT_EQ(Opened(message), "SG_CONTENT") << i;
  }
}

// With what it says, and with how it says it: none of these is to be told from the others.
TEST(ContentKeys, AnotherKeyAndDamagedContentAreRefusedAlike) {
  EXPECT_EQ(Opened(ReadMessage(SoundMessage()), "leaf"), "SG_CONTENT");
  const std::string encrypted = Part(SoundMessage(), "<enc:CipherValue>", "</enc:CipherValue>");
  std::string damaged = encrypted;
  damaged[100] = damaged[100] == 'A' ? 'B' : 'A';
  EXPECT_EQ(Opened(ReadMessage(Resigned(Replaced(SoundMessage(), encrypted, damaged)))), "SG_CONTENT");
  const std::string zeros =
      "<enc:CipherValue>" + Ferro::base64encode(std::vector<Sigil::ui8_t>(256)) + "</enc:CipherValue>";
  EXPECT_EQ(Opened(ReadMessage(Resigned(Replaced(SoundMessage(), encrypted, zeros)))), "SG_CONTENT");
  EXPECT_EQ(Opened(ReadMessage(WithPlain(SoundMessage(), 0, ""))), "SG_CONTENT");
}

TEST(ContentKeys, AMessageWithoutAValidSignatureIsNotOpened) {
  EXPECT_EQ(Opened(ReadMessage(Replaced(SoundMessage(), "A &lt; B", "A &lt; D"))), "SG_UNVERIFIED");
  EXPECT_EQ(
      Opened(ReadMessage(Replaced(SoundMessage(), Part(SoundMessage(), "<ds:Signature ", "</ds:Signature>"), ""))),
      "SG_UNVERIFIED");
  // Signed by another than the chain's leaf.
  EXPECT_EQ(Opened(ReadMessage(Resigned(SoundMessage(), "leaf2"))), "SG_UNVERIFIED");
}

/// The message with its keys listed without types.
std::string Untyped() {
  std::string xml = SoundMessage();
  for (int i = 0; i < 2; ++i) {
    const std::string typed = Part(xml, "<TypedKeyId>", "</TypedKeyId>");
    xml = Replaced(xml, typed, Part(typed, "<KeyId>", "</KeyId>"));
  }
  return xml;
}

TEST(ContentKeys, MessagesWithoutKeyTypesHaveShorterPlaintexts) {
  Plain picture;
  picture.Type.clear();
  Plain sound = picture;
  sound.KeyID = Raw(ID(5).Bytes());
  const std::string untyped = WithPlain(WithPlain(Untyped(), 0, picture.Text()), 1, sound.Text());
  EXPECT_EQ(Opened(ReadMessage(untyped)), "OK");
  EXPECT_EQ(ReadMessage(untyped).Keys[0], (Sigil::KeyEntry{ID(4), "", ""}));
  // Types on one side only, then both lengths.
  EXPECT_EQ(Opened(ReadMessage(Resigned(Untyped()))), "SG_CONTENT");
  EXPECT_EQ(Opened(ReadMessage(WithPlain(WithPlain(SoundMessage(), 0, picture.Text()), 1, sound.Text()))),
            "SG_CONTENT");
  EXPECT_EQ(Opened(ReadMessage(WithPlain(SoundMessage(), 0, picture.Text()))), "SG_MESSAGE");
}

TEST(ContentKeys, KeysMayStandInAnyOrder) {
  Plain sound;
  sound.Type = "MDAK";
  sound.KeyID = Raw(ID(5).Bytes());
  EXPECT_EQ(Opened(ReadMessage(WithPlain(WithPlain(SoundMessage(), 0, sound.Text()), 1, Plain().Text()))), "OK");
}

TEST(ContentKeys, ManyKeysAreOpened) {
  Sigil::MessageRequest request = SoundRequest();
  request.Keys.clear();
  for (int i = 0; i < 200; ++i) request.Keys.push_back(ContentKeyOf(static_cast<unsigned char>(i), "MDIK", 0x33));
  EXPECT_EQ(Opened(ReadMessage(Made(request))), "OK");
}

}  // namespace
