// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/DCDataWriter.h>

#include "h__Writer.h"

namespace QUIRE::DCData {

namespace {

MXF::FileDescriptor& MakeDescriptor(SetFactory& sets, const DCDataDescriptor& data) {
  auto& set = sets.Add<MXF::DCDataDescriptor>();
  if (data.DataEssenceCoding.HasValue()) set.DataEssenceCoding = data.DataEssenceCoding;
  return set;
}

}  // namespace

Result_t MXFWriter::OpenWrite(const std::string& filename, const WriterInfo& info, const DCDataDescriptor& descriptor,
                              const WriterOptions& options) {
  return OpenWriter(m_Writer, filename, ESS_DCDATA, info, descriptor.EditRate, options, false, MakeDescriptor,
                    descriptor);
}

Result_t MXFWriter::WriteFrame(const FrameBuffer& frame, AESEncContext* encryption, HMACContext* integrity) {
  if (!m_Writer) return Ferro::RESULT_INIT;
  return m_Writer->WriteEditUnit(frame, {}, encryption, integrity);
}

}  // namespace QUIRE::DCData
