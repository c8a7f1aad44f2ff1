// SPDX-License-Identifier: BSD-3-Clause
#include "Description.h"

#include "terminal/TextForms.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <vector>

namespace Tool {

namespace {

constexpr Ferro::ui32_t SmallestCinemaWidth = 1920;

struct PictureFormat {
  Ferro::ui32_t Width;
  Ferro::ui32_t Height;
  const char* Name;
};

// Containers of D-Cinema (ST 428-1), and those of television that are met.
constexpr std::array PictureFormats = {
    PictureFormat{1998, 1080, "Flat 2K"}, PictureFormat{2048, 858, "Scope 2K"},  PictureFormat{2048, 1080, "Full 2K"},
    PictureFormat{3996, 2160, "Flat 4K"}, PictureFormat{4096, 1716, "Scope 4K"}, PictureFormat{4096, 2160, "Full 4K"},
    PictureFormat{1920, 1080, "16:9 HD"}, PictureFormat{3840, 2160, "16:9 UHD"},
};

std::string Joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts)
    if (!part.empty()) text += (text.empty() ? "" : ", ") + part;
  return text;
}

/// The channels of a sound configuration, without its kind.
std::vector<std::string> ChannelsOf(const std::string& configuration) {
  std::vector<std::string> channels(1);
  for (const char letter : configuration) {
    if (letter == '/' || letter == ',' || letter == '(' || letter == ')')
      channels.emplace_back();
    else
      channels.back() += letter;
  }
  channels.erase(channels.begin());
  return channels;
}

std::string FrameRate(const QUIRE::Rational& rate) {
  return rate.Numerator > 0 && rate.Denominator > 0 ? RateText(rate) + " fps" : "";
}

std::string Language(const CompositionTraits& traits) {
  std::string text = traits.Language;
  if (traits.HasSubtitle)
    text += (text.empty() ? "" : " ") + std::string("with ") + traits.SubtitleLanguage +
            (traits.SubtitleLanguage.empty() ? "" : " ") + "subtitles";
  return text;
}

void TakeReel(const Cairn::Reel& reel, CompositionTraits& traits) {
  traits.HasSound = traits.HasSound.value_or(false) || reel.MainSound.AssetID.HasValue();
  if (traits.Language.empty()) traits.Language = reel.MainSound.Language;
  traits.HasSubtitle = traits.HasSubtitle || reel.MainSubtitle.AssetID.HasValue();
  if (traits.SubtitleLanguage.empty()) traits.SubtitleLanguage = reel.MainSubtitle.Language;
  traits.HasCaptions = traits.HasCaptions || !reel.OffScreenText.empty();
  traits.Encrypted = traits.Encrypted || reel.MainPicture.KeyID.HasValue() || reel.MainSound.KeyID.HasValue();
}

void TakeAsset(const OutlineAsset& asset, CompositionTraits& traits) {
  traits.Encrypted = traits.Encrypted || asset.Asset.KeyID.HasValue();
  switch (asset.Kind) {
    case AssetKind::Picture:
      break;
    case AssetKind::Sound:
      traits.HasSound = true;
      if (traits.Language.empty()) traits.Language = asset.Language;
      break;
    case AssetKind::OnScreenText:
      traits.HasSubtitle = true;
      if (traits.SubtitleLanguage.empty()) traits.SubtitleLanguage = asset.Language;
      break;
    case AssetKind::OffScreenText:
      traits.HasCaptions = true;
      break;
    case AssetKind::AuxData:
      traits.HasImmersiveAudio =
          traits.HasImmersiveAudio || (asset.Found && asset.Found->Info.FileType == Cairn::FT_QUIRE_ATMOS);
      break;
  }
}

/// The facts of the first file of a kind that can be opened.
std::optional<TrackFileFacts> FirstFile(const OutlineComposition& composition, AssetKind kind) {
  for (const OutlineReel& reel : composition.Reels) {
    const OutlineAsset* asset = reel.First(kind);
    if (asset == nullptr || !asset->Found || asset->Found->Info.RealFilename.empty()) continue;
    const TrackFileFacts facts = ReadTrackFileFacts(asset->Found->Info.RealFilename, asset->Found->Info.FileType);
    if (facts.Problem == TrackFileProblem::None) return facts;
  }
  return std::nullopt;
}

}  // namespace

std::string PictureFormatText(Ferro::ui32_t width, Ferro::ui32_t height) {
  if (width == 0 || height == 0) return "";
  const std::string size = std::to_string(width) + "\u00d7" + std::to_string(height);
  for (const PictureFormat& format : PictureFormats)
    if (format.Width == width && format.Height == height) return std::string(format.Name) + ' ' + size;
  return size;
}

