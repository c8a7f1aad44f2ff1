// SPDX-License-Identifier: BSD-3-Clause
#include "CompositionReader.h"

#include <Cairn/Namespace.h>

#include <Ferro/CheckedMath.h>

#include <algorithm>

namespace Cairn {
namespace {

enum class AssetKind { Markers, Picture, StereoPicture, Sound, MainText, OffScreenText, AuxData, Metadata };

struct AssetElement {
  const char* NamespaceName;  // null: the document's own
  const char* Name;
  AssetKind Kind;
};

// The elements of a reel's asset list. Extension elements without their namespace are taken too. Each has
//
//   Id, AnnotationText?, EditRate, IntrinsicDuration, EntryPoint?, Duration?
//   KeyId?, Hash?                              where it names a file
//   FrameRate, ScreenAspectRatio               pictures
//   Language?                                  sound and text
//
// (ST 429-7:2006, 7)
constexpr AssetElement s_AssetElements[] = {
    {nullptr, "MainMarkers", AssetKind::Markers},
    {nullptr, "MainPicture", AssetKind::Picture},
    {nullptr, "MainSound", AssetKind::Sound},
    {nullptr, "MainSubtitle", AssetKind::MainText},
    {nullptr, "MainStereoscopicPicture", AssetKind::StereoPicture},
    {NS_SMPTE_Stereo, "MainStereoscopicPicture", AssetKind::StereoPicture},
    {NS_SMPTE_Stereo_2007, "MainStereoscopicPicture", AssetKind::StereoPicture},
    {NS_Interop_Stereo, "MainStereoscopicPicture", AssetKind::StereoPicture},
    {nullptr, "MainCaption", AssetKind::MainText},
    {NS_SMPTE_TT, "MainCaption", AssetKind::MainText},
    {nullptr, "ClosedCaption", AssetKind::OffScreenText},
    {NS_SMPTE_TT, "ClosedCaption", AssetKind::OffScreenText},
    {NS_Interop_CC, "ClosedCaption", AssetKind::OffScreenText},
    {nullptr, "ClosedSubtitle", AssetKind::OffScreenText},
    {NS_SMPTE_TT, "ClosedSubtitle", AssetKind::OffScreenText},
    {nullptr, "MainClosedCaption", AssetKind::OffScreenText},
    {NS_SMPTE_TT, "MainClosedCaption", AssetKind::OffScreenText},
    {NS_Interop_CC, "MainClosedCaption", AssetKind::OffScreenText},
    {nullptr, "AuxData", AssetKind::AuxData},
    {NS_SMPTE_AuxData, "AuxData", AssetKind::AuxData},
    {NS_ImmersiveAudio, "AuxData", AssetKind::AuxData},
    {nullptr, "CompositionMetadataAsset", AssetKind::Metadata},
    {NS_SMPTE_Metadata, "CompositionMetadataAsset", AssetKind::Metadata},
};

const AssetElement* FindAssetElement(const Element* element, const std::string& document_namespace) {
  const std::string& name = LocalName(element);
  const std::string namespace_name = NamespaceName(element);
  const auto* found = std::ranges::find_if(s_AssetElements, [&](const AssetElement& known) {
    return name == known.Name &&
           namespace_name == (known.NamespaceName == nullptr ? document_namespace : known.NamespaceName);
  });
  return found == std::end(s_AssetElements) ? nullptr : found;
}

// The child of that name in the vocabulary of the document or of the extension; null when there is none.
const Element* OwnChild(const Element* element, std::string_view name) {
  for (auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child))
    if (IsOwnElement(child) && LocalName(child) == name) return child;
  return nullptr;
}

PictureAsset ReadPicture(FieldReader& fields, const Element* element) {
  PictureAsset asset;
  ReadGenericAsset(fields, element, asset);
  if (const Element* rate = OwnChild(element, "FrameRate")) {
    FieldReader lenient(fields.Document(), fields.Log(), FieldReader::Mode::Lenient);  // the EditRate is what counts
    lenient.Rate(rate, asset.FrameRate);
  }
  if (const Element* ratio = OwnChild(element, "ScreenAspectRatio")) FieldReader::Ratio(ratio, asset.ScreenAspectRatio);
  return asset;
}

TimedTextAsset ReadTimedText(FieldReader& fields, const Element* element) {
  TimedTextAsset asset;
  ReadGenericAsset(fields, element, asset);
  asset.Language = TrimmedText(OwnChild(element, "Language"));
  asset.Purpose = LocalName(element).ends_with("Caption") ? TT_CAPTION : TT_SUBTITLE;
  return asset;
}

AuxDataAsset ReadAuxData(FieldReader& fields, const Element* element) {
  AuxDataAsset asset;
  ReadGenericAsset(fields, element, asset, false);
  const Element* coding = OwnChild(element, "DataEssenceCoding");
  if (coding != nullptr || NamespaceName(element) == NS_SMPTE_AuxData) asset.Form = ADF_DataEssenceCoding;
  asset.DataType = TrimmedText(coding != nullptr ? coding : OwnChild(element, "DataType"));
  return asset;
}

// Nothing played depends on markers, and their identifier names no file.
void ReadMarkers(FieldReader& strict, const Element* element, MarkerAsset& asset) {
  FieldReader fields(strict.Document(), strict.Log(), FieldReader::Mode::Lenient);
  ReadGenericAsset(fields, element, asset);
  const Element* list = OwnChild(element, "MarkerList");
  for (auto* child = FirstChildElement(list); child != nullptr; child = NextSiblingElement(child)) {
    if (LocalName(child) != "Marker" || !IsOwnElement(child)) continue;
    Marker marker;
    const Element* label = OwnChild(child, "Label");
    marker.Label = TrimmedText(label);
    marker.Scope = AttributeValue(label, "scope");
    marker.Annotation = TextContent(OwnChild(child, "AnnotationText"));
    if (const Element* offset = OwnChild(child, "Offset")) fields.Count(offset, marker.Offset);
    asset.MarkerList.push_back(std::move(marker));
  }
}

// A reel has one of these at most; a second is reported and left out.
template <class AssetT>
void SetOnce(FieldReader& fields, const Element* element, AssetT& slot, AssetT asset) {
  if (slot.AssetID.HasValue()) {
    fields.Log().Warn("%s: reel has another %s, ignored\n", fields.Document(), LocalName(element).c_str());
  } else {
    slot = std::move(asset);
  }
}

void ReadPictureInto(FieldReader& fields, const Element* element, Reel& reel, CompositionPlaylist& cpl,
                     bool is_stereoscopic) {
  if (!reel.MainPicture.AssetID.HasValue() && is_stereoscopic) cpl.StereoscopicImage = true;
  SetOnce(fields, element, reel.MainPicture, ReadPicture(fields, element));
}

void ReadSound(FieldReader& fields, const Element* element, Reel& reel) {
  SoundAsset asset;
  ReadGenericAsset(fields, element, asset);
  asset.Language = TrimmedText(OwnChild(element, "Language"));
  SetOnce(fields, element, reel.MainSound, std::move(asset));
}

void ReadAsset(FieldReader& fields, const Element* element, AssetKind kind, Reel& reel, CompositionPlaylist& cpl) {
  switch (kind) {
    case AssetKind::Markers:
      return ReadMarkers(fields, element, reel.MainMarkers);
    case AssetKind::Picture:
      return ReadPictureInto(fields, element, reel, cpl, false);
    case AssetKind::StereoPicture:
      return ReadPictureInto(fields, element, reel, cpl, true);
    case AssetKind::Sound:
      return ReadSound(fields, element, reel);
    case AssetKind::MainText:
      return SetOnce(fields, element, reel.MainSubtitle, ReadTimedText(fields, element));
    case AssetKind::OffScreenText:
      reel.OffScreenText.push_back(ReadTimedText(fields, element));
      return;
    case AssetKind::AuxData:
      reel.AuxData.push_back(ReadAuxData(fields, element));
      return;
    case AssetKind::Metadata:
      return ReadCompositionMetadata(fields, element, cpl.Metadata);
  }
}

void ReadAssetList(FieldReader& fields, const Element* list, Reel& reel, CompositionPlaylist& cpl) {
  for (auto* child = FirstChildElement(list); child != nullptr; child = NextSiblingElement(child)) {
    const AssetElement* known = FindAssetElement(child, cpl.NamespaceName);
    if (known == nullptr) continue;
    const bool is_smpte_only = known->Kind == AssetKind::AuxData || known->Kind == AssetKind::Metadata;
    if (is_smpte_only && cpl.DCPFormat == DFT_Interop) {
      fields.Log().Warn("%s: %s is not defined in Interop, ignored\n", fields.Document(), known->Name);
    } else {
      ReadAsset(fields, child, known->Kind, reel, cpl);
    }
  }
}

void SetDuration(FieldReader& fields, const std::string& name, GenericAsset& asset, bool has_duration) {
  if (!has_duration && asset.EntryPoint > asset.IntrinsicDuration) {
    fields.Malformed((name + " EntryPoint").c_str(), std::to_string(asset.EntryPoint));
  } else if (!has_duration) {
    asset.Duration = asset.IntrinsicDuration - asset.EntryPoint;
  } else if (!Ferro::CheckedAdd(asset.EntryPoint, asset.Duration)) {
    fields.Malformed((name + " Duration").c_str(), std::to_string(asset.Duration));
  }
}

}  // namespace

