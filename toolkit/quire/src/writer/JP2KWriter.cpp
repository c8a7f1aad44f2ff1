// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/JP2KWriter.h>

#include "h__Writer.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace QUIRE::JP2K {

namespace {

constexpr ui8_t DefaultDepth = 12;
constexpr ui8_t MaxDepth = 31;

void AddSubDescriptor(SetFactory& sets, MXF::FileDescriptor& owner, const PictureDescriptor& picture) {
  auto& set = sets.AddSubDescriptor<MXF::JPEG2000PictureSubDescriptor>(owner);
  static_cast<ImageAndTileSize&>(set) = picture;
  if (!picture.CodingStyleDefault.empty()) set.CodingStyleDefault = picture.CodingStyleDefault;
  if (!picture.QuantizationDefault.empty()) set.QuantizationDefault = picture.QuantizationDefault;
}

// X'Y'Z' in the depth of the codestream's first component (ST 429-4, 6.4.1). The pixel layout is pairs of a component's
// code, 0xd8 to 0xda for X', Y' and Z', and its bits.
MXF::FileDescriptor& MakeDescriptor(SetFactory& sets, const PictureDescriptor& picture) {
  auto& set = sets.Add<MXF::RGBAEssenceDescriptor>();
  set.SampleRate = picture.SampleRate;
  set.StoredWidth = picture.StoredWidth;
  set.StoredHeight = picture.StoredHeight;
  set.AspectRatio = picture.AspectRatio;
  set.VideoLineMap = {0, 0};
  if (picture.PictureEssenceCoding.HasValue()) set.PictureEssenceCoding = picture.PictureEssenceCoding;

  ui8_t depth = DefaultDepth;
  if (!picture.PictureComponentSizing.empty()) {
    depth = static_cast<ui8_t>((picture.PictureComponentSizing.front().Ssiz & 0x7f) + 1);
  }
  depth = std::min(depth, MaxDepth);
  set.PixelLayout = MXF::RGBALayout{0xd8, depth, 0xd9, depth, 0xda, depth};
  set.ComponentMaxRef = (ui32_t{1} << depth) - 1;
  set.ComponentMinRef = 0;
  AddSubDescriptor(sets, set, picture);
  if (picture.Stereoscopic) sets.AddSubDescriptor<MXF::StereoscopicPictureSubDescriptor>(set);
  return set;
}

}  // namespace

Result_t MXFWriter::OpenWrite(const std::string& filename, const WriterInfo& info, const PictureDescriptor& descriptor,
                              const WriterOptions& options) {
  if (descriptor.Stereoscopic) return Ferro::RESULT_PARAM;
  return OpenWriter(m_Writer, m_FailureReason, filename, ESS_JPEG_2000, info, descriptor.EditRate, options, false,
                    MakeDescriptor, descriptor);
}

Result_t MXFWriter::WriteFrame(const FrameBuffer& frame, AESEncContext* encryption, HMACContext* integrity) {
  if (!m_Writer) return Ferro::RESULT_INIT;
  return m_Writer->WriteEditUnit(frame, {}, encryption, integrity);
}

// An edit unit is a pair of pictures: the sample rate is twice the edit rate (ST 429-10).
Result_t MXFSWriter::OpenWrite(const std::string& filename, const WriterInfo& info, const PictureDescriptor& descriptor,
                               const WriterOptions& options) {
  return ResultOf([&]() -> Result_t {
    PictureDescriptor stereoscopic = descriptor;
    stereoscopic.Stereoscopic = true;
    if (!stereoscopic.SampleRate.HasValue()) {
      if (descriptor.EditRate.Numerator > INT32_MAX / 2) return Ferro::RESULT_PARAM;
      stereoscopic.SampleRate = Rational(2 * descriptor.EditRate.Numerator, descriptor.EditRate.Denominator);
    }
    const Result_t result = OpenWriter(m_Writer, m_FailureReason, filename, ESS_JPEG_2000_S, info, descriptor.EditRate,
                                       options, false, MakeDescriptor, stereoscopic);
    if (result.Success()) m_NextPhase = SP_LEFT;
    return result;
  });
}

Result_t MXFSWriter::WriteFrame(const SFrameBuffer& frame, AESEncContext* encryption, HMACContext* integrity) {
  if (encryption && frame.Right.PlaintextOffset() > frame.Right.Size()) return RESULT_LARGE_PTO;  // before the left eye
  const Result_t result = WriteFrame(frame.Left, SP_LEFT, encryption, integrity);
  return result.Success() ? WriteFrame(frame.Right, SP_RIGHT, encryption, integrity) : result;
}

Result_t MXFSWriter::WriteFrame(const FrameBuffer& frame, StereoscopicPhase_t phase, AESEncContext* encryption,
                                HMACContext* integrity) {
  if (!m_Writer) return Ferro::RESULT_INIT;
  if (phase != m_NextPhase) return RESULT_SPHASE;
  const Result_t result = phase == SP_LEFT ? m_Writer->WriteEditUnit(frame, {}, encryption, integrity)
                                           : m_Writer->WriteElement(std::span(frame.RoData(), frame.Size()),
                                                                    frame.PlaintextOffset(), encryption, integrity);
  if (result.Success()) m_NextPhase = phase == SP_LEFT ? SP_RIGHT : SP_LEFT;
  return result;
}

Result_t MXFSWriter::Finalize() {
  if (m_Writer && m_NextPhase == SP_RIGHT) return RESULT_SPHASE;
  return TrackFileWriter::Finalize();
}

}  // namespace QUIRE::JP2K
