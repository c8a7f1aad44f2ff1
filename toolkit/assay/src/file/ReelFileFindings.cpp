// SPDX-License-Identifier: BSD-3-Clause
#include "FileFindings.h"

#include "base/Text.h"
#include "document/PackageFindings.h"

#include <algorithm>
#include <cstdlib>

namespace Assay {
namespace {

/// What a file can be used for.
const char* ContentOf(const TrackFile& file) {
  static constexpr const char* Names[] = {"nothing known", "picture",        "picture",       "sound",
                                          "timed text",    "auxiliary data", "auxiliary data"};
  if (const auto format = PictureFormatOf(&file); format && format->IsStereoscopic) return "stereoscopic picture";
  return Names[file.Essence.index()];
}

const char* ContentOf(const ReelAsset& asset) {
  switch (asset.Role) {
    case AssetRole::Picture:
      return asset.IsStereoscopic ? "stereoscopic picture" : "picture";
    case AssetRole::Sound:
      return "sound";
    case AssetRole::Subtitle:
    case AssetRole::Caption:
      return "timed text";
    default:
      return "auxiliary data";
  }
}

/// The use of one file in a reel.
class UseCheck {
 public:
  UseCheck(const CompositionFiles& files, const AssetFile& use, FindingList& findings)
      : m_Files(files), m_Use(use), m_Asset(*use.Asset), m_File(*use.File), m_Findings(findings) {}

  void Run() {
    const std::string expected = ContentOf(m_Asset);
    const std::string found = ContentOf(m_File);
    if (expected != found) return Say(FindingID::ReelAssetKind, nullptr, expected, found);
    FindRate();
    FindLength();
    FindKey();
    FindDigest();
    if (m_Asset.Role == AssetRole::Picture) FindAspect();
    if (m_Asset.Role == AssetRole::AuxData) FindDataType();
  }

 private:
  void Say(FindingID id, const char* child, const std::string& expected, const std::string& found) {
    Add(m_Findings, Finding(id), m_Files.At(m_Use, child), expected, found);
  }

  void FindRate() {
    if (m_Asset.EditRate && !AreEqual(*m_Asset.EditRate, m_File.EditRate))
      Say(FindingID::ReelRateFile, "EditRate", EditRateText(m_File.EditRate), EditRateText(*m_Asset.EditRate));
  }

  void FindLength() {
    if (m_File.Duration == 0) return;  // the file does not say
    const ui64_t length = m_File.Duration;
    if (m_Asset.Intrinsic && *m_Asset.Intrinsic != length)
      Say(FindingID::ReelIntrinsic, "IntrinsicDuration", std::to_string(length) + " edit units",
          std::to_string(*m_Asset.Intrinsic));
    const ui64_t entry = m_Asset.Entry.value_or(0);
    if (!m_Asset.Duration || IsBeyond(entry, m_Asset.Intrinsic.value_or(length)) || !IsBeyond(entry, length)) return;
    Say(FindingID::ReelEntryBeyond, nullptr, std::to_string(length) + " edit units",
        std::to_string(*m_Asset.Duration) + " from " + std::to_string(entry) + " on");
  }

  [[nodiscard]] bool IsBeyond(ui64_t entry, ui64_t length) const {
    return entry > length || *m_Asset.Duration > length - entry;
  }

  void FindKey() {
    if (!m_File.Info.EncryptedEssence) {
      if (m_Asset.KeyID) Say(FindingID::ReelKeyNeedless, "KeyId", "none", m_Asset.KeyID->EncodeString());
      return;
    }
    const UUID& key = m_File.Info.CryptographicKeyID;
    if (!m_Asset.KeyID || !(*m_Asset.KeyID == key))
      Say(FindingID::ReelKeyMissing, "KeyId", key.EncodeString(),
          m_Asset.KeyID ? m_Asset.KeyID->EncodeString() : "none");
  }

