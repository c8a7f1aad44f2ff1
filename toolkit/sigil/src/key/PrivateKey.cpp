// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/PrivateKey.h>

#include "base/SecretHeap.h"
#include "certificate/CertificateState.h"
#include "key/PrivateKeyState.h"

#include <Ferro/FileReader.h>

#include <openssl/pem.h>

#include <algorithm>

namespace Sigil {
namespace {

constexpr size_t MaxKeyFile = 65'536;

/// What PEM_read_bio_PrivateKey hands to its callback.
struct PassphraseRequest {
  const PassphraseSource& Source;
  bool WasAsked = false;
};

int GivePassphrase(char* buffer, int size, int /*is_writing*/, void* user) {
  auto& request = *static_cast<PassphraseRequest*>(user);
  // A key is decoded in several ways, each of which may ask again; a person is asked once.
  if (std::exchange(request.WasAsked, true) || !request.Source) return -1;
  const std::optional<SecretBytes> passphrase = request.Source();
  if (!passphrase || passphrase->Size() > static_cast<size_t>(size)) return -1;
  std::ranges::copy(passphrase->Bytes(), buffer);
  return static_cast<int>(passphrase->Size());
}

Result_t Refuse(Ferro::ILogSink& log, const char* reason, Result_t result) {
  ERR_clear_error();
  log.Error("Private key refused: %s\n", reason);
  return result;
}

}  // namespace

Result_t PrivateKey::FromPEM(std::span<const ui8_t> text, const PassphraseSource& passphrase,
                             std::optional<PrivateKey>& out, Ferro::ILogSink& log) {
  if (text.size() > MaxKeyFile) return Refuse(log, "the text is longer than 65536 bytes", RESULT_SG_PRIVATE_KEY);
  PrepareSecretHeap();
  const BIOPointer bio(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
  PassphraseRequest request{passphrase};
  auto state = std::make_shared<PrivateKeyState>();
  state->Key.reset(PEM_read_bio_PrivateKey(bio.get(), nullptr, GivePassphrase, &request));
  if (!state->Key && request.WasAsked) return Refuse(log, "its passphrase is missing or wrong", RESULT_SG_PASSPHRASE);
  if (!state->Key) return Refuse(log, "it is no private key in PEM form", RESULT_SG_PRIVATE_KEY);
  if (EVP_PKEY_get_base_id(state->Key.get()) != EVP_PKEY_RSA || EVP_PKEY_get_bits(state->Key.get()) != 2048)
    return Refuse(log, "it is no RSA key of 2048 bits", RESULT_SG_PRIVATE_KEY);
  ERR_clear_error();
  out = PrivateKeyState::Wrap(std::move(state));
  return Ferro::RESULT_OK;
}

Result_t PrivateKey::FromFile(const std::string& filename, const PassphraseSource& passphrase,
                              std::optional<PrivateKey>& out, Ferro::ILogSink& log) {
  Ferro::FileReader reader;
  SecretBytes text;
  Result_t result = reader.OpenRead(filename);
  if (result.Success() && reader.Size() > MaxKeyFile) result = Ferro::RESULT_TOOLARGE;
  if (result.Success() && !text.Resize(static_cast<size_t>(reader.Size()))) result = Ferro::RESULT_ALLOC;
  if (result.Success()) result = reader.ReadAt(0, text.Bytes());
  if (result.Success()) result = FromPEM(text.Bytes(), passphrase, out, log);
  if (result.Failure()) log.Error("%s: %s\n", filename.c_str(), result.Label());
  return result;
}

bool PrivateKey::Matches(const Certificate& certificate) const {
  const EVP_PKEY* key = X509_get0_pubkey(CertificateState::X509Of(certificate));
  return key != nullptr && EVP_PKEY_eq(m_State->Key.get(), key) == 1;
}

}  // namespace Sigil
