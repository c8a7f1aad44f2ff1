// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Random.h>
#include <Ferro/UUID.h>
#include <Ferro/UniqueList.h>

#include <algorithm>
#include <set>

namespace Ferro {

namespace {

constexpr std::string_view s_URNPrefix = "urn:uuid:";

bool StartsWithURNPrefix(std::string_view text) {
  const auto same = [](char expected, char c) { return expected == (c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c); };
  return text.size() >= s_URNPrefix.size() && std::equal(s_URNPrefix.begin(), s_URNPrefix.end(), text.begin(), same);
}

bool HasUUIDShape(std::string_view text) {
  if (text.find('-') == std::string_view::npos) return true;
  return text.size() == 36 && std::count(text.begin(), text.end(), '-') == 4 && text[8] == '-' && text[13] == '-' &&
         text[18] == '-' && text[23] == '-';
}

}  // namespace

UUID UUID::Random() {
  std::array<ui8_t, Size> bytes{};
  if (FillRandom(bytes).Failure()) return {};
  bytes[6] = static_cast<ui8_t>((bytes[6] & 0x0f) | 0x40);  // version 4
  bytes[8] = static_cast<ui8_t>((bytes[8] & 0x3f) | 0x80);  // the variant of RFC 4122
  return UUID(bytes);
}

std::optional<UUID> UUID::FromHex(std::string_view text) {
  UUID id;
  if (!HasUUIDShape(text) || !id.DecodeHex(text)) return std::nullopt;
  return id;
}

std::optional<UUID> UUID::FromURN(std::string_view text) {
  if (!StartsWithURNPrefix(text)) return std::nullopt;
  return FromHex(text.substr(s_URNPrefix.size()));
}

std::string UUID::EncodeString() const {
  return bin2UUIDhex(Bytes());
}

std::string UUID::EncodeURN() const {
  return std::string(s_URNPrefix) + EncodeString();
}

template class Identifier<16>;
template class Identifier<20>;
template class Identifier<32>;

void create_unique_list(const std::list<UUID>& in, std::list<UUID>& out) {
  std::set<UUID> seen;
  for (const UUID& id : in)
    if (seen.insert(id).second) out.push_back(id);
}

}  // namespace Ferro
