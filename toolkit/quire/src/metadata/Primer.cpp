// SPDX-License-Identifier: BSD-3-Clause
#include "base/BigEndian.h"
#include "base/FormatError.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/KLV.h>
#include <QUIRE/MXF/Primer.h>

#include <algorithm>

namespace QUIRE::MXF {
namespace {

// The value (ST 377-1, 9.2): number of entries and bytes of each (4 bytes each), then the entries: tag (2), label (16).
constexpr ui64_t EntryLength = 18;
constexpr ui64_t MaxEntries = 65536;
constexpr ui16_t FirstDynamicTag = 0x8000;

// Writers disagree on the version byte of labels; it tells no two properties apart.
Primer::Label_t WithoutVersion(Primer::Label_t label) {
  label[7] = 0;
  return label;
}

}  // namespace

const Primer::Label_t* Primer::Find(ui16_t tag) const {
  const auto found = m_ByTag.find(tag);
  return found == m_ByTag.end() ? nullptr : &m_Entries[found->second].Label;
}

ui16_t Primer::TagFor(MDD_t entry) {
  const MDDEntry& type = DefaultSMPTEDict().Type(entry);
  if (const auto listed = m_ByLabel.find(WithoutVersion(type.Label)); listed != m_ByLabel.end()) return listed->second;
  if (type.Tag != 0 && Add(type.Tag, type.Label)) return type.Tag;
  while (m_NextDynamicTag >= FirstDynamicTag) {
    const ui16_t tag = m_NextDynamicTag--;
    if (Add(tag, type.Label)) return tag;
  }
  return 0;
}

bool Primer::Add(ui16_t tag, const Label_t& label) {
  if (m_ByTag.contains(tag)) return false;
  m_Entries.push_back({tag, label});  // first: the maps name its place
  m_ByTag.emplace(tag, m_Entries.size() - 1);
  m_ByLabel.emplace(WithoutVersion(label), tag);
  return true;
}

void Primer::Write(std::vector<ui8_t>& out) const {
  AppendKL(out, DefaultSMPTEDict().ul(MDD_Primer), 8 + EntryLength * m_Entries.size());
  AppendBE(out, static_cast<ui32_t>(m_Entries.size()));
  AppendBE(out, static_cast<ui32_t>(EntryLength));
  for (const Entry& entry : m_Entries) {
    AppendBE(out, entry.Tag);
    AppendBytes(out, entry.Label);
  }
}

Result_t Primer::Read(std::span<const ui8_t> value, ui64_t offset) {
  if (value.size() < 8) return FormatError(offset, "primer pack of only %zu bytes", value.size());
  const ui64_t count = LoadBE<ui32_t>(value.data());
  const ui64_t size = LoadBE<ui32_t>(value.data() + 4);
  if (count != 0 && (size < EntryLength || count > (value.size() - 8) / size || count > MaxEntries))
    return FormatError(offset, "primer pack with %llu entries of %llu bytes beyond its end",
                       static_cast<unsigned long long>(count), static_cast<unsigned long long>(size));
  *this = Primer();  // now, so that two large ones never stand side by side
  for (ui64_t i = 0; i < count; ++i) {
    const ui8_t* entry = value.data() + 8 + i * size;
    Label_t label;
    std::copy_n(entry + 2, label.size(), label.begin());
    Add(LoadBE<ui16_t>(entry), label);
  }
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE::MXF