void ReadGenericAsset(FieldReader& fields, const Element* element, GenericAsset& asset, bool is_rate_required) {
  bool has_id = false;
  bool has_rate = false;
  bool has_length = false;
  bool has_duration = false;
  for (auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child)) {
    if (!IsOwnElement(child)) continue;
    const std::string& name = LocalName(child);
    if (name == "Id") {
      has_id = true;
      fields.ID(child, asset.AssetID);
    } else if (name == "AnnotationText") {
      asset.Annotation = TextContent(child);
    } else if (name == "EditRate") {
      has_rate = true;
      fields.Rate(child, asset.EditRate);
    } else if (name == "IntrinsicDuration") {
      has_length = true;
      fields.Count(child, asset.IntrinsicDuration);
    } else if (name == "EntryPoint") {
      fields.Count(child, asset.EntryPoint);
    } else if (name == "Duration") {
      has_duration = true;
      fields.Count(child, asset.Duration);
    } else if (name == "KeyId") {
      fields.ID(child, asset.KeyID);
    } else if (name == "Hash") {
      fields.Digest(child, asset.Digest);
    }
  }
  const std::string& name = LocalName(element);
  if (!has_id) fields.Missing((name + " Id").c_str());
  if (!has_rate && is_rate_required) fields.Missing((name + " EditRate").c_str());
  if (!has_length) fields.Missing((name + " IntrinsicDuration").c_str());
  SetDuration(fields, name, asset, has_duration);
}

void ReadReel(FieldReader& fields, const Element* element, CompositionPlaylist& cpl) {
  Reel& reel = cpl.ReelList.emplace_back();
  if (const Element* id = OwnChild(element, "Id")) {
    fields.ID(id, reel.ID);
  } else {
    fields.Missing("Reel Id");
  }
  reel.Annotation = TextContent(OwnChild(element, "AnnotationText"));
  ReadAssetList(fields, OwnChild(element, "AssetList"), reel, cpl);
  for (AuxDataAsset& asset : reel.AuxData)
    if (!asset.EditRate.HasValue()) asset.EditRate = reel.MainPicture.EditRate;
}

}  // namespace Cairn
