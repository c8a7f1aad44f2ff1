// SPDX-License-Identifier: BSD-3-Clause
#include "SampleSeed.h"

#include <algorithm>
#include <array>

namespace Tool {

namespace {

constexpr Ferro::i64_t FirstDate = 1'767'225'600'000;  // 2026-01-01T00:00:00Z

}  // namespace

SampleSeed::SampleSeed(const SampleOptions& options)
    : m_Text(std::to_string(options.Seed) + (options.Flavour == Cairn::DFT_Interop ? "/interop" : "/smpte")) {
  for (const Ferro::ui32_t number : {options.Seconds, options.Rate, options.Width, options.Height, options.Channels})
    m_Text += '/' + std::to_string(number);
  if (options.Still) m_Text += "/still";
}

Ferro::SHA1 SampleSeed::Digest(const std::string& name) const {
  return Ferro::DigestText(m_Text + '/' + name);
}

Ferro::UUID SampleSeed::ID(const std::string& name) const {
  std::array<Ferro::ui8_t, Ferro::UUID::Size> bytes{};
  std::copy_n(Digest("id/" + name).Value(), bytes.size(), bytes.begin());
  bytes[6] = static_cast<Ferro::ui8_t>((bytes[6] & 0x0f) | 0x50);
  bytes[8] = static_cast<Ferro::ui8_t>((bytes[8] & 0x3f) | 0x80);
  return Ferro::UUID(bytes);
}

QUIRE::CipherBlock SampleSeed::Key(const std::string& name) const {
  QUIRE::CipherBlock key{};
  std::copy_n(Digest("key/" + name).Value(), key.size(), key.begin());
  return key;
}

Ferro::Timestamp SampleSeed::Date() const {
  const Ferro::SHA1 digest = Digest("date");
  return Ferro::Timestamp(FirstDate + (digest.Value()[0] * 256 + digest.Value()[1]) * Ferro::i64_t{60'000});
}

}  // namespace Tool
