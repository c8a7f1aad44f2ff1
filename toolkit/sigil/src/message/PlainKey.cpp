// SPDX-License-Identifier: BSD-3-Clause
#include "message/PlainKey.h"

#include <openssl/crypto.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace Sigil {
namespace {

constexpr std::array<ui8_t, 16> StructureID = {0xf1, 0xdc, 0x12, 0x44, 0x60, 0x16, 0x9a, 0x0e,
                                               0x85, 0xbc, 0x30, 0x06, 0x42, 0xf8, 0x66, 0xab};
constexpr size_t SignerAt = 16;
constexpr size_t CompositionAt = 36;
constexpr size_t TypeAt = 52;
constexpr size_t TypeSize = 4;
// Counted from the end: what comes before has two lengths.
constexpr size_t IDBeforeEnd = 82;
constexpr size_t NotBeforeBeforeEnd = 66;
constexpr size_t NotAfterBeforeEnd = 41;
constexpr size_t TimeSize = 25;
constexpr size_t KeyBeforeEnd = 16;

std::span<const ui8_t> BytesOf(std::string_view text) {
  return {reinterpret_cast<const ui8_t*>(text.data()), text.size()};
}

unsigned IsSame(std::span<const ui8_t> plain, size_t at, std::span<const ui8_t> expected) {
  return CRYPTO_memcmp(plain.data() + at, expected.data(), expected.size()) == 0 ? 1U : 0U;
}

/// Times agree when they are one moment, however they are written.
unsigned IsSameTime(std::span<const ui8_t> plain, size_t at, const Timestamp& expected) {
  Timestamp time;
  const std::string_view text(reinterpret_cast<const char*>(plain.data() + at), TimeSize);
  return time.DecodeString(text) && time == expected ? 1U : 0U;
}

void Put(std::span<ui8_t> out, size_t at, std::span<const ui8_t> bytes) {
  std::ranges::copy(bytes, out.begin() + static_cast<ptrdiff_t>(at));
}

}  // namespace

void PlainKey::Write(std::span<const ui8_t> key, std::span<ui8_t> out) const {
  Put(out, 0, StructureID);
  Put(out, SignerAt, Signer.Bytes());
  Put(out, CompositionAt, CompositionID.Bytes());
  Put(out, TypeAt, BytesOf(Entry.Type));
  Put(out, TypedSize - IDBeforeEnd, Entry.ID.Bytes());
  Put(out, TypedSize - NotBeforeBeforeEnd, BytesOf(NotBefore.EncodeString()));
  Put(out, TypedSize - NotAfterBeforeEnd, BytesOf(NotAfter.EncodeString()));
  Put(out, TypedSize - KeyBeforeEnd, key);
}

bool PlainKey::AgreesWith(std::span<const ui8_t> plain) const {
  unsigned agrees = IsSame(plain, 0, StructureID);
  agrees &= IsSame(plain, SignerAt, Signer.Bytes());
  agrees &= IsSame(plain, CompositionAt, CompositionID.Bytes());
  agrees &= IsSameTime(plain, plain.size() - NotBeforeBeforeEnd, NotBefore);
  agrees &= IsSameTime(plain, plain.size() - NotAfterBeforeEnd, NotAfter);
  const size_t type_size = plain.size() == TypedSize ? TypeSize : 0;
  agrees &= Entry.Type.size() == type_size ? IsSame(plain, TypeAt, BytesOf(Entry.Type)) : 0U;
  return agrees == 1;
}

UUID PlainKey::IDOf(std::span<const ui8_t> plain) {
  return UUID(plain.subspan(plain.size() - IDBeforeEnd).first<16>());
}

std::span<const ui8_t> PlainKey::KeyOf(std::span<const ui8_t> plain) {
  return plain.last(KeyBeforeEnd);
}

}  // namespace Sigil
