// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/TrackFileWriter.h>

#include "h__Writer.h"

namespace QUIRE {

TrackFileWriter::TrackFileWriter() = default;
TrackFileWriter::~TrackFileWriter() = default;

ui32_t TrackFileWriter::EditUnitCount() const {
  return m_Writer ? m_Writer->EditUnitCount() : 0;
}

Result_t TrackFileWriter::Finalize() {
  if (!m_Writer) return Ferro::RESULT_INIT;
  const auto writer = std::move(m_Writer);
  return writer->Finalize(writer->EditUnitCount());
}

void TrackFileWriter::Abandon() {
  m_Writer.set(nullptr);
}

}  // namespace QUIRE
