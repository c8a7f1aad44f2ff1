// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/MDD.h>
#include <QUIRE/Types.h>
#include <QUIRE/UL.h>

#include <array>
#include <span>

namespace QUIRE {

/// What a dictionary knows of one entry.
struct MDDEntry {
  MDD_t Id;
  std::array<ui8_t, 16> Label;
  /// The static local tag of a property (ST 377-1), 0 where it has none and for everything that is not a property.
  ui16_t Tag;
  /// The entry's name, without "MDD_".
  const char* Name;
};

/// The universal labels of MXF by entry, and back. Dictionaries are constant and may be used by any thread.
class QUIRE_API Dictionary {
 public:
  [[nodiscard]] const MDDEntry& Type(MDD_t entry) const;
  /// The entry's universal label.
  [[nodiscard]] UL ul(MDD_t entry) const;
  /// True when `label` is the entry's, whatever its registry version (byte 8).
  [[nodiscard]] bool Is(const UL& label, MDD_t entry) const;
  /// The first entry whose label is equal to `label` but for the registry version (byte 8); null when there is none.
  [[nodiscard]] const MDDEntry* FindUL(std::span<const ui8_t, 16> label) const;
  /// The first entry with this static local tag; null for tags without one.
  [[nodiscard]] const MDDEntry* FindTag(ui16_t tag) const;

  Dictionary(const Dictionary&) = delete;
  Dictionary& operator=(const Dictionary&) = delete;

 private:
  struct Override {
    MDD_t Id;
    ui8_t Version;
  };
  explicit Dictionary(std::span<const Override> overrides);
  friend QUIRE_API const Dictionary& DefaultSMPTEDict();
  friend QUIRE_API const Dictionary& DefaultInteropDict();

  std::array<MDDEntry, MDD_Max> m_Entries;
  std::array<ui16_t, MDD_Max> m_ByLabel;  // entries ordered by label with byte 8 cleared
};

/// The labels of track files as SMPTE standardised them.
[[nodiscard]] QUIRE_API const Dictionary& DefaultSMPTEDict();
/// The labels of Interop track files: the same, except for the registry version of the operational pattern (01) and of
/// the encrypted triplet's key (07).
[[nodiscard]] QUIRE_API const Dictionary& DefaultInteropDict();

}  // namespace QUIRE