std::string SoundFormatText(Ferro::ui32_t channels, const std::string& configuration) {
  const std::string kind = configuration.substr(0, configuration.find_first_of("/("));
  const auto is_digit = [&](size_t at) {
    return at < kind.size() && std::isdigit(static_cast<unsigned char>(kind[at]));
  };
  if (!is_digit(0) || !is_digit(1)) {
    if (configuration.empty() && channels == 6) return "5.1";
    return channels == 0 ? "" : std::to_string(channels) + (channels == 1 ? " channel" : " channels");
  }
  std::string text = {kind[0], '.', kind[1]};
  if (kind.size() > 2) text += ' ' + kind.substr(2);
  const std::vector<std::string> names = ChannelsOf(configuration);
  const auto has = [&](const char* name) { return std::find(names.begin(), names.end(), name) != names.end(); };
  const bool has_visual = has("VIN") || has("VI");
  if (has("HI") || has_visual) text += std::string(" + ") + (!has_visual ? "HI" : has("HI") ? "HI/VI" : "VI");
  return text;
}

std::string ChannelNamesText(const std::string& configuration) {
  return configuration.empty() ? "" : Joined(ChannelsOf(configuration));
}

CompositionTraits TraitsOf(const Cairn::CompositionPlaylist& composition) {
  CompositionTraits traits;
  traits.Stereoscopic = composition.StereoscopicImage;
  traits.Format = composition.DCPFormat;
  traits.Reels = composition.ReelList.size();
  for (const Cairn::Reel& reel : composition.ReelList) TakeReel(reel, traits);
  if (composition.ReelList.empty()) return traits;
  const auto& picture = composition.ReelList.front().MainPicture;
  traits.EditRate = picture.EditRate;
  // SMPTE compositions mostly give the stored size as aspect ratio.
  const auto width = static_cast<Ferro::ui32_t>(std::max(picture.ScreenAspectRatio.Numerator, 0));
  if (width >= SmallestCinemaWidth) {
    traits.Width = width;
    traits.Height = static_cast<Ferro::ui32_t>(std::max(picture.ScreenAspectRatio.Denominator, 0));
  }
  return traits;
}

CompositionTraits TraitsOf(const OutlineComposition& composition) {
  CompositionTraits traits;
  traits.Stereoscopic = composition.Stereoscopic;
  traits.EditRate = composition.EditRate;
  traits.Format = composition.Format;
  traits.Reels = composition.Reels.size();
  if (traits.Reels == 0) return traits;
  traits.HasSound = false;
  bool is_version = false;
  for (const OutlineReel& reel : composition.Reels)
    for (const OutlineAsset& asset : reel.Assets) {
      TakeAsset(asset, traits);
      is_version |= !asset.Found || (composition.Found && asset.Found->Package != composition.Found->Package);
    }
  if (composition.Found) traits.IsVersion = is_version;
  if (const auto picture = FirstFile(composition, AssetKind::Picture)) {
    traits.Width = picture->Width;
    traits.Height = picture->Height;
  }
  if (const auto sound = FirstFile(composition, AssetKind::Sound))
    traits.Sound = SoundFormatText(sound->Channels, sound->Configuration);
  return traits;
}

std::string Describe(const CompositionTraits& traits) {
  if (traits.Reels == 0) return "";
  const char* format = traits.Format == Cairn::DFT_DCI_SMPTE ? "SMPTE"
                       : traits.Format == Cairn::DFT_Interop ? "Interop"
                                                             : "";
  const std::string picture = PictureFormatText(traits.Width, traits.Height);
  return Joined(
      {picture + (traits.Stereoscopic ? (picture.empty() ? "3D" : " 3D") : ""), FrameRate(traits.EditRate),
       traits.HasSound == false ? "no sound" : traits.Sound, traits.HasImmersiveAudio ? "immersive audio" : "",
       Language(traits), traits.HasCaptions ? "captions" : "", format,
       !traits.IsVersion   ? ""
       : *traits.IsVersion ? "VF"
                           : "OV",
       traits.Encrypted ? "encrypted" : "", std::to_string(traits.Reels) + (traits.Reels == 1 ? " reel" : " reels")});
}

std::string Describe(const TrackFileFacts& facts) {
  if (facts.Problem != TrackFileProblem::None || !facts.HasLength) return "";
  const bool has_rate = facts.EditRate.Numerator > 0 && facts.EditRate.Denominator > 0;
  const std::string duration = has_rate ? DurationText(facts.Duration / facts.EditRate.Quotient()) : "";
  if (facts.Channels > 0)
    return Joined({SoundFormatText(facts.Channels, facts.Configuration), SamplingRateText(facts.SamplingRate),
                   std::to_string(facts.SampleBits) + " bit", duration, facts.Encrypted ? "encrypted" : ""});
  const bool is_stereoscopic = facts.Type == Cairn::FT_QUIRE_JP2K_J2C_S;
  return Joined({PictureFormatText(facts.Width, facts.Height) + (is_stereoscopic ? " 3D" : ""),
                 FrameRate(facts.EditRate), duration, facts.Encrypted ? "encrypted" : ""});
}

}  // namespace Tool
