// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Assert.h>
#include <Ferro/FileReader.h>
#include <Ferro/SHA1Digest.h>

#include <openssl/evp.h>

#include <array>
#include <memory>
#include <vector>

namespace Ferro {
namespace {

constexpr size_t s_PieceSize = 1 << 20;

struct ContextDeleter {
  void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

}  // namespace

struct SHA1Digest::State {
  State() { Restart(); }

  // A context that could not be made is tried again: it fails for want of memory alone.
  void Restart() {
    if (Context == nullptr) Context.reset(EVP_MD_CTX_new());
    IsWhole = Context != nullptr && EVP_DigestInit_ex(Context.get(), EVP_sha1(), nullptr) == 1;
  }

  std::unique_ptr<EVP_MD_CTX, ContextDeleter> Context;
  bool IsWhole = false;  // all bytes so far were taken
};

SHA1Digest::SHA1Digest() : m_State(new State) {}
SHA1Digest::~SHA1Digest() = default;
SHA1Digest::SHA1Digest(SHA1Digest&&) noexcept = default;
SHA1Digest& SHA1Digest::operator=(SHA1Digest&&) noexcept = default;

void SHA1Digest::Update(std::span<const ui8_t> bytes) {
  State& state = *m_State;
  state.IsWhole = state.IsWhole && EVP_DigestUpdate(state.Context.get(), bytes.data(), bytes.size()) == 1;
}

void SHA1Digest::Update(std::string_view text) {
  Update(std::span(reinterpret_cast<const ui8_t*>(text.data()), text.size()));
}

SHA1 SHA1Digest::Finish() {
  std::array<ui8_t, SHA1::Size> bytes{};
  unsigned length = 0;
  const bool is_whole = m_State->IsWhole && EVP_DigestFinal_ex(m_State->Context.get(), bytes.data(), &length) == 1;
  FERRO_ASSERT(!is_whole || length == bytes.size());
  m_State->Restart();
  return is_whole ? SHA1(bytes) : SHA1();
}

SHA1 DigestText(std::string_view text) {
  SHA1Digest digest;
  digest.Update(text);
  return digest.Finish();
}

Result_t DigestFile(const std::string& filename, SHA1& out, FunctionRef<bool(fsize_t)> progress) {
  FileReader reader;
  if (const Result_t result = reader.OpenRead(filename); result.Failure()) return result;
  reader.AdviseSequential();

  SHA1Digest digest;
  std::vector<ui8_t> piece(s_PieceSize);
  fsize_t done = 0;
  for (;;) {
    size_t count = 0;
    if (const Result_t result = reader.ReadUpTo(done, piece, count); result.Failure()) return result;
    if (count == 0) break;
    digest.Update(std::span(piece).first(count));
    done += count;
    if (progress && !progress(done)) return RESULT_CANCELLED;
  }
  const SHA1 found = digest.Finish();
  if (!found.HasValue()) return RESULT_ALLOC;
  out = found;
  return RESULT_OK;
}

}  // namespace Ferro
