// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Crypto.h>

#include <Ferro/UUID.h>

#include <string_view>

namespace QUIRE {

/// An endless row of identifiers that follow from a seed and a purpose: SHA-1 of seed, purpose and count (the
/// name-based form of RFC 4122, 4.3).
class IdentifierSource {
 public:
  /// `purpose` tells apart the rows of one seed; it must outlive the source.
  IdentifierSource(const Ferro::UUID& seed, std::string_view purpose) : m_Seed(seed), m_Purpose(purpose) {}

  /// The next identifier, version 5.
  [[nodiscard]] Ferro::UUID Next();
  /// The next sixteen bytes without the marks of an identifier.
  [[nodiscard]] CipherBlock NextBlock();

 private:
  Ferro::UUID m_Seed;
  std::string_view m_Purpose;
  ui64_t m_Count = 0;
};

}  // namespace QUIRE
