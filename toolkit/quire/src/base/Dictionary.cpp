// SPDX-License-Identifier: BSD-3-Clause
#include "DictionaryTable.h"

#include <QUIRE/Dictionary.h>

#include <Ferro/Assert.h>

#include <algorithm>
#include <cstring>

namespace QUIRE {
namespace {

constexpr size_t VersionByte = 7;

// Orders labels without their version: the bytes before it, then those after it.
int CompareLabels(const ui8_t* lhs, const ui8_t* rhs) {
  const int head = std::memcmp(lhs, rhs, VersionByte);
  return head != 0 ? head : std::memcmp(lhs + VersionByte + 1, rhs + VersionByte + 1, 16 - VersionByte - 1);
}

}  // namespace

Dictionary::Dictionary(std::span<const Override> overrides) {
  std::copy(std::begin(DictionaryTable), std::end(DictionaryTable), m_Entries.begin());
  for (const Override& change : overrides) m_Entries[change.Id].Label[VersionByte] = change.Version;
  for (ui16_t i = 0; i < MDD_Max; ++i) m_ByLabel[i] = i;
  std::stable_sort(m_ByLabel.begin(), m_ByLabel.end(), [this](ui16_t lhs, ui16_t rhs) {
    return CompareLabels(m_Entries[lhs].Label.data(), m_Entries[rhs].Label.data()) < 0;
  });
}

const MDDEntry& Dictionary::Type(MDD_t entry) const {
  FERRO_ASSERT(entry < MDD_Max);
  return m_Entries[entry];
}

UL Dictionary::ul(MDD_t entry) const {
  return UL(Type(entry).Label);
}

bool Dictionary::Is(const UL& label, MDD_t entry) const {
  return CompareLabels(label.Value(), Type(entry).Label.data()) == 0;
}

const MDDEntry* Dictionary::FindUL(std::span<const ui8_t, 16> label) const {
  const auto found = std::lower_bound(m_ByLabel.begin(), m_ByLabel.end(), label, [this](ui16_t entry, auto wanted) {
    return CompareLabels(m_Entries[entry].Label.data(), wanted.data()) < 0;
  });
  if (found == m_ByLabel.end() || CompareLabels(m_Entries[*found].Label.data(), label.data()) != 0) return nullptr;
  return &m_Entries[*found];
}

const MDDEntry* Dictionary::FindTag(ui16_t tag) const {
  if (tag == 0) return nullptr;
  const auto found =
      std::find_if(m_Entries.begin(), m_Entries.end(), [tag](const auto& entry) { return entry.Tag == tag; });
  return found == m_Entries.end() ? nullptr : &*found;
}

const Dictionary& DefaultSMPTEDict() {
  static const Dictionary dictionary({});
  return dictionary;
}

// Interop files bear some labels with the registry version of their time.
const Dictionary& DefaultInteropDict() {
  static const Dictionary::Override overrides[] = {{MDD_OPAtom, 1}, {MDD_CryptEssence, 7}};
  static const Dictionary dictionary(overrides);
  return dictionary;
}

}  // namespace QUIRE
