// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/TrackFileReader.h>

#include "base/ResultOf.h"
#include "h__Reader.h"

#include <Ferro/Assert.h>

namespace QUIRE {

TrackFileReader::TrackFileReader(EssenceType_t kind) : m_Kind(kind) {}

TrackFileReader::~TrackFileReader() = default;

Result_t TrackFileReader::OpenRead(const std::string& filename) {
  m_Reader.set(nullptr);
  return ResultOf([&] { return h__Reader::Open(filename, m_Kind, m_Reader); });
}

Result_t TrackFileReader::Close() {
  if (!m_Reader) return Ferro::RESULT_INIT;
  m_Reader.set(nullptr);
  return Ferro::RESULT_OK;
}

Result_t TrackFileReader::FillWriterInfo(WriterInfo& info) const {
  if (!m_Reader) return Ferro::RESULT_INIT;
  return ResultOf([&] {
    info = m_Reader->Info();
    return Ferro::RESULT_OK;
  });
}

Result_t TrackFileReader::FillEncryptionInfo(EncryptionInfo& info) const {
  if (!m_Reader) return Ferro::RESULT_INIT;
  info = m_Reader->Facts().Algorithms;
  return Ferro::RESULT_OK;
}

Result_t TrackFileReader::FillTrackEncryption(TrackEncryption& out) {
  return m_Reader ? m_Reader->FillTrackEncryption(out) : Ferro::RESULT_INIT;
}

Result_t TrackFileReader::LocateFrame(ui32_t frame_number, Eye eye, StoredFrame& frame) {
  if (!m_Reader) return Ferro::RESULT_INIT;
  return ResultOf([&] {
    ElementPlace place;
    const Result_t result = m_Reader->LocateFrame(frame_number, eye, place);
    if (result.Failure()) return result;
    frame = {place.ValueAt, place.ValueLength, 0, place.Triplet.has_value(), 0, 0};
    if (place.Triplet) {
      frame.PackLength = place.TailLength();
      frame.SourceLength = place.Triplet->SourceLength;
      frame.PlaintextOffset = place.Triplet->PlaintextOffset;
    }
    return result;
  });
}

MXF::OP1aHeader& TrackFileReader::OP1aHeader() {
  FERRO_ASSERT(m_Reader);
  return m_Reader->Header();
}

MXF::RIP& TrackFileReader::RIP() {
  FERRO_ASSERT(m_Reader);
  return m_Reader->RIP();
}

}  // namespace QUIRE
