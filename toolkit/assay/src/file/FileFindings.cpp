// SPDX-License-Identifier: BSD-3-Clause
#include "FileFindings.h"

#include "document/PackageFindings.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Assay {
namespace {

/// What the format of pictures asks of equipment.
enum class Fit { Profile, Played, Special };

void FindDamage(const TrackFile& file, FindingList& findings) {
  if (file.Opened.Failure()) {
    const bool is_damaged = file.Opened == QUIRE::RESULT_FORMAT;
    Add(findings, Finding(is_damaged ? FindingID::FileDamaged : FindingID::FileUnreadable), file.At(),
        is_damaged ? "a track file" : "", is_damaged ? file.Identity.EncodeString() : file.Opened.Label());
    return;
  }
  const FindingID damage =
      file.BadReason == Ferro::RESULT_READFAIL ? FindingID::FileUnreadable : FindingID::FileDamaged;
  const std::string length = std::to_string(file.Duration) + " edit units";
  if (file.BadUnit) {
    const std::string found = file.Duration == 0 ? "none"
                              : file.BadReason == QUIRE::RESULT_CUT
                                  ? "edit unit " + std::to_string(*file.BadUnit) + " is cut off"
                                  : "edit unit " + std::to_string(*file.BadUnit) + " is not there";
    Add(findings, Finding(damage), file.At(), length, found);
  } else if (file.BadResource) {
    const auto* text = file.As<QUIRE::TimedText::TimedTextDescriptor>();
    const size_t count = text == nullptr ? 0 : text->ResourceList.size();
    Add(findings, Finding(damage), file.At(), std::to_string(count) + (count == 1 ? " resource" : " resources"),
        file.BadResource->EncodeString() + " is not there");
  } else if (file.IsIncomplete) {
    Add(findings, Finding(FindingID::FileIncomplete), file.At(), length, "the last one is cut off");
  } else if (file.HasNoFooter) {
    Add(findings, Finding(FindingID::FileIncomplete), file.At(), "a footer", "none, or a part of it");
  }
}

Fit SizeFit(const PictureFormat& format) {
  using Size = std::pair<ui32_t, ui32_t>;
  static constexpr std::array Usual = {Size{2048, 858}, Size{1998, 1080}, Size{4096, 1716}, Size{3996, 2160}};
  static constexpr std::array Full = {Size{2048, 1080}, Size{4096, 2160}};
  const Size size = {format.Width, format.Height};
  if (std::ranges::find(Usual, size) != Usual.end()) return Fit::Profile;
  return std::ranges::find(Full, size) != Full.end() ? Fit::Played : Fit::Special;
}

bool IsOneOf(const QUIRE::Rational& rate, std::initializer_list<int> rates) {
  return std::ranges::any_of(rates, [&](int each) { return AreEqual(rate, {each, 1}); });
}

/// Two eyes at 48 and more, and in 4K, need newer equipment, as pictures beyond 60 do.
Fit RateFit(const PictureFormat& format) {
  const QUIRE::Rational& rate = format.EditRate;
  if (format.IsStereoscopic) {
    if (format.Is4K()) return Fit::Special;
    return IsOneOf(rate, {24, 25}) ? Fit::Profile : IsOneOf(rate, {30}) ? Fit::Played : Fit::Special;
  }
  if (format.Is4K()) return IsOneOf(rate, {24}) ? Fit::Profile : IsOneOf(rate, {25, 30}) ? Fit::Played : Fit::Special;
  return IsOneOf(rate, {24, 25, 48}) ? Fit::Profile : IsOneOf(rate, {30, 50, 60}) ? Fit::Played : Fit::Special;
}

const char* RatesFor(const PictureFormat& format, bool is_profile) {
  if (format.IsStereoscopic && format.Is4K()) return "no pairs in 4K";
  if (format.IsStereoscopic) return is_profile ? "24 or 25 pairs a second" : "24, 25 or 30 pairs a second";
  if (format.Is4K()) return is_profile ? "24" : "24, 25 or 30";
  return is_profile ? "24, 25 or 48" : "24, 25, 30, 48, 50 or 60";
}

void FindFormat(const TrackFile& file, const PictureFormat& format, FindingList& findings) {
  const auto say = [&](FindingID id, Fit fit, const std::string& expected, const std::string& found) {
    if (fit == Fit::Profile) return;
    const FindingClass value = fit == Fit::Played ? FindingClass::Profile : FindingClass::Warning;
    Add(findings, Finding(id, value), file.At(), expected, found);
  };
  say(FindingID::PictureSize, SizeFit(format), "1998x1080, 2048x858, 3996x2160 or 4096x1716",
      std::to_string(format.Width) + 'x' + std::to_string(format.Height));
  const Fit rate = RateFit(format);
  say(FindingID::PictureRate, rate, RatesFor(format, rate == Fit::Played), EditRateText(format.EditRate));
}

}  // namespace

std::optional<PictureFormat> PictureFormatOf(const TrackFile* file) {
  if (file == nullptr || !file->IsOpen()) return std::nullopt;
  if (const auto* picture = file->As<QUIRE::JP2K::PictureDescriptor>())
    return PictureFormat{picture->StoredWidth, picture->StoredHeight, picture->EditRate, picture->Stereoscopic};
  if (const auto* video = file->As<QUIRE::MPEG2::VideoDescriptor>())
    return PictureFormat{video->StoredWidth, video->StoredHeight, video->EditRate, false};
  return std::nullopt;
}

void FindInFile(const TrackFile& file, FindingList& findings) {
  if (file.Opened == Ferro::RESULT_INIT) return;  // the check was cancelled before
  FindDamage(file, findings);
  if (!file.IsOpen()) return;
  if (file.Info.AssetUUID.HasValue() && !(file.Info.AssetUUID == file.ID))
    Add(findings, Finding(FindingID::FileID), file.At(), file.ID.EncodeString(), file.Info.AssetUUID.EncodeString());
  if (const auto format = PictureFormatOf(&file)) FindFormat(file, *format, findings);
}

}  // namespace Assay
