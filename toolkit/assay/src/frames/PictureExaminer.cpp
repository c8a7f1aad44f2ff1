// SPDX-License-Identifier: BSD-3-Clause
#include "FrameExaminer.h"
#include "Occurrences.h"
#include "PictureMeter.h"
#include "ProfileMeaning.h"

#include <QUIRE/CinemaProfile.h>
#include <QUIRE/JP2KHeaders.h>

#include <algorithm>

namespace Assay {
namespace {

using QUIRE::JP2K::CodestreamHeaders;

constexpr ui64_t BitsPerMegabit = 1'000'000;
constexpr ui64_t FastRate = 48;  // edit units per second from which equipment takes twice the bit rate
constexpr ui64_t UsualRate = QUIRE::JP2K::CodestreamBitRate / BitsPerMegabit;  // Mbit/s
constexpr ui64_t UsualLevels = 5;                                              // of the wavelet transform
constexpr ui64_t NearPercent = 98;                                             // of the limit
constexpr ui64_t BytesPerMegabit = BitsPerMegabit / 8;

/// The largest sizes of a file's pictures, in bytes; all 0 without an edit rate.
struct PictureLimits {
  PictureLimits(const QUIRE::Rational& rate, bool is_stereoscopic) {
    if (rate.Numerator <= 0 || rate.Denominator <= 0) return;
    const auto rate_numerator = static_cast<ui64_t>(rate.Numerator);
    const auto rate_denominator = static_cast<ui64_t>(rate.Denominator);
    IsFast = rate_numerator >= FastRate * rate_denominator;
    Usual = UsualRate * BytesPerMegabit * rate_denominator / rate_numerator;
    Largest = IsFast ? 2 * UsualRate * BytesPerMegabit * rate_denominator / rate_numerator : Usual;
    OneEye = UsualRate * BytesPerMegabit * rate_denominator / (2 * rate_numerator);
    const ui64_t images_per_unit = is_stereoscopic ? 2 : 1;
    Component = ComponentRate * BytesPerMegabit * rate_denominator / (images_per_unit * rate_numerator);
  }

  static constexpr ui64_t ComponentRate = QUIRE::JP2K::ComponentBitRate / BitsPerMegabit;  // Mbit/s

  bool IsFast = false;
  ui64_t Usual = 0;      ///< of an edit unit: 250 Mbit/s
  ui64_t Largest = 0;    ///< of an edit unit that any equipment takes
  ui64_t OneEye = 0;     ///< of one of two eyes: half of Usual
  ui64_t Component = 0;  ///< of one component of one codestream
};

std::string Limit(ui64_t bytes) {
  return "up to " + std::to_string(bytes) + " bytes";
}
std::string Bytes(ui64_t bytes) {
  return std::to_string(bytes) + " bytes";
}

/// JPEG 2000 pictures.
class CodestreamExaminer : public IFrameExaminer {
 public:
  CodestreamExaminer(const TrackFile& file, const QUIRE::JP2K::PictureDescriptor& picture)
      : m_File(file),
        m_IsStereoscopic(picture.Stereoscopic),
        m_Limits(file.EditRate, picture.Stereoscopic),
        m_Meter(file.EditRate, file.Duration) {}

  void Examine(const FrameView& frame) override {
    if (frame.EditUnit != m_Unit) EndUnit();
    m_Unit = frame.EditUnit;
    m_UnitBytes += frame.Bytes.size();
    m_LargerEye = std::max<ui64_t>(m_LargerEye, frame.Bytes.size());
    CodestreamHeaders headers;
    if (ParseHeaders(frame.Bytes, headers).Failure())
      return m_Found.Note(FindingID::J2KMarker, frame.EditUnit, "", "malformed main header");
    for (const auto& finding : CheckCinemaProfile(headers, QUIRE::Rational())) Note(finding, headers);
    FindFewLevels(headers);
    FindLargeComponent(headers);
  }

  void Finish(FindingList& findings, FileFigures& figures, bool) override {
    EndUnit();
    m_Found.AddTo(findings, m_File.At(), m_File.EditRate);
    figures.Picture = m_Meter.Figures(m_Limits.Usual == 0 ? 0 : double(m_Limits.IsFast ? 2 * UsualRate : UsualRate));
  }

