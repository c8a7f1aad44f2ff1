// SPDX-License-Identifier: BSD-3-Clause
#include "RandomDocuments.h"

#include <Cairn/Namespace.h>

#include <array>
#include <iterator>
#include <numeric>

namespace CairnTest {

using namespace Cairn;

ui32_t RandomDocuments::Number() {
  static constexpr ui32_t Edges[] = {0, 1, 24, 0x7FFFFFFF};
  return Chance(3) ? Edges[UpTo(std::size(Edges) - 1)] : static_cast<ui32_t>(UpTo(1'000'000));
}

std::string RandomDocuments::Text() {
  static constexpr const char* Pieces[] = {"a",
                                           "Z",
                                           " ",
                                           "\t",
                                           "\n",
                                           "\r",
                                           "&",
                                           "<",
                                           ">",
                                           "\"",
                                           "'",
                                           "]]>",
                                           "--",
                                           "&lt;",
                                           "<!--",
                                           "\xC3\xA9",
                                           "\xE4\xB8\x96",
                                           "\xF0\x9F\x8E\xAC",
                                           "=\"",
                                           "0",
                                           "?>",
                                           "\xEF\xBF\xBD",
                                           "\xC2\x85",
                                           "\xE2\x80\xA8"};
  std::string text;
  for (size_t i = UpTo(12) + 1; i > 0; --i) text += Pieces[UpTo(std::size(Pieces) - 1)];
  return text;
}

std::string RandomDocuments::TrimmedText() {
  return "(" + Text() + ")";
}

std::string RandomDocuments::Word() {
  std::string word;
  for (size_t i = UpTo(10) + 1; i > 0; --i) word += static_cast<char>('a' + UpTo(25));
  return word;
}

std::string RandomDocuments::Language() {
  static constexpr const char* Tags[] = {"", "en", "fr-CA", "es-419", "zh-Hant-TW", "x-private", "de-CH-1996"};
  return Tags[UpTo(std::size(Tags) - 1)];
}

std::string RandomDocuments::Date() {
  static constexpr const char* Dates[] = {"2026-02-03T04:05:06+00:00", "1999-12-31T23:59:59Z",
                                          "2024-02-29T00:00:00-11:30", "2024-03-01T09:30:00.250-00:00"};
  return Dates[UpTo(std::size(Dates) - 1)];
}

UUID RandomDocuments::ID() {
  std::array<ui8_t, 16> bytes{};
  for (ui8_t& byte : bytes) byte = static_cast<ui8_t>(UpTo(255));
  return UUID(bytes);
}

SHA1 RandomDocuments::Digest() {
  std::array<ui8_t, 20> bytes{};
  for (ui8_t& byte : bytes) byte = static_cast<ui8_t>(UpTo(255));
  return SHA1(bytes);
}

QUIRE::Rational RandomDocuments::Rate() {
  const auto numerator = static_cast<i32_t>(UpTo(120'000) + 1);
  const auto denominator = static_cast<i32_t>(Chance(2) ? 1 : UpTo(1'001) + 1);
  const i32_t divisor = std::gcd(numerator, denominator);
  return {numerator / divisor, denominator / divisor};
}

// An Interop ratio has at most two digits after the point, the last of them not 0.
QUIRE::Rational RandomDocuments::Ratio(bool is_interop) {
  if (!is_interop) return {static_cast<i32_t>(UpTo(4095) + 1), static_cast<i32_t>(UpTo(2159) + 1)};
  const auto whole = static_cast<i32_t>(UpTo(3) + 1);
  const auto last = static_cast<i32_t>(UpTo(8) + 1);
  if (Chance(3)) return {whole, 1};
  return Chance(2) ? QUIRE::Rational(whole * 10 + last, 10) : QUIRE::Rational(whole * 100 + last, 100);
}

void RandomDocuments::FillAsset(GenericAsset& asset, bool is_track_file) {
  asset.AssetID = ID();
  asset.Annotation = OptionalText();
  asset.EditRate = Rate();
  asset.IntrinsicDuration = Number();
  asset.EntryPoint = Chance(2) ? 0 : Number();
  asset.Duration = Chance(2) ? asset.IntrinsicDuration : Number();
  if (!is_track_file) return;
  asset.KeyID = OptionalID();
  if (Chance(2)) asset.Digest = Digest();
}

PictureAsset RandomDocuments::Picture(bool is_interop) {
  PictureAsset asset;
  FillAsset(asset, true);
  asset.FrameRate = Rate();
  asset.ScreenAspectRatio = Ratio(is_interop);
  return asset;
}

// Interop knows subtitles on the screen and captions off it, no others.
TimedTextAsset RandomDocuments::TimedText(bool is_interop, bool is_main) {
  TimedTextAsset asset;
  FillAsset(asset, true);
  asset.Language = Language();
  const bool is_caption = is_interop ? !is_main : Chance(2);
  asset.Purpose = is_caption ? TT_CAPTION : TT_SUBTITLE;
  return asset;
}

MarkerAsset RandomDocuments::Markers() {
  MarkerAsset asset;
  FillAsset(asset, false);
  for (size_t i = UpTo(4); i > 0; --i)
    asset.MarkerList.push_back({TrimmedText(), Chance(2) ? "urn:" + Word() : "", OptionalText(), Number()});
  return asset;
}

CompositionMetadata RandomDocuments::Metadata() {
  CompositionMetadata metadata;
  FillAsset(metadata, false);
  metadata.FullContentTitle = TrimmedText();
  metadata.FullContentTitleLanguage = Language();
  if (Chance(2)) metadata.ReleaseTerritory = TrimmedText();
  if (!metadata.ReleaseTerritory.empty() && Chance(2)) metadata.ReleaseTerritoryScope = "urn:" + Word();
  metadata.HasVersionNumber = Chance(2);
  if (metadata.HasVersionNumber) metadata.VersionNumber = Number();
  if (metadata.HasVersionNumber && Chance(2)) metadata.VersionStatus = "pre";
  if (Chance(2)) metadata.Chain = TrimmedText();
  if (Chance(2)) metadata.Distributor = TrimmedText();
  if (Chance(2)) metadata.Facility = TrimmedText();
  for (size_t i = UpTo(2); i > 0; --i) metadata.AlternateContentVersionList.push_back({"urn:" + Word(), Text()});
  if (Chance(2)) metadata.Luminance = std::to_string(UpTo(100) + 1) + ".5";
  if (!metadata.Luminance.empty()) metadata.LuminanceUnits = "candela-per-square-metre";
  metadata.MainSoundConfiguration = TrimmedText();
  metadata.MainSoundSampleRate = Rate();
  metadata.MainPictureStoredArea = {Number() + 1, Number() + 1};
  metadata.MainPictureActiveArea = {Number() + 1, Number() + 1};
  for (size_t i = UpTo(2); i > 0; --i) metadata.MainSubtitleLanguageList.push_back(Word().substr(0, 8));
  for (size_t i = UpTo(2); i > 0; --i) {
    ExtensionMetadata& group = metadata.ExtensionMetadataList.emplace_back();
    group = {"urn:" + Word(), TrimmedText(), {}};
    for (size_t j = UpTo(2); j > 0; --j) group.PropertyList.emplace_back(TrimmedText(), TrimmedText());
  }
  return metadata;
}

Reel RandomDocuments::Reel(bool is_interop) {
  Cairn::Reel reel;
  reel.ID = ID();
  reel.Annotation = OptionalText();
  if (Chance(2)) reel.MainMarkers = Markers();
  if (!Chance(5)) reel.MainPicture = Picture(is_interop);
  if (Chance(2)) {
    FillAsset(reel.MainSound, true);
    reel.MainSound.Language = Language();
  }
  if (Chance(2)) reel.MainSubtitle = TimedText(is_interop, true);
  for (size_t i = UpTo(7); i > 0; --i) reel.OffScreenText.push_back(TimedText(is_interop, false));
  for (size_t i = is_interop ? 0 : UpTo(3); i > 0; --i) {
    AuxDataAsset& asset = reel.AuxData.emplace_back();
    FillAsset(asset, true);
    asset.Form = Chance(2) ? ADF_DataType : ADF_DataEssenceCoding;
    asset.DataType = "urn:" + Word();
  }
  return reel;
}

CompositionPlaylist RandomDocuments::Composition() {
  CompositionPlaylist cpl;
  cpl.DCPFormat = Format();
  const bool is_interop = cpl.DCPFormat == DFT_Interop;
  cpl.NamespaceName = is_interop ? NS_Interop_CPL : NS_SMPTE_CPL;
  cpl.ID = ID();
  cpl.Annotation = OptionalText();
  cpl.IconID = OptionalID();
  cpl.IssueDate = Date();
  cpl.Issuer = OptionalText();
  cpl.Creator = OptionalText();
  cpl.ContentTitle = OptionalText();
  cpl.ContentKind = static_cast<ContentKind_t>(UpTo(CK_MAX - 1));
  cpl.ContentKindText = cpl.ContentKind == CK_UNKNOWN ? "(" + Word() + ")" : ContentKindName(cpl.ContentKind);
  if (Chance(3)) cpl.ContentKindScope = "urn:" + Word();
  if (!is_interop || Chance(2)) cpl.ContentVersion = {"urn:" + Word(), Text()};
  for (size_t i = UpTo(3); i > 0; --i) cpl.RatingList.push_back({"urn:" + Word(), TrimmedText()});
  const bool wants_stereo = Chance(3);
  for (size_t i = UpTo(5) + 1; i > 0; --i) {
    cpl.ReelList.push_back(Reel(is_interop));
    if (wants_stereo && cpl.ReelList.back().MainPicture.AssetID.HasValue()) cpl.StereoscopicImage = true;
  }
  if (!is_interop && Chance(2)) cpl.Metadata = Metadata();
  return cpl;
}

PackingList RandomDocuments::PackingList() {
  Cairn::PackingList pkl;
  pkl.DCPFormat = Format();
  const bool is_interop = pkl.DCPFormat == DFT_Interop;
  pkl.NamespaceName = is_interop ? NS_Interop_PKL : NS_SMPTE_PKL;
  pkl.ID = ID();
  pkl.Annotation = OptionalText();
  pkl.IconID = OptionalID();
  pkl.IssueDate = Date();
  pkl.Issuer = OptionalText();
  pkl.Creator = OptionalText();
  if (!is_interop) pkl.GroupID = OptionalID();
  for (size_t i = UpTo(9) + 1; i > 0; --i) {
    Cairn::PackingList::Asset& asset = pkl.AssetList.emplace_back();
    asset = {ID(), OptionalText(), Digest(), ui64_t{Number()} * Number() + 1, TrimmedText(), OptionalText()};
    if (is_interop && Chance(2)) asset.Digest.Reset();
  }
  return pkl;
}

AssetMap RandomDocuments::AssetMap() {
  Cairn::AssetMap map;
  map.DCPFormat = Format();
  map.NamespaceName = map.DCPFormat == DFT_Interop ? NS_Interop_AM : NS_SMPTE_AM;
  map.ID = ID();
  map.Annotation = OptionalText();
  map.Creator = OptionalText();
  map.VolumeCount = ui64_t{Number()} + 1;
  map.IssueDate = Date();
  map.Issuer = OptionalText();
  for (size_t i = UpTo(9) + 1; i > 0; --i) {
    Cairn::AssetMap::Asset& asset = map.AssetList.emplace_back();
    asset = {ID(), OptionalText(), Chance(4), {}};
    for (size_t j = UpTo(2) + 1; j > 0; --j) {
      const bool has_length = Chance(2);
      asset.ChunkList.push_back({Word() + "/" + Word() + ".mxf", ui64_t{Number()} + 1, ui64_t{Number()} * Number(),
                                 has_length, has_length ? ui64_t{Number()} * Number() + 1 : 0});
    }
  }
  return map;
}

VolumeIndex RandomDocuments::VolumeIndex() {
  Cairn::VolumeIndex volume;
  volume.DCPFormat = Format();
  volume.NamespaceName = volume.DCPFormat == DFT_Interop ? NS_Interop_VL : NS_SMPTE_AM;
  volume.Index = ui64_t{Number()} * Number() + 1;
  return volume;
}

DCSubtitle RandomDocuments::Subtitle() {
  DCSubtitle document;
  document.DCPFormat = DFT_Interop;
  document.Version = Chance(2) ? "1.0" : "1.1";
  document.SubtitleID = ID();
  document.MovieTitle = TrimmedText();
  document.ReelNumber = Number();
  document.Language = TrimmedText();
  for (size_t i = UpTo(2); i > 0; --i) document.FontList.push_back({Word(), Word() + ".ttf"});
  for (size_t i = UpTo(6); i > 0; --i) {
    DCSubtitle::Spot& spot = document.SpotList.emplace_back();
    spot = {std::to_string(Number()), "00:00:04:000", "00:01:06.5", {}, {}};
    for (size_t j = UpTo(3); j > 0; --j) spot.TextList.push_back(Text());
    for (size_t j = spot.TextList.empty() ? 1 : UpTo(2); j > 0; --j) spot.ImageList.push_back(Word() + ".png");
  }
  return document;
}

}  // namespace CairnTest
