// SPDX-License-Identifier: BSD-3-Clause
// What signatures and keys cost, beside what they consist of; processor time, everything in memory, one thread.
//
//   signature   verifying a signed composition of 400 reels, beside parsing it twice and verifying one RSA signature:
//               the limit is that sum, with the parser's bare DOM parse as well as with Cairn's, which guards it
//   decryption  VerifyAndDecrypt of pictures of 1.3 MB, beside OpenSSL's HMAC-SHA1 and AES-128-CBC on the same bytes:
//               the limit is 0.9 of their speed
//
// Contestants take turns; a ratio is the median of the repetitions' ratios.
#include "BenchDocuments.h"
#include "CertificateMaker.h"

#include <Cairn/XMLLibraries.h>
#include <Cairn/XercesCallWrapper.h>
#include <Ferro/LogSink.h>
#include <QUIRE/FrameDecryption.h>
#include <Sigil/DocumentSignature.h>

#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/params.h>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<Ferro::ui8_t>;

void Require(bool is_so, const char* what) {
  if (is_so) return;
  std::fprintf(stderr, "SecurityBench: %s\n", what);
  std::exit(1);
}

template <class Work>
double SecondsOf(int times, const Work& work) {
  timespec from{};
  timespec to{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &from);
  for (int i = 0; i < times; ++i) work();
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &to);
  return (double(to.tv_sec - from.tv_sec) + 1e-9 * double(to.tv_nsec - from.tv_nsec)) / times;
}

double Median(std::vector<double> values) {
  std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
  return values[values.size() / 2];
}

std::string Signed(std::string xml) {
  std::string pem;
  for (const auto& certificate : testsupport::MakeCertificates(testsupport::SoundRecipes()))
    pem += testsupport::EncodePEM(certificate);
  const std::string key_text = testsupport::TestKeyPEM("leaf");
  Sigil::CertificateList chain;
  std::optional<Sigil::PrivateKey> key;
  const std::span key_bytes(reinterpret_cast<const Ferro::ui8_t*>(key_text.data()), key_text.size());
  Require(Sigil::ReadCertificates(pem, chain, Ferro::DefaultLogSink()).Success() &&
              Sigil::PrivateKey::FromPEM(key_bytes, {}, key, Ferro::DefaultLogSink()).Success() &&
              Sigil::SignDocument(xml, {*key, chain}, Ferro::DefaultLogSink()).Success(),
          "signing");
  return xml;
}

/// Hands the tree over and takes nothing from it: what parsing costs in Cairn's frame.
class Frame : public Cairn::XercesCallWrapper<int> {
 public:
  Cairn::Result_t SetupCaller(int*, Cairn::DCPFormat_t, Ferro::ILogSink&) override { return Ferro::RESULT_OK; }
};

void ParseBare(const std::string& xml) {
  xercesc::XercesDOMParser parser;
  parser.setDoNamespaces(true);
  const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(xml.data()), xml.size(), "bench");
  parser.parse(source);
  Require(parser.getErrorCount() == 0, "bare parsing");
}

/// One verification of an RSA signature of 2048 bits, its SHA-256 included.
class RSAVerification {
 public:
  RSAVerification() {
    EVP_MD_CTX* context = EVP_MD_CTX_new();
    size_t size = m_Signature.size();
    Require(EVP_DigestSignInit(context, nullptr, EVP_sha256(), nullptr, m_Key) == 1 &&
                EVP_DigestSign(context, m_Signature.data(), &size, m_Text.data(), m_Text.size()) == 1,
            "RSA signature");
    EVP_MD_CTX_free(context);
  }
  void operator()() const {
    EVP_MD_CTX* context = EVP_MD_CTX_new();
    Require(EVP_DigestVerifyInit(context, nullptr, EVP_sha256(), nullptr, m_Key) == 1 &&
                EVP_DigestVerify(context, m_Signature.data(), m_Signature.size(), m_Text.data(), m_Text.size()) == 1,
            "RSA verification");
    EVP_MD_CTX_free(context);
  }

 private:
  EVP_PKEY* m_Key = testsupport::TestKey("leaf");
  Bytes m_Text = Bytes(500, 1);
  Bytes m_Signature = Bytes(256);
};

void MeasureSignature() {
  constexpr int Repetitions = 41;
  const std::string xml = Signed(CompositionOf(400, Content::Encrypted));
  const RSAVerification verify_rsa;
  std::vector<double> bare;
  std::vector<double> parse;
  std::vector<double> rsa;
  std::vector<double> verify;
  std::vector<double> of_limit;
  std::vector<double> of_bare_limit;
  for (int i = 0; i < Repetitions; ++i) {
    parse.push_back(SecondsOf(1, [&] {
      int nothing = 0;
      Require(Cairn::DecodeXMLDocument<Frame>(xml, &nothing).Success(), "parsing");
    }));
    bare.push_back(SecondsOf(1, [&] { ParseBare(xml); }));
    rsa.push_back(SecondsOf(10, verify_rsa));
    verify.push_back(SecondsOf(1, [&] {
      Sigil::SignatureReport report;
      Require(Sigil::VerifySignature(xml, {}, report, Ferro::DefaultLogSink()).Success() &&
                  report.State == Sigil::SignatureState::Valid,
              "signature");
    }));
    of_limit.push_back(verify.back() / (2 * parse.back() + rsa.back()));
    of_bare_limit.push_back(verify.back() / (2 * bare.back() + rsa.back()));
  }
  std::printf(
      "signature   400 reels, %zu bytes: verify %.2f ms, parse %.2f ms, bare %.2f ms, RSA %.3f ms; of the limit %.2f, "
      "with a bare parse %.2f\n",
      xml.size(), 1e3 * Median(verify), 1e3 * Median(parse), 1e3 * Median(bare), 1e3 * Median(rsa), Median(of_limit),
      Median(of_bare_limit));
}

