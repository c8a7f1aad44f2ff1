// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/MPEG2Writer.h>

#include <QUIRE/Codestream.h>

#include "h__Writer.h"

#include <algorithm>
#include <utility>

namespace QUIRE::MPEG2 {

namespace {

constexpr ui32_t TemporalReferenceCycle = 1024;

MXF::FileDescriptor& MakeDescriptor(SetFactory& sets, const VideoDescriptor& video) {
  auto& set = sets.Add<MXF::MPEG2VideoDescriptor>();
  set.SampleRate = video.SampleRate;
  set.FrameLayout = video.FrameLayout;
  set.StoredWidth = video.StoredWidth;
  set.StoredHeight = video.StoredHeight;
  set.AspectRatio = video.AspectRatio;
  set.VideoLineMap = {0, 0};
  if (video.PictureEssenceCoding.HasValue()) set.PictureEssenceCoding = video.PictureEssenceCoding;
  set.ComponentDepth = video.ComponentDepth;
  set.HorizontalSubsampling = video.HorizontalSubsampling;
  set.VerticalSubsampling = video.VerticalSubsampling;
  set.ColorSiting = video.ColorSiting;
  set.CodedContentType = video.CodedContentType;
  set.LowDelay = video.LowDelay;
  set.BitRate = video.BitRate;
  set.ProfileAndLevel = video.ProfileAndLevel;
  return set;
}

// ST 377-1, 11.2.3: random access, sequence header, forward and backward prediction; the low bits repeat the type.
ui8_t IndexFlags(const PictureHeader& picture) {
  switch (picture.Type) {
    case PT_I:
      return picture.HasSequenceHeader ? 0xc0 : 0x80;
    case PT_P:
      return 0x22;
    case PT_B:
      break;
  }
  return 0x33;
}

i8_t Saturate(i64_t value) {
  return static_cast<i8_t>(std::clamp<i64_t>(value, INT8_MIN, INT8_MAX));
}

}  // namespace

Result_t MXFWriter::OpenWrite(const std::string& filename, const WriterInfo& info, const VideoDescriptor& descriptor,
                              const WriterOptions& options) {
  const Result_t result = OpenWriter(m_Writer, m_FailureReason, filename, ESS_MPEG2_VES, info, descriptor.EditRate,
                                     options, false, MakeDescriptor, descriptor);
  if (result.Failure()) return result;
  m_GroupStart = m_LastIntra = 0;
  m_DisplayPositions.clear();
  return result;
}

Result_t MXFWriter::WriteFrame(const FrameBuffer& frame, AESEncContext* encryption, HMACContext* integrity) {
  if (!m_Writer) return Ferro::RESULT_INIT;
  PictureHeader picture;
  if (const Result_t result = ParsePicture(std::span(frame.RoData(), frame.Size()), picture); result.Failure()) {
    return result;
  }
  const ui32_t position = m_Writer->EditUnitCount();
  const ui32_t intra = picture.Type == PT_I ? position : m_LastIntra;
  const h__Writer::EntryFacts facts{IndexFlags(picture), Saturate(i64_t{intra} - position)};
  const Result_t room = ResultOf([this] {
    m_DisplayPositions.push_back(0);
    return Ferro::RESULT_OK;
  });
  const Result_t result = room.Success() ? m_Writer->WriteEditUnit(frame, facts, encryption, integrity) : room;
  if (result.Failure()) {
    m_DisplayPositions.resize(position);
    return result;
  }
  m_LastIntra = intra;
  if (picture.StartsGroup) m_GroupStart = position;
  // Without group headers the references start over after 1024 pictures.
  ui32_t display = m_GroupStart + picture.TemporalReference;
  while (display + TemporalReferenceCycle / 2 < position) display += TemporalReferenceCycle;
  m_DisplayPositions.back() = display;
  return result;
}

// The entry at a place in display order says how far from there the picture is stored: stored I P B B, displayed I B B P,
// has the offsets 0 1 1 -2. A picture's place is known with its header, but its entry only when that place was reached.
Result_t MXFWriter::Finalize() {
  if (!m_Writer) return Ferro::RESULT_INIT;
  auto& entries = m_Writer->Entries();
  for (size_t stored = 0; stored < m_DisplayPositions.size(); ++stored) {
    const size_t display = m_DisplayPositions[stored];
    if (display >= entries.size()) continue;  // its place lies behind the end: the stream was cut
    entries[display].TemporalOffset = Saturate(static_cast<i64_t>(stored) - static_cast<i64_t>(display));
  }
  return TrackFileWriter::Finalize();
}

}  // namespace QUIRE::MPEG2
