// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/FrameBuffer.h>

#include <Ferro/Assert.h>

#include <algorithm>
#include <new>
#include <utility>

namespace QUIRE {

FrameBuffer::~FrameBuffer() {
  delete[] m_Data;
}

Result_t FrameBuffer::Capacity(ui32_t bytes) {
  if (bytes == m_Capacity) return Ferro::RESULT_OK;
  ui8_t* data = bytes == 0 ? nullptr : new (std::nothrow) ui8_t[bytes];
  if (bytes != 0 && data == nullptr) return Ferro::RESULT_ALLOC;
  delete[] std::exchange(m_Data, data);
  m_Capacity = bytes;
  Clear();
  return Ferro::RESULT_OK;
}

void FrameBuffer::Size(ui32_t bytes) {
  FERRO_ASSERT(bytes <= m_Capacity);
  m_Size = bytes;
}

void FrameBuffer::IntegrityPack(std::span<const ui8_t> pack) {
  m_IntegrityPackSize = std::min(pack.size(), m_IntegrityPack.size());
  std::copy_n(pack.begin(), m_IntegrityPackSize, m_IntegrityPack.begin());
}

void FrameBuffer::Clear() {
  m_Size = 0;
  m_FrameNumber = NoFrame;
  m_SourceLength = 0;
  m_PlaintextOffset = 0;
  m_IntegrityPackSize = 0;
}

}  // namespace QUIRE