/// HMAC-SHA1 and AES-128-CBC as OpenSSL has them, one after the other.
class BareDecryption {
 public:
  explicit BareDecryption(std::span<const Ferro::ui8_t, 16> key) {
    char digest[] = "SHA1";
    const OSSL_PARAM parameters[] = {OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, digest, 0),
                                     OSSL_PARAM_construct_end()};
    Require(EVP_MAC_init(m_Mac, key.data(), key.size(), parameters) == 1 &&
                EVP_DecryptInit_ex2(m_Cipher, EVP_aes_128_cbc(), key.data(), nullptr, nullptr) == 1 &&
                EVP_CIPHER_CTX_set_padding(m_Cipher, 0) == 1,
            "OpenSSL");
  }
  void operator()(std::span<const Ferro::ui8_t> value, Bytes& out) {
    Ferro::ui8_t code[20];
    size_t code_size = 0;
    int size = 0;
    Require(EVP_MAC_init(m_Mac, nullptr, 0, nullptr) == 1 && EVP_MAC_update(m_Mac, value.data(), value.size()) == 1 &&
                EVP_MAC_final(m_Mac, code, &code_size, sizeof code) == 1 &&
                EVP_DecryptInit_ex2(m_Cipher, nullptr, nullptr, value.data(), nullptr) == 1 &&
                EVP_DecryptUpdate(m_Cipher, out.data(), &size, value.data() + 32, static_cast<int>(out.size())) == 1,
            "OpenSSL");
  }

 private:
  EVP_MAC_CTX* m_Mac = EVP_MAC_CTX_new(EVP_MAC_fetch(nullptr, "HMAC", nullptr));  // live as long as the program
  EVP_CIPHER_CTX* m_Cipher = EVP_CIPHER_CTX_new();
};

/// A frame as a reader delivers it without a key.
void MakeFrame(std::span<const Ferro::ui8_t, 16> key, size_t size, const QUIRE::TrackEncryption& track,
               QUIRE::FrameBuffer& frame) {
  Bytes source(size);
  for (size_t i = 0; i < size; ++i) source[i] = static_cast<Ferro::ui8_t>(i * 2654435761U >> 16);
  QUIRE::AESEncContext cipher;
  QUIRE::HMACContext integrity;
  std::array<Ferro::ui8_t, 20> code{};
  const auto length = static_cast<Ferro::ui32_t>(QUIRE::EncryptedSourceLength(size, 0));
  Require(frame.Capacity(length).Success(), "memory");
  frame.Size(length);
  frame.SourceLength(static_cast<Ferro::ui32_t>(size));
  Bytes pack = {0x83, 0, 0, 16};
  pack.insert(pack.end(), track.AssetID.Bytes().begin(), track.AssetID.Bytes().end());
  pack.insert(pack.end(), {0x83, 0, 0, 8, 0, 0, 0, 0, 0, 0, 0, 1, 0x83, 0, 0, 20});
  const std::array<Ferro::ui8_t, 16> ivec = {7};
  Require(cipher.InitKey(key).Success() && integrity.InitKey(key, track.LabelSet).Success() &&
              QUIRE::EncryptFrame(source, 0, ivec, cipher, {frame.Data(), length}).Success() &&
              integrity.Update({frame.Data(), length}).Success() && integrity.Update(pack).Success() &&
              integrity.Finalize().Success() && integrity.GetHMACValue(code).Success(),
          "encryption");
  pack.insert(pack.end(), code.begin(), code.end());
  frame.IntegrityPack(pack);
}

void MeasureDecryption() {
  constexpr int Repetitions = 101;
  constexpr int FramesEach = 8;
  constexpr size_t FrameSize = 1'300'000;
  const std::array<Ferro::ui8_t, 16> key = {1, 2, 3};
  QUIRE::TrackEncryption track;
  track.AssetID = NumberedID(1);
  track.IsEncrypted = track.UsesHMAC = true;
  track.LabelSet = QUIRE::LS_MXF_SMPTE;
  QUIRE::FrameBuffer frame;
  QUIRE::FrameContexts contexts;
  Require(contexts.InitKey(key, track.LabelSet).Success(), "key");
  MakeFrame(key, FrameSize, track, frame);
  const std::span<const Ferro::ui8_t> value(frame.RoData(), frame.Size());
  BareDecryption bare(key);
  Bytes out(FrameSize / 16 * 16 + 16);
  std::vector<double> ours;
  std::vector<double> theirs;
  std::vector<double> of_bare;
  for (int i = 0; i < Repetitions; ++i) {
    const auto measure_bare = [&] { theirs.push_back(SecondsOf(FramesEach, [&] { bare(value, out); })); };
    if (i % 2 == 0) measure_bare();
    ours.push_back(SecondsOf(
        FramesEach, [&] { Require(VerifyAndDecrypt(track, frame, 1, &contexts, out).Success(), "decryption"); }));
    if (i % 2 != 0) measure_bare();
    of_bare.push_back(theirs.back() / ours.back());
  }
  std::printf("decryption  %zu bytes: %.0f frames a second, OpenSSL alone %.0f; of its speed %.3f\n", FrameSize,
              1 / Median(ours), 1 / Median(theirs), Median(of_bare));
}

}  // namespace

int main() {
  Cairn::init_xml_libs();
  MeasureSignature();
  MeasureDecryption();
  return 0;
}
