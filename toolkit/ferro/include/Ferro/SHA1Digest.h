// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/FunctionRef.h>
#include <Ferro/Result.h>
#include <Ferro/Types.h>
#include <Ferro/UUID.h>
#include <Ferro/mem_ptr.h>

#include <span>
#include <string>
#include <string_view>

namespace Ferro {

/// A SHA-1 digest computed in pieces (FIPS 180-4). One thread at a time.
class FERRO_API SHA1Digest {
 public:
  SHA1Digest();
  ~SHA1Digest();
  SHA1Digest(SHA1Digest&&) noexcept;
  SHA1Digest& operator=(SHA1Digest&&) noexcept;

  void Update(std::span<const ui8_t> bytes);
  void Update(std::string_view text);
  /// The digest of all bytes so far, without value where memory ran out meanwhile; the object then starts anew.
  [[nodiscard]] SHA1 Finish();

 private:
  struct State;
  mem_ptr<State> m_State;
};

/// The digest of a text; without value where memory ran out.
[[nodiscard]] FERRO_API SHA1 DigestText(std::string_view text);
/// The digest of a file's bytes. `progress`, when given, is called after each piece with the bytes done so far; false
/// from it ends the operation with RESULT_CANCELLED. RESULT_ALLOC where memory ran out; otherwise as FileReader.
[[nodiscard]] FERRO_API Result_t DigestFile(const std::string& filename, SHA1& out,
                                            FunctionRef<bool(fsize_t)> progress = {});

}  // namespace Ferro
