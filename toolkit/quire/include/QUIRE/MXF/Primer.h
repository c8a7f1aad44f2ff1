// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/MDD.h>
#include <QUIRE/Result.h>
#include <QUIRE/Types.h>
#include <QUIRE/UL.h>

#include <array>
#include <map>
#include <span>
#include <vector>

namespace QUIRE::MXF {

/// The primer pack: which property each local tag of a header partition stands for (ST 377-1, 9.2).
class QUIRE_API Primer {
 public:
  using Label_t = std::array<ui8_t, 16>;
  struct Entry {
    ui16_t Tag;
    Label_t Label;
  };

  /// The entries in stored order.
  [[nodiscard]] std::span<const Entry> Entries() const { return m_Entries; }
  /// The label a tag stands for, or null when the primer does not list it.
  [[nodiscard]] const Label_t* Find(ui16_t tag) const;
  /// The tag of a dictionary entry: the one listed for its label, else its static tag, else the next free dynamic one,
  /// counted downwards from 0xFFFF. What was not listed is listed from now on. 0 when no dynamic tag is free.
  [[nodiscard]] ui16_t TagFor(MDD_t entry);

  /// Bytes of the pack as Write appends it.
  [[nodiscard]] ui64_t ArchiveLength() const { return 28 + 18 * ui64_t(m_Entries.size()); }
  void Write(std::vector<ui8_t>& out) const;
  /// Reads the pack's value, which lies at `offset`; of entries with one tag the first counts. A pack that cannot be read
  /// leaves the primer as it was.
  /// @return RESULT_OK; RESULT_FORMAT with one log line.
  [[nodiscard]] Result_t Read(std::span<const ui8_t> value, ui64_t offset);

 private:
  bool Add(ui16_t tag, const Label_t& label);

  std::vector<Entry> m_Entries;
  std::map<ui16_t, size_t> m_ByTag;
  std::map<Label_t, ui16_t> m_ByLabel;  // byte 8 cleared
  ui16_t m_NextDynamicTag = 0xffff;
};

}  // namespace QUIRE::MXF
