// SPDX-License-Identifier: BSD-3-Clause
#include "FrameExaminer.h"

#include "document/PackageFindings.h"

namespace Assay {
namespace {

/// Takes an element off the front: one byte that says what it is, four with its length, most significant first, then so
/// many bytes. False where there is no such one.
bool TakeElement(std::span<const ui8_t>& bytes, ui8_t tag) {
  constexpr size_t HeadSize = 5;
  if (bytes.size() < HeadSize || bytes[0] != tag) return false;
  const size_t length = size_t{bytes[1]} << 24 | size_t{bytes[2]} << 16 | size_t{bytes[3]} << 8 | size_t{bytes[4]};
  if (length > bytes.size() - HeadSize) return false;
  bytes = bytes.subspan(HeadSize + length);
  return true;
}

/// A preamble and a frame, and nothing behind them (ST 2098-2).
bool IsImmersiveFrame(std::span<const ui8_t> bytes) {
  constexpr ui8_t Preamble = 0x01;
  constexpr ui8_t Frame = 0x02;
  return TakeElement(bytes, Preamble) && TakeElement(bytes, Frame) && bytes.empty();
}

/// Looks at the outer structure of the frames. How many channels and objects there can be, the header tells.
class ImmersiveExaminer : public IFrameExaminer {
 public:
  explicit ImmersiveExaminer(const TrackFile& file) : m_File(file) {}

  void Examine(const FrameView& frame) override {
    if (IsImmersiveFrame(frame.Bytes)) return;
    if (m_Broken++ == 0) m_First = frame.EditUnit;
  }

  void Finish(FindingList& findings, FileFigures&, bool) override {
    if (m_Broken == 0) return;
    FindingPlace place = m_File.At();
    place.EditUnit = m_First;
    place.EditRate = m_File.EditRate;
    Add(findings, Finding(FindingID::FileDamaged), place, "frames of immersive sound",
        std::to_string(m_Broken) + (m_Broken == 1 ? " frame that is none" : " frames that are none"));
  }

 private:
  const TrackFile& m_File;
  ui64_t m_Broken = 0;
  ui32_t m_First = 0;
};

}  // namespace

std::unique_ptr<IFrameExaminer> NewImmersiveExaminer(const TrackFile& file) {
  return std::make_unique<ImmersiveExaminer>(file);
}

}  // namespace Assay
