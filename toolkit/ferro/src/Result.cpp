// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Result.h>

#include <atomic>
#include <ostream>

namespace Ferro {
namespace {

constinit std::atomic<const ResultTable*> s_FirstTable = nullptr;

constexpr Result_t s_Results[] = {
    RESULT_FALSE,     RESULT_OK,         RESULT_FAIL,     RESULT_PTR,      RESULT_NULL_STR,  RESULT_ALLOC,
    RESULT_PARAM,     RESULT_NOTIMPL,    RESULT_SMALLBUF, RESULT_INIT,     RESULT_NOT_FOUND, RESULT_NO_PERM,
    RESULT_STATE,     RESULT_CONFIG,     RESULT_FILEOPEN, RESULT_BADSEEK,  RESULT_READFAIL,  RESULT_WRITEFAIL,
    RESULT_ENDOFFILE, RESULT_FILEEXISTS, RESULT_NOTAFILE, RESULT_TOOLARGE, RESULT_CANCELLED, RESULT_UNKNOWN,
};

const ResultTable s_Table{s_Results};

}  // namespace

ResultTable::ResultTable(std::span<const Result_t> results) noexcept : m_Results(results), m_Next(s_FirstTable) {
  // Modules may be loaded while other threads look results up.
  while (!s_FirstTable.compare_exchange_weak(m_Next, this)) {
  }
}

const ResultTable* ResultTable::First() noexcept {
  return s_FirstTable;
}

Result_t Result_t::Find(i32_t value) noexcept {
  for (const ResultTable* table = ResultTable::First(); table != nullptr; table = table->Next())
    for (const Result_t& result : table->Results())
      if (result.Value() == value) return result;
  return RESULT_UNKNOWN;
}

std::ostream& operator<<(std::ostream& stream, const Result_t& result) {
  return stream << result.Symbol() << " (" << result.Value() << ')';
}

}  // namespace Ferro
