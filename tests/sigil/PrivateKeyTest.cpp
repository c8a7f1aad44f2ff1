// SPDX-License-Identifier: BSD-3-Clause
#include "SignedSamples.h"
#include "TemporaryFolder.h"

#include <LogCapture.h>

#include <Sigil/SecretBytes.h>

#include <gtest/gtest.h>
#include <openssl/bio.h>
#include <openssl/pem.h>

#include <fstream>

namespace {

using namespace SigilTest;
using testsupport::LogCapture;

std::string ContentOf(BIO* memory) {
  char* text = nullptr;
  const long length = BIO_get_mem_data(memory, &text);
  std::string content(text, static_cast<size_t>(length));
  BIO_free(memory);
  return content;
}

std::string InPKCS1(const std::string& name) {
  BIO* memory = BIO_new(BIO_s_mem());
  EXPECT_EQ(
      PEM_write_bio_PrivateKey_traditional(memory, testsupport::TestKey(name), nullptr, nullptr, 0, nullptr, nullptr),
      1);
  return ContentOf(memory);
}

std::string Encrypted(const std::string& name, const std::string& passphrase, bool is_pkcs8) {
  BIO* memory = BIO_new(BIO_s_mem());
  auto* bytes = reinterpret_cast<const unsigned char*>(passphrase.data());
  const int size = static_cast<int>(passphrase.size());
  EVP_PKEY* key = testsupport::TestKey(name);
  const int written =
      is_pkcs8
          ? PEM_write_bio_PKCS8PrivateKey(memory, key, EVP_aes_128_cbc(), passphrase.data(), size, nullptr, nullptr)
          : PEM_write_bio_PrivateKey_traditional(memory, key, EVP_aes_128_cbc(), bytes, size, nullptr, nullptr);
  EXPECT_EQ(written, 1);
  return ContentOf(memory);
}

Sigil::Result_t Read(const std::string& text, const Sigil::PassphraseSource& source,
                     std::optional<Sigil::PrivateKey>& key, Ferro::ILogSink& log) {
  return Sigil::PrivateKey::FromPEM({reinterpret_cast<const Sigil::ui8_t*>(text.data()), text.size()}, source, key,
                                    log);
}

/// Says a passphrase and counts how often it was asked.
struct Person {
  std::string Passphrase;
  int Asked = 0;

