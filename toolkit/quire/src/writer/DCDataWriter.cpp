// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/DCDataWriter.h>

#include "h__Writer.h"

#include <utility>

namespace QUIRE::DCData {

Result_t MXFWriter::OpenWrite(const std::string& filename, const WriterInfo& info, const DCDataDescriptor& descriptor,
                              const WriterOptions& options) {
  if (m_Writer) return Ferro::RESULT_STATE;
  auto writer = std::make_unique<h__Writer>();
  const Result_t result = writer->Open(filename, ESS_DCDATA, info, descriptor.EditRate, options,
                                       [descriptor](SetFactory& sets) -> MXF::FileDescriptor& {
                                         auto& set = sets.Add<MXF::DCDataDescriptor>();
                                         if (descriptor.DataEssenceCoding.HasValue()) {
                                           set.DataEssenceCoding = descriptor.DataEssenceCoding;
                                         }
                                         return set;
                                       });
  if (result.Success()) m_Writer = std::move(writer);
  return result;
}

Result_t MXFWriter::WriteFrame(const FrameBuffer& frame, AESEncContext* encryption, HMACContext* integrity) {
  if (!m_Writer) return Ferro::RESULT_INIT;
  return m_Writer->WriteEditUnit(frame, {}, encryption, integrity);
}

}  // namespace QUIRE::DCData
