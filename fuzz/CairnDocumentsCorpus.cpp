// SPDX-License-Identifier: BSD-3-Clause
// Writes documents of each kind, what is only read of them, paths, and refused documents into the folder given.
#include <Cairn/AssetMap.h>
#include <Cairn/CompositionPlaylist.h>
#include <Cairn/DCSubtitle.h>
#include <Cairn/PackingList.h>

#include <fstream>
#include <string>

namespace {

constexpr char IssueDate[] = "2026-02-03T04:05:06Z";

Cairn::UUID ID(unsigned char last) {
  Cairn::ui8_t bytes[16] = {};
  bytes[15] = last;
  return Cairn::UUID(bytes);
}

void FillAsset(Cairn::GenericAsset& asset, unsigned char number) {
  asset.AssetID = ID(number);
  asset.EditRate = QUIRE::Rational(24, 1);
  asset.IntrinsicDuration = 240;
  asset.EntryPoint = 12;
  asset.Duration = 200;
  asset.KeyID = ID(static_cast<unsigned char>(number + 100));
}

Cairn::CompositionPlaylist Composition(bool is_stereoscopic) {
  Cairn::CompositionPlaylist cpl;
  cpl.ID = ID(1);
  cpl.IssueDate = IssueDate;
  cpl.ContentTitle = "a < b & c";
  cpl.ContentKind = Cairn::CK_FEATURE;
  cpl.RatingList = {{"urn:a", "12"}};
  cpl.StereoscopicImage = is_stereoscopic;
  Cairn::Reel& reel = cpl.ReelList.emplace_back();
  reel.ID = ID(2);
  FillAsset(reel.MainMarkers, 3);
  reel.MainMarkers.MarkerList = {{"FFOC", "urn:s", "note", 1}};
  FillAsset(reel.MainPicture, 4);
  reel.MainPicture.FrameRate = QUIRE::Rational(24, 1);
  reel.MainPicture.ScreenAspectRatio = QUIRE::Rational(185, 100);
  FillAsset(reel.MainSound, 5);
  FillAsset(reel.MainSubtitle, 6);
  FillAsset(reel.OffScreenText.emplace_back(), 7);
  reel.OffScreenText.back().Purpose = Cairn::TT_CAPTION;
  reel.OffScreenText.back().Language = "en";
  return cpl;
}

Cairn::CompositionPlaylist CompositionWithExtensions() {
  Cairn::CompositionPlaylist cpl = Composition(false);
  FillAsset(cpl.ReelList.front().AuxData.emplace_back(), 8);
  cpl.ReelList.front().AuxData.emplace_back(cpl.ReelList.front().AuxData.back()).Form = Cairn::ADF_DataEssenceCoding;
  Cairn::CompositionMetadata& metadata = cpl.Metadata;
  FillAsset(metadata, 9);
  metadata.ReleaseTerritory = "001";
  metadata.HasVersionNumber = true;
  metadata.AlternateContentVersionList = {{"urn:v", "V"}};
  metadata.Luminance = "14";
  metadata.LuminanceUnits = "foot-lambert";
  metadata.MainSoundSampleRate = QUIRE::Rational(48000, 1);
  metadata.MainPictureStoredArea = metadata.MainPictureActiveArea = {1998, 1080};
  metadata.MainSubtitleLanguageList = {"fr", "de"};
  metadata.ExtensionMetadataList = {{"urn:e", "N", {{"P", "V"}}}};
  return cpl;
}

Cairn::PackingList PackingListOf() {
  Cairn::PackingList pkl;
  pkl.ID = ID(1);
  pkl.IssueDate = IssueDate;
  Cairn::ui8_t digest[20] = {1};
  pkl.AssetList = {{ID(2), "a", Cairn::SHA1(digest), 17, "text/xml", "a.xml"}};
  return pkl;
}

Cairn::AssetMap AssetMapOf() {
  Cairn::AssetMap map;
  map.ID = ID(1);
  map.IssueDate = IssueDate;
  map.AssetList = {{ID(2), "", true, {{"PKL.xml", 1, 0, true, 17}, {"a%20b/c", 2, 17, false, 0}}}};
  return map;
}

Cairn::DCSubtitle Subtitle() {
  Cairn::DCSubtitle document;
  document.SubtitleID = ID(1);
  document.FontList = {{"F", "f.ttf"}};
  document.SpotList = {{"1", "00:00:04:000", "00:00:06:125", {"one", "two"}, {"1.png"}}};
  return document;
}

constexpr char TimedText[] =
    "<SubtitleReel xmlns='http://www.smpte-ra.org/schemas/428-7/2014/DCST' IntrinsicPictureResolution='1998x1080'>"
    "<Id>urn:uuid:00000000-0000-4000-8000-000000000001</Id><ContentTitleText>T</ContentTitleText>"
    "<IssueDate>2026-02-03T04:05:06Z</IssueDate><ReelNumber>1</ReelNumber><Language>en</Language>"
    "<EditRate>24 1</EditRate><TimeCodeRate>24</TimeCodeRate><StartTime>00:00:00:00</StartTime>"
    "<DisplayType>MainSubtitle</DisplayType><LoadFont ID='F'>urn:uuid:00000000-0000-4000-8000-000000000002</LoadFont>"
    "<SubtitleList><Font ID='F' Size='48' Color='FFFFFFFF' Effect='border' EffectColor='FF000000' Weight='bold'>"
    "<Subtitle SpotNumber='1' TimeIn='00:00:04:00' TimeOut='00:00:06:03' FadeUpTime='00:00:00:02'>"
    "<LoadVariableZ ID='z'>1</LoadVariableZ><Font Italic='yes' Spacing='0.1' AspectAdjust='0.8' Script='sub'>"
    "<Text Halign='left' Hposition='-1.5' Valign='bottom' Vposition='8' Zposition='2' VariableZ='z'>a"
    "<Font Underline='yes' Feather='yes' EffectSize='0.1'>b</Font><Ruby><Rb>c</Rb><Rt Size='0.4' Position='after' "
    "Offset='0.1'>d</Rt></Ruby><Space Size='0.2'/><HGroup>12</HGroup><Rotate Direction='left'>e</Rotate></Text></Font>"
    "<Image Valign='top' Vposition='8'>urn:uuid:00000000-0000-4000-8000-000000000003</Image></Subtitle>"
    "<Subtitle TimeIn='00:00:05:00' TimeOut='00:00:05:20'><Text Direction='ttb'>f</Text></Subtitle>"
    "</Font></SubtitleList></SubtitleReel>";

class Seeds {
 public:
  explicit Seeds(std::string folder) : m_Folder(std::move(folder)) {}