  Sigil::PassphraseSource Source() {
    return [this]() -> std::optional<Sigil::SecretBytes> {
      ++Asked;
      Sigil::SecretBytes secret;
      EXPECT_TRUE(secret.Assign({reinterpret_cast<const Sigil::ui8_t*>(Passphrase.data()), Passphrase.size()}));
      return secret;
    };
  }
};

TEST(PrivateKey, PlainOnesAreReadInBothForms) {
  const auto leaf = Certificates(testsupport::SoundRecipes());
  for (const std::string& text : {InPKCS1("leaf"), testsupport::TestKeyPEM("leaf"), "a note\n" + InPKCS1("leaf")}) {
    LogCapture log;
    Person person{"unasked"};
    std::optional<Sigil::PrivateKey> key;
    ASSERT_EQ(Read(text, person.Source(), key, log), Ferro::RESULT_OK);
    EXPECT_TRUE(key->Matches(leaf[0]));
    EXPECT_FALSE(key->Matches(leaf[1]));
    EXPECT_EQ(person.Asked, 0);
    EXPECT_EQ(log.Text(), "");
  }
}

TEST(PrivateKey, EncryptedOnesAskOnceForTheirPassphrase) {
  for (const bool is_pkcs8 : {false, true}) {
    const std::string text = Encrypted("leaf", "correct horse", is_pkcs8);
    LogCapture log;
    std::optional<Sigil::PrivateKey> key;
    Person person{"correct horse"};
    EXPECT_EQ(Read(text, person.Source(), key, log), Ferro::RESULT_OK);
    EXPECT_TRUE(key);
    EXPECT_EQ(person.Asked, 1);
    key.reset();
    Person stranger{"wrong"};
    EXPECT_EQ(Read(text, stranger.Source(), key, log), Sigil::RESULT_SG_PASSPHRASE);
    EXPECT_EQ(stranger.Asked, 1);
    EXPECT_EQ(Read(text, {}, key, log), Sigil::RESULT_SG_PASSPHRASE);
    EXPECT_EQ(Read(
                  text, [] { return std::optional<Sigil::SecretBytes>(); }, key, log),
              Sigil::RESULT_SG_PASSPHRASE);
    Person talker{std::string(5000, 'x')};
    EXPECT_EQ(Read(text, talker.Source(), key, log), Sigil::RESULT_SG_PASSPHRASE);
    EXPECT_FALSE(key);
    for (const std::string& line : log.Lines())
      EXPECT_EQ(line, "Private key refused: its passphrase is missing or wrong\n");
  }
}

TEST(PrivateKey, OthersAreRefusedWithoutAWordOfWhatWasRead) {
  std::string damaged = InPKCS1("leaf");
  damaged[200] = '!';
  const std::string none = "Private key refused: it is no private key in PEM form\n";
  const std::string other = "Private key refused: it is no RSA key of 2048 bits\n";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", none},
      {"hello", none},
      {damaged, none},
      {Certificates(testsupport::SoundRecipes())[0].PEM(), none},
      {testsupport::TestKeyPEM("ec-leaf"), other},
      {testsupport::TestKeyPEM("rsa1024-leaf"), other},
      {std::string(65'537, ' '), "Private key refused: the text is longer than 65536 bytes\n"}};
  for (const auto& [text, message] : cases) {
    LogCapture log;
    std::optional<Sigil::PrivateKey> key;
    EXPECT_EQ(Read(text, {}, key, log), Sigil::RESULT_SG_PRIVATE_KEY);
    EXPECT_EQ(log.Text(), message);
    EXPECT_FALSE(key);
  }
}

TEST(PrivateKey, FilesAreReadAndNamedWhereTheyCannotBe) {
  const testsupport::TemporaryFolder folder;
  LogCapture log;
  std::optional<Sigil::PrivateKey> key;
  EXPECT_EQ(Sigil::PrivateKey::FromFile(folder.Write("a.pem", InPKCS1("leaf")), {}, key, log), Ferro::RESULT_OK);
  EXPECT_TRUE(key);
  const std::string missing = folder.Path("b.pem");
  EXPECT_EQ(Sigil::PrivateKey::FromFile(missing, {}, key, log), Ferro::RESULT_NOT_FOUND);
  const std::string large = folder.Write("c.pem", std::string(65'537, ' '));
  EXPECT_EQ(Sigil::PrivateKey::FromFile(large, {}, key, log), Ferro::RESULT_TOOLARGE);
  EXPECT_EQ(log.Text(), missing + ": The requested item was not found.\n" + large +
                            ": The data is larger than the limit set for it.\n");
}

/// The flags of the mapping that an address lies in (proc_pid_smaps(5)).
std::string FlagsOfMemoryAt(const void* address) {
  std::ifstream maps("/proc/self/smaps");
  bool is_inside = false;
  for (std::string line; std::getline(maps, line);) {
    unsigned long begin = 0;
    unsigned long end = 0;
    if (std::sscanf(line.c_str(), "%lx-%lx ", &begin, &end) == 2)
      is_inside = reinterpret_cast<unsigned long>(address) >= begin && reinterpret_cast<unsigned long>(address) < end;
    if (is_inside && line.starts_with("VmFlags:")) return line + ' ';
  }
  return {};
}

TEST(SecretBytes, LieInMemoryThatNoCoreDumpHas) {
  Sigil::SecretBytes secret;
  ASSERT_TRUE(secret.Resize(16));
  EXPECT_NE(FlagsOfMemoryAt(secret.Bytes().data()).find(" dd "), std::string::npos);
}

TEST(SecretBytes, AreMovedAndCutShort) {
  const std::vector<Sigil::ui8_t> bytes = {1, 2, 3, 4};
  Sigil::SecretBytes secret;
  ASSERT_TRUE(secret.Assign(bytes));
  const Sigil::ui8_t* where = secret.Bytes().data();
  Sigil::SecretBytes other = std::move(secret);
  EXPECT_EQ(secret.Size(), 0U);
  EXPECT_EQ(other.Bytes().data(), where);
  other.Truncate(2);
  EXPECT_EQ(other.Size(), 2U);
  EXPECT_EQ(where[1], 2);
  EXPECT_EQ(where[2], 0);  // wiped
}

TEST(SecretBytes, MoreThanThereIsIsNotGiven) {
  Sigil::SecretBytes secret;
  EXPECT_FALSE(secret.Resize(size_t{64} * 1024 * 1024));
  EXPECT_EQ(secret.Size(), 0U);
}

}  // namespace
