// SPDX-License-Identifier: BSD-3-Clause
#include "SampleDocuments.h"

#include <Cairn/Namespace.h>

#include <array>

namespace CairnTest {
namespace {

using Cairn::CompositionPlaylist;
using Cairn::ui32_t;
using QUIRE::Rational;

constexpr ui32_t ReelLength = 1200;

template <class AssetT>
AssetT Asset(ui32_t number, bool is_encrypted = false) {
  AssetT asset;
  asset.AssetID = SampleID(number);
  asset.EditRate = Rational(24, 1);
  asset.IntrinsicDuration = ReelLength + 48;
  asset.EntryPoint = 24;
  asset.Duration = ReelLength;
  asset.Digest = SampleDigest(static_cast<Cairn::ui8_t>(number));
  if (is_encrypted) asset.KeyID = SampleID(number + 0x1000);
  return asset;
}

Cairn::PictureAsset Picture(ui32_t number, Rational frame_rate, Rational ratio, bool is_encrypted = false) {
  auto asset = Asset<Cairn::PictureAsset>(number, is_encrypted);
  asset.FrameRate = frame_rate;
  asset.ScreenAspectRatio = ratio;
  return asset;
}

Cairn::SoundAsset Sound(ui32_t number, bool is_encrypted = false) {
  auto asset = Asset<Cairn::SoundAsset>(number, is_encrypted);
  asset.Language = "en-GB";
  return asset;
}

Cairn::TimedTextAsset Text(ui32_t number, Cairn::TimedTextPurpose_t purpose, const char* language) {
  auto asset = Asset<Cairn::TimedTextAsset>(number);
  asset.Purpose = purpose;
  asset.Language = language;
  return asset;
}

Cairn::AuxDataAsset AuxData(ui32_t number, Cairn::AuxDataForm_t form) {
  auto asset = Asset<Cairn::AuxDataAsset>(number);
  asset.Form = form;
  asset.DataType = "urn:smpte:ul:060e2b34.04010105.0e090604.00000000";
  return asset;
}

Cairn::MarkerAsset Markers(ui32_t number) {
  auto asset = Asset<Cairn::MarkerAsset>(number);
  asset.Digest.Reset();
  asset.IntrinsicDuration = asset.Duration = ReelLength;
  asset.EntryPoint = 0;
  asset.MarkerList = {{"FFOC", "", "", 1}, {"House lights", "urn:cues", "slowly", 900}, {"LFOC", "", "", 1199}};
  return asset;
}

Cairn::CompositionMetadata Metadata(ui32_t number) {
  Cairn::CompositionMetadata metadata;
  metadata.AssetID = SampleID(number);
  metadata.EditRate = Rational(24, 1);
  metadata.IntrinsicDuration = metadata.Duration = ReelLength;
  metadata.FullContentTitle = "Night Ferry";
  metadata.FullContentTitleLanguage = "en";
  metadata.ReleaseTerritory = "us";
  metadata.ReleaseTerritoryScope = "urn:territories";
  metadata.HasVersionNumber = true;
  metadata.VersionNumber = 3;
  metadata.VersionStatus = "temp";
  metadata.Chain = "Harbour Cinemas";
  metadata.Distributor = "Quayside";
  metadata.Facility = "Lock & Co";
  metadata.AlternateContentVersionList = {{"urn:uuid:00000000-0000-4000-8000-0000000000f1", "Cut 2"}};
  metadata.Luminance = "4.5";
  metadata.LuminanceUnits = "foot-lambert";
  metadata.MainSoundConfiguration = "51/L,R,C,LFE,Ls,Rs,-,-";
  metadata.MainSoundSampleRate = Rational(48000, 1);
  metadata.MainPictureStoredArea = {1998, 1080};
  metadata.MainPictureActiveArea = {1998, 1078};
  metadata.MainSubtitleLanguageList = {"fr", "de-CH"};
  metadata.ExtensionMetadataList = {{"urn:extension", "Application", {{"Profile", "1 < 2"}, {"Grade", "A"}}},
                                    {"urn:empty", "Nothing", {}}};
  return metadata;
}

CompositionPlaylist Heading(ui32_t number, bool is_interop) {
  CompositionPlaylist cpl;
  cpl.NamespaceName = is_interop ? Cairn::NS_Interop_CPL : Cairn::NS_SMPTE_CPL;
  cpl.DCPFormat = is_interop ? Cairn::DFT_Interop : Cairn::DFT_DCI_SMPTE;
  cpl.ID = SampleID(number);
  cpl.Annotation = "Night Ferry \xE2\x80\x93 main feature";
  cpl.IssueDate = "2026-02-03T04:05:06+01:00";
  cpl.Issuer = "Quayside";
  cpl.Creator = "Mastering 7";
  cpl.ContentTitle = "NightFerry_FTR-1_F_EN-FR <&>";
  cpl.ContentKind = Cairn::CK_FEATURE;
  cpl.ContentKindText = "feature";
  if (!is_interop) cpl.ContentVersion = {"urn:version:1", "First version"};
  return cpl;
}

CompositionPlaylist EverythingSMPTE() {
  CompositionPlaylist cpl = Heading(0x100, false);
  cpl.IconID = SampleID(0x101);
  cpl.ContentKind = Cairn::CK_CLIP;
  cpl.ContentKindText = "Clip";
  cpl.ContentKindScope = "http://www.smpte-ra.org/schemas/429-16/2014/CPL-Metadata#scope/content-kind";
  cpl.RatingList = {{"urn:agency", "12"}, {"Board", "PG"}};
  cpl.Metadata = Metadata(0x10F);
  Cairn::Reel& first = cpl.ReelList.emplace_back();
  first.ID = SampleID(0x110);
  first.Annotation = "Reel one";
  first.MainMarkers = Markers(0x111);
  first.MainPicture = Picture(0x112, Rational(24, 1), Rational(1998, 1080));
  first.MainPicture.Annotation = "Graded";
  first.MainSound = Sound(0x113);
  first.MainSubtitle = Text(0x114, Cairn::TT_SUBTITLE, "fr");
  first.OffScreenText = {Text(0x115, Cairn::TT_CAPTION, "en"), Text(0x116, Cairn::TT_SUBTITLE, "de-CH"),
                         Text(0x117, Cairn::TT_CAPTION, "")};
  first.AuxData = {AuxData(0x118, Cairn::ADF_DataType), AuxData(0x119, Cairn::ADF_DataEssenceCoding)};
  Cairn::Reel& second = cpl.ReelList.emplace_back();
  second.ID = SampleID(0x120);
  second.MainPicture = Picture(0x121, Rational(24, 1), Rational(1998, 1080));
  second.MainSubtitle = Text(0x122, Cairn::TT_CAPTION, "en");
  return cpl;
}

CompositionPlaylist StereoscopicSMPTE() {
  CompositionPlaylist cpl = Heading(0x200, false);
  cpl.StereoscopicImage = true;
  Cairn::Reel& reel = cpl.ReelList.emplace_back();
  reel.ID = SampleID(0x210);
  reel.MainPicture = Picture(0x211, Rational(48, 1), Rational(2048, 858), true);
  reel.MainSound = Sound(0x212, true);
  return cpl;
}

CompositionPlaylist CaptionedInterop() {
  CompositionPlaylist cpl = Heading(0x300, true);
  Cairn::Reel& reel = cpl.ReelList.emplace_back();
  reel.ID = SampleID(0x310);
  reel.MainMarkers = Markers(0x311);
  reel.MainPicture = Picture(0x312, Rational(24, 1), Rational(185, 100));
  reel.MainSound = Sound(0x313);
  reel.MainSubtitle = Text(0x314, Cairn::TT_SUBTITLE, "fr");
  reel.OffScreenText = {Text(0x315, Cairn::TT_CAPTION, "en"), Text(0x316, Cairn::TT_CAPTION, "es")};
  return cpl;
}

CompositionPlaylist StereoscopicInterop() {
  CompositionPlaylist cpl = Heading(0x400, true);
  cpl.StereoscopicImage = true;
  cpl.ContentVersion = {"urn:version:2", "Second version"};
  Cairn::Reel& reel = cpl.ReelList.emplace_back();
  reel.ID = SampleID(0x410);
  reel.MainPicture = Picture(0x411, Rational(48, 1), Rational(239, 100));
  reel.MainSound = Sound(0x412);
  return cpl;
}

}  // namespace

std::vector<Sample<CompositionPlaylist>> CompositionSamples() {
  return {{"cpl-smpte-everything.xml", "all-smpte-cpl.xsd", Cairn::DFT_DCI_SMPTE, EverythingSMPTE()},
          {"cpl-smpte-stereoscopic.xml", "all-smpte-cpl.xsd", Cairn::DFT_DCI_SMPTE, StereoscopicSMPTE()},
          {"cpl-interop-captions.xml", "all-interop-cpl.xsd", Cairn::DFT_Interop, CaptionedInterop()},
          {"cpl-interop-stereoscopic.xml", "all-interop-cpl.xsd", Cairn::DFT_Interop, StereoscopicInterop()}};
}

Cairn::UUID SampleID(ui32_t number) {
  std::array<Cairn::ui8_t, 16> bytes{};
  bytes[6] = 0x40;
  bytes[8] = 0x80;
  for (size_t i = 0; i < 4; ++i) bytes[15 - i] = static_cast<Cairn::ui8_t>(number >> (8 * i));
  return Cairn::UUID(bytes);
}

Cairn::SHA1 SampleDigest(Cairn::ui8_t byte) {
  std::array<Cairn::ui8_t, 20> bytes{};
  bytes.fill(byte);
  return Cairn::SHA1(bytes);
}

}  // namespace CairnTest
