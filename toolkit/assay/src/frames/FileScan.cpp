// SPDX-License-Identifier: BSD-3-Clause
#include "FileScan.h"

#include <Ferro/Assert.h>

#include <algorithm>

namespace Assay {

using Ferro::RESULT_CANCELLED;
using Ferro::RESULT_OK;
using Ferro::Result_t;

namespace {

// What is read before it goes through the digest: less than the second-level cache holds.
constexpr size_t PieceSize = 256 * 1024;
// What lies between two pieces that are taken is read along with the second up to this length.
constexpr ui64_t MaxGap = 64 * 1024;

}  // namespace

FileScan::FileScan(bool with_digest, OnBytes progress) : m_Progress(progress), m_Buffer(PieceSize) {
  if (with_digest) m_Digest.emplace();
}

Result_t FileScan::Open(const std::string& path) {
  const Result_t result = m_File.OpenRead(path);
  if (result.Success()) m_File.AdviseSequential();
  return result;
}

// Reads on for `length` bytes, into the buffer from `at` on.
Result_t FileScan::Pass(size_t at, size_t length) {
  for (size_t done = 0; done < length;) {
    const auto piece = std::span(m_Buffer).subspan(at + done, std::min(PieceSize, length - done));
    const Result_t result = m_File.ReadAt(m_Passed, piece);
    if (result.Failure()) return result;
    m_Digest->Update(piece);
    m_Passed += piece.size();
    done += piece.size();
    if (!Report(m_Passed)) return RESULT_CANCELLED;
  }
  return RESULT_OK;
}

Result_t FileScan::PassUpTo(ui64_t offset) {
  while (m_Passed < offset) {
    const Result_t result = Pass(0, static_cast<size_t>(std::min<ui64_t>(PieceSize, offset - m_Passed)));
    if (result.Failure()) return result;
  }
  return RESULT_OK;
}

Result_t FileScan::Take(ui64_t offset, size_t length, std::span<const ui8_t>& bytes) {
  FERRO_ASSERT(length <= MaxPiece);
  if (offset > m_File.Size() || length > m_File.Size() - offset) return Ferro::RESULT_ENDOFFILE;
  const bool goes_on = m_Digest && offset >= m_Passed;
  if (goes_on && offset - m_Passed > MaxGap)
    if (const Result_t result = PassUpTo(offset); result.Failure()) return result;
  const size_t gap = goes_on ? static_cast<size_t>(offset - m_Passed) : 0;
  if (m_Buffer.size() < gap + length) m_Buffer.resize(gap + length);
  bytes = std::span<const ui8_t>(m_Buffer).subspan(gap, length);
  if (goes_on) return Pass(0, gap + length);

  const Result_t result = m_File.ReadAt(offset, std::span(m_Buffer).first(length));
  if (result.Failure()) return result;
  if (offset < m_Passed) m_ReadAgain += length;
  if (!m_Digest) m_Passed = std::max(m_Passed, offset + length);
  return Report(m_Passed) ? RESULT_OK : RESULT_CANCELLED;
}

Result_t FileScan::Finish(SHA1& digest) {
  FERRO_ASSERT(m_Digest);
  if (const Result_t result = PassUpTo(m_File.Size()); result.Failure()) return result;
  const SHA1 found = m_Digest->Finish();
  if (!found.HasValue()) return Ferro::RESULT_ALLOC;
  digest = found;
  return RESULT_OK;
}

}  // namespace Assay