  /// Against the packing list of another package; that of the composition's own was looked at with the documents.
  void FindDigest() {
    SHA1 stated;
    if (m_File.Package == m_Files.Composition->Document->Package || !m_File.Listed.HasValue()) return;
    if (stated.DecodeBase64(m_Asset.Hash) && !(stated == m_File.Listed))
      Say(FindingID::ReelHash, "Hash", m_File.Listed.EncodeBase64(), m_Asset.Hash);
  }

  void FindAspect();
  void FindDataType();

  const CompositionFiles& m_Files;
  const AssetFile& m_Use;
  const ReelAsset& m_Asset;
  const TrackFile& m_File;
  FindingList& m_Findings;
};

/// Width over height of the picture as it is shown: pixels are square, but for video.
QUIRE::Rational ShownRatio(const TrackFile& file) {
  const auto* video = file.As<QUIRE::MPEG2::VideoDescriptor>();
  if (video != nullptr && video->AspectRatio.Numerator > 0 && video->AspectRatio.Denominator > 0)
    return video->AspectRatio;
  const auto format = PictureFormatOf(&file);
  const auto side = [](ui32_t value) { return static_cast<Ferro::i32_t>(std::min<ui32_t>(value, 1'000'000)); };
  return format ? QUIRE::Rational(side(format->Width), side(format->Height)) : QUIRE::Rational();
}

void UseCheck::FindAspect() {
  const Node* element = m_Asset.Element->Child("ScreenAspectRatio");
  const auto stated = AspectOf(element);
  const QUIRE::Rational shown = ShownRatio(m_File);
  if (!stated || shown.Numerator <= 0 || shown.Denominator <= 0) return;
  // In units of one by both denominators, so that the limit of 0.01 is exact.
  const i64_t difference = i64_t{stated->Numerator} * shown.Denominator - i64_t{shown.Numerator} * stated->Denominator;
  if (100 * std::abs(difference) > i64_t{stated->Denominator} * shown.Denominator)
    Say(FindingID::ReelAspect, "ScreenAspectRatio", EditRateText(shown), Quoted(TextOf(element)));
}

/// "urn:smpte:ul:060e2b34.04010105.0e090604.00000000"; no value for another form.
std::optional<QUIRE::UL> LabelOf(const Node* node) {
  constexpr std::string_view Prefix = "urn:smpte:ul:";
  const std::string text = ToLower(TextOf(node));
  if (!text.starts_with(Prefix)) return std::nullopt;
  std::string digits;
  for (const char c : std::string_view(text).substr(Prefix.size()))
    if (c != '.') digits += c;
  QUIRE::UL label;
  return label.DecodeHex(digits) ? std::optional(label) : std::nullopt;
}

const QUIRE::DCData::DCDataDescriptor* DataOf(const TrackFile& file) {
  const auto* immersive = file.As<QUIRE::ATMOS::AtmosDescriptor>();
  return immersive != nullptr ? immersive : file.As<QUIRE::DCData::DCDataDescriptor>();
}

void UseCheck::FindDataType() {
  const bool has_type = m_Asset.Element->Child("DataType") != nullptr;
  const char* child = has_type ? "DataType" : "DataEssenceCoding";
  const auto stated = LabelOf(m_Asset.Element->Child(child));
  const QUIRE::UL& coding = DataOf(m_File)->DataEssenceCoding;
  if (stated && coding.HasValue() && !stated->MatchIgnoringVersion(coding))
    Say(FindingID::AuxDataType, child, coding.EncodeHex(), stated->EncodeHex());
}

/// What must not change from reel to reel: the file's format at the rate that the composition plays it. No value for what
/// is no picture, and for one that is told to be of the wrong kind.
std::optional<PictureFormat> PlayedFormat(const AssetFile& use) {
  if (use.Asset->Role != AssetRole::Picture) return std::nullopt;
  std::optional<PictureFormat> format = PictureFormatOf(use.File);
  if (!format || format->IsStereoscopic != use.Asset->IsStereoscopic) return std::nullopt;
  format->EditRate = use.Asset->EditRate.value_or(format->EditRate);
  return format;
}

bool AreSame(const PictureFormat& first, const PictureFormat& second) {
  return first.Width == second.Width && first.Height == second.Height &&
         first.IsStereoscopic == second.IsStereoscopic && AreEqual(first.EditRate, second.EditRate);
}

std::string FormatText(const PictureFormat& format) {
  return std::to_string(format.Width) + 'x' + std::to_string(format.Height) + (format.IsStereoscopic ? " 3D" : "") +
         " at " + EditRateText(format.EditRate);
}

void FindChanges(const CompositionFiles& files, FindingList& findings) {
  std::optional<PictureFormat> before;
  for (const AssetFile& use : files.Assets) {
    const auto format = PlayedFormat(use);
    if (!format) continue;
    if (before && !AreSame(*before, *format))
      Add(findings, Finding(FindingID::PictureChanges), files.At(use), FormatText(*before), FormatText(*format));
    before = format;
  }
}

/// The first picture whose file was opened; null where there is none.
const AssetFile* FirstPicture(const CompositionFiles& files) {
  const auto found = std::ranges::find_if(files.Assets, [](const AssetFile& use) {
    return use.Asset->Role == AssetRole::Picture && PictureFormatOf(use.File).has_value();
  });
  return found == files.Assets.end() ? nullptr : &*found;
}

std::string AreaText(std::optional<ui64_t> width, std::optional<ui64_t> height) {
  return (width ? std::to_string(*width) : "?") + 'x' + (height ? std::to_string(*height) : "?");
}

/// What the metadata say of the picture.
void FindAreas(const CompositionFiles& files, const ReelAsset& metadata, FindingList& findings) {
  const AssetFile* picture = FirstPicture(files);
  if (picture == nullptr) return;
  const PictureFormat format = *PictureFormatOf(picture->File);
  const Composition& composition = *files.Composition;
  const auto say = [&](FindingID id, const Node* area, const std::string& expected) {
    Add(findings, Finding(id), composition.At(area, &composition.Reels.front()), expected,
        AreaText(CountOf(area->Child("Width")), CountOf(area->Child("Height"))));
  };
  const std::string size = AreaText(format.Width, format.Height);
  const Node* stored = metadata.Element->Child("MainPictureStoredArea");
  const auto width = stored == nullptr ? std::nullopt : CountOf(stored->Child("Width"));
  const auto height = stored == nullptr ? std::nullopt : CountOf(stored->Child("Height"));
  if (width && height && (*width != format.Width || *height != format.Height))
    say(FindingID::MetaStoredArea, stored, size);
  const Node* active = metadata.Element->Child("MainPictureActiveArea");
  if (active == nullptr) return;
  const ui64_t active_width = CountOf(active->Child("Width")).value_or(0);
  const ui64_t active_height = CountOf(active->Child("Height")).value_or(0);
  const bool is_told = active_width % 2 != 0 || active_height % 2 != 0 || (width && active_width > *width) ||
                       (height && active_height > *height);
  if (!is_told && (active_width > format.Width || active_height > format.Height))
    say(FindingID::MetaActiveArea, active, "even, and at most " + size);
}

void FindMetadata(const CompositionFiles& files, FindingList& findings) {
  for (const Reel& reel : files.Composition->Reels)
    for (const ReelAsset& asset : reel.Assets)
      if (asset.Role == AssetRole::Metadata) return FindAreas(files, asset, findings);
}

}  // namespace

void FindInFiles(const CompositionFiles& files, FindingList& findings) {
  for (const AssetFile& use : files.Assets)
    if (use.IsOpen()) UseCheck(files, use, findings).Run();
  FindChanges(files, findings);
  if (!files.Composition->IsInterop()) FindMetadata(files, findings);
}

void TakeFormats(const CompositionFiles& files, CompositionContext& context) {
  if (const AssetFile* picture = FirstPicture(files)) context.Picture = PictureFormatOf(picture->File);
  for (const AssetFile& use : files.Assets) {
    if (use.Asset->Role != AssetRole::AuxData || !use.IsOpen()) continue;
    const bool is_immersive = use.File->As<QUIRE::ATMOS::AtmosDescriptor>() != nullptr;
    context.HasImmersiveSound = context.HasImmersiveSound.value_or(false) || is_immersive;
  }
}

}  // namespace Assay
