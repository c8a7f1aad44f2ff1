// SPDX-License-Identifier: BSD-3-Clause
#include "IdentifierSource.h"

#include <Ferro/SHA1Digest.h>

#include <algorithm>
#include <array>
#include <new>

namespace QUIRE {

CipherBlock IdentifierSource::NextBlock() {
  std::array<ui8_t, 8> count{};
  for (size_t i = 0; i < count.size(); ++i) count[i] = static_cast<ui8_t>(m_Count >> (56 - 8 * i));
  ++m_Count;

  Ferro::SHA1Digest digest;
  digest.Update(m_Seed.Bytes());
  digest.Update(m_Purpose);
  digest.Update(count);
  const Ferro::SHA1 value = digest.Finish();
  if (!value.HasValue()) throw std::bad_alloc();  // not the same identifier over and over
  CipherBlock block{};
  std::copy_n(value.Value(), block.size(), block.begin());
  return block;
}

Ferro::UUID IdentifierSource::Next() {
  CipherBlock block = NextBlock();
  block[6] = static_cast<ui8_t>((block[6] & 0x0f) | 0x50);  // version 5
  block[8] = static_cast<ui8_t>((block[8] & 0x3f) | 0x80);  // RFC 4122 variant
  return Ferro::UUID(block);
}

}  // namespace QUIRE
