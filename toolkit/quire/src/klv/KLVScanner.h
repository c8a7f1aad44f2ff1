// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/MXF/KLV.h>

#include <Ferro/FileReader.h>

#include <optional>
#include <vector>

namespace QUIRE::MXF {

/// Reads the keys and lengths of KLVs one after another: with a small read for each where they are long, from a large
/// block where they are short.
class KLVScanner {
 public:
  explicit KLVScanner(const Ferro::FileReader& file) : m_File(file) {}

  /// The KLV at `offset` when there is a proper one that ends by `limit`, at most the file's size. Logs nothing.
  [[nodiscard]] std::optional<KLVPacket> At(ui64_t offset, ui64_t limit);
  /// The first offset from `offset` on where no fill item begins.
  [[nodiscard]] ui64_t SkipFill(ui64_t offset, ui64_t limit);
  /// What the last read returned; a scan that ends early is to look.
  [[nodiscard]] Result_t LastRead() const { return m_LastRead; }

 private:
  const Ferro::FileReader& m_File;
  std::vector<ui8_t> m_Block;
  ui64_t m_BlockOffset = 0;
  ui64_t m_LastOffset = ~ui64_t{0};  // none yet
  Result_t m_LastRead = Ferro::RESULT_OK;
};

}  // namespace QUIRE::MXF
