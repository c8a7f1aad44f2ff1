// SPDX-License-Identifier: BSD-3-Clause
#include "KLVScanner.h"

#include <Ferro/CheckedMath.h>

#include <algorithm>

namespace QUIRE::MXF {
namespace {

constexpr size_t HeaderRead = 32;    // holds any key and length
constexpr size_t BlockRead = 65536;  // for KLVs that follow each other closely
constexpr ui64_t CloseDistance = 4096;

}  // namespace

// Elements as long as pictures are far apart: of each only key and length are read. Short ones share a block.
std::optional<KLVPacket> KLVScanner::At(ui64_t offset, ui64_t limit) {
  limit = std::min<ui64_t>(limit, m_File.Size());
  if (offset >= limit) return std::nullopt;
  const ui64_t wanted = std::min<ui64_t>(HeaderRead, m_File.Size() - offset);
  if (offset < m_BlockOffset || !Ferro::RangeFits<ui64_t>(offset - m_BlockOffset, wanted, m_Block.size())) {
    const bool close = offset >= m_LastOffset && offset - m_LastOffset <= CloseDistance;
    m_Block.resize(std::min<ui64_t>(close ? BlockRead : HeaderRead, m_File.Size() - offset));
    m_BlockOffset = offset;
    size_t count = 0;
    m_LastRead = m_File.ReadUpTo(offset, m_Block, count);
    m_Block.resize(m_LastRead.Success() ? count : 0);
  }
  m_LastOffset = offset;
  if (offset - m_BlockOffset > m_Block.size()) return std::nullopt;
  return ParseKLV(std::span<const ui8_t>(m_Block).subspan(offset - m_BlockOffset), offset, limit);
}

ui64_t KLVScanner::SkipFill(ui64_t offset, ui64_t limit) {
  for (;;) {
    const auto packet = At(offset, limit);
    if (!packet || !IsFillKey(packet->Key)) return offset;
    offset = packet->End();
  }
}

}  // namespace QUIRE::MXF