 private:
  void Note(const QUIRE::JP2K::ProfileFinding& finding, const CodestreamHeaders& headers) {
    const ProfileMeaning meaning = MeaningOf(finding, headers);
    m_Found.Note(meaning.ID, meaning.Class, *m_Unit, meaning.Expected, meaning.Found);
  }

  /// Pictures of low resolution cannot be taken from those.
  void FindFewLevels(const CodestreamHeaders& headers) {
    const bool is_allowed = headers.Coding.Levels > 0 || headers.Size.Rsiz == 3;
    if (is_allowed && headers.Coding.Levels < UsualLevels)
      m_Found.Note(FindingID::J2KLevels, FindingClass::Note, *m_Unit, std::to_string(UsualLevels) + " levels",
                   std::to_string(headers.Coding.Levels) + " levels");
  }

  void FindLargeComponent(const CodestreamHeaders& headers) {
    if (m_Limits.Component == 0) return;
    size_t component = 0;
    for (const QUIRE::JP2K::ComponentBytes& bytes : BytesOfComponents(headers)) {
      if (bytes.Lower > m_Limits.Component)
        m_Found.Note(FindingID::J2KSizeComponent, *m_Unit, Limit(m_Limits.Component),
                     Bytes(bytes.Lower) + " of component " + std::to_string(component));
      ++component;
    }
  }

  void EndUnit() {
    if (!m_Unit) return;
    m_Meter.Add(*m_Unit, m_UnitBytes);
    if (m_Limits.Usual != 0) FindSize();
    m_Unit.reset();
    m_UnitBytes = m_LargerEye = 0;
  }

  // Two eyes together have the limit of one flat picture; below 48 edit units a second each has half of it.
  void FindSize() {
    const ui64_t bytes = m_UnitBytes;
    if (bytes > m_Limits.Largest)
      m_Found.Note(FindingID::J2KSizeMax, *m_Unit, Limit(m_Limits.Largest), Bytes(bytes));
    else if (bytes > m_Limits.Usual)
      m_Found.Note(FindingID::J2KSizeMax, FindingClass::Warning, *m_Unit, Limit(m_Limits.Usual), Bytes(bytes));
    else if (m_IsStereoscopic && !m_Limits.IsFast && m_LargerEye > m_Limits.OneEye)
      m_Found.Note(FindingID::J2KSizeMax, FindingClass::Warning, *m_Unit, Limit(m_Limits.OneEye) + " of one eye",
                   Bytes(m_LargerEye));
    else if (bytes * 100 >= m_Limits.Usual * NearPercent)
      m_Found.Note(FindingID::J2KSizeNear, *m_Unit, Limit(m_Limits.Usual), Bytes(bytes));
  }

  const TrackFile& m_File;
  const bool m_IsStereoscopic;
  const PictureLimits m_Limits;
  PictureMeter m_Meter;
  Occurrences m_Found;
  std::optional<ui64_t> m_Unit;  // the edit unit that frames come from
  ui64_t m_UnitBytes = 0;        // of it
  ui64_t m_LargerEye = 0;        // bytes
};

/// MPEG-2 pictures, of which nothing is known but how large they are: their headers tell nothing that a file's index and
/// descriptor do not, and there is no common limit to their size.
class VideoExaminer : public IFrameExaminer {
 public:
  explicit VideoExaminer(const TrackFile& file) : m_Meter(file.EditRate, file.Duration) {}

  void Examine(const FrameView& frame) override { m_Meter.Add(frame.EditUnit, frame.Bytes.size()); }
  void Finish(FindingList&, FileFigures& figures, bool) override { figures.Picture = m_Meter.Figures(0); }

 private:
  PictureMeter m_Meter;
};

}  // namespace

std::unique_ptr<IFrameExaminer> NewPictureExaminer(const TrackFile& file) {
  if (const auto* picture = file.As<QUIRE::JP2K::PictureDescriptor>(); picture != nullptr)
    return std::make_unique<CodestreamExaminer>(file, *picture);
  if (file.As<QUIRE::MPEG2::VideoDescriptor>() != nullptr) return std::make_unique<VideoExaminer>(file);
  return nullptr;
}

}  // namespace Assay