  void Add(const std::string& text) {
    std::ofstream(m_Folder + "/" + std::to_string(m_Count++), std::ios::binary) << text;
  }

  template <class T>
  void AddDocument(const T& document, Cairn::DCPFormat_t format) {
    std::string text;
    m_IsComplete = m_IsComplete && document.EncodeXML(text, format).Success();
    Add(text);
  }

  void AddSubtitle(const Cairn::DCSubtitle& document) {
    std::string text;
    m_IsComplete = m_IsComplete && document.EncodeXML(text).Success();
    Add(text);
  }

  [[nodiscard]] bool IsComplete() const { return m_IsComplete; }

 private:
  std::string m_Folder;
  int m_Count = 0;
  bool m_IsComplete = true;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  Seeds seeds(argv[1]);
  for (const auto format : {Cairn::DFT_DCI_SMPTE, Cairn::DFT_Interop}) {
    seeds.AddDocument(Composition(false), format);
    seeds.AddDocument(Composition(true), format);
    seeds.AddDocument(PackingListOf(), format);
    seeds.AddDocument(AssetMapOf(), format);
    seeds.AddDocument(Cairn::VolumeIndex(), format);
  }
  seeds.AddDocument(CompositionWithExtensions(), Cairn::DFT_DCI_SMPTE);
  seeds.AddSubtitle(Subtitle());
  seeds.Add(TimedText);
  seeds.Add(
      "<DCSubtitle Version='1.1'><SubtitleID>00000000-0000-4000-8000-000000000001</SubtitleID><LoadFont Id='F' "
      "URI='f.ttf'/><Font Id='F' Spacing='0.1em'><Font Underlined='yes'><Subtitle SpotNumber='1' "
      "TimeIn='00:00:01.5' TimeOut='00:00:02:125' FadeUpTime='20' FadeDownTime='00:00:00:020'><Text HAlign='right' "
      "VPosition='8' Direction='vertical'>a<Font Size='9'>b<Font Size='8'>c</Font></Font></Text><Image>1.png</Image>"
      "</Subtitle></Font></Font></DCSubtitle>");
  seeds.Add(
      "<?xml version='1.0' encoding='ISO-8859-1'?><DCSubtitle><!-- \xE9 "
      "--><Text><![CDATA[<]]>&#65;</Text></DCSubtitle>");
  seeds.Add("<!DOCTYPE DCSubtitle [<!ENTITY x SYSTEM \"file:///etc/passwd\">]><DCSubtitle>&x;</DCSubtitle>");
  seeds.Add(
      "<DCSubtitle xmlns:d=\"http://www.w3.org/2000/09/xmldsig#\"><KeyInfo><d:X509Data><X509Certificate>AQID"
      "</X509Certificate></d:X509Data></KeyInfo></DCSubtitle>");
  for (const char* path : {"file:///reel%201/a.mxf", "%2e%2e/a", "a\\..\\b", "./a//b/../c"}) seeds.Add(path);
  return seeds.IsComplete() ? 0 : 1;
}
