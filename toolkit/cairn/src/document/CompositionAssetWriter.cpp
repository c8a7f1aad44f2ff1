// SPDX-License-Identifier: BSD-3-Clause
#include "CompositionWriter.h"
#include "base/Decimal.h"

#include <Cairn/Namespace.h>

namespace Cairn {
namespace {

using Ferro::XMLElement;

// Elements of an extension declare its namespace themselves, under a prefix: the document's own has none.
XMLElement& AddExtension(XMLElement& list, const std::string& prefix, const char* name, const char* namespace_name) {
  XMLElement& element = list.AddChild(prefix + ":" + name);
  element.SetAttr("xmlns:" + prefix, namespace_name);
  return element;
}

void WriteTrackFileAsset(FieldWriter& fields, XMLElement& element, const GenericAsset& asset) {
  WriteGenericAsset(fields, element, asset, true);
  fields.OptionalID(element, "KeyId", asset.KeyID);
  FieldWriter::OptionalDigest(element, "Hash", asset.Digest);
}

// SMPTE has two integers, Interop one decimal number.
void WriteAspectRatio(FieldWriter& fields, XMLElement& element, const QUIRE::Rational& ratio) {
  const bool is_known = ratio.Numerator > 0 && ratio.Denominator > 0;
  if (!is_known) return fields.Missing(element.Name() + " ScreenAspectRatio");
  const std::string text = fields.IsInterop() ? FormatDecimalFraction(ratio) : ratio.EncodeString();
  if (text == "0") fields.Invalid(element.Name() + " ScreenAspectRatio", ratio.EncodeString());
  element.AddChildWithContent("ScreenAspectRatio", text);
}

void WritePicture(FieldWriter& fields, XMLElement& element, const PictureAsset& asset) {
  WriteTrackFileAsset(fields, element, asset);
  fields.Rate(element, "FrameRate", asset.FrameRate);
  WriteAspectRatio(fields, element, asset.ScreenAspectRatio);
}

void WriteStereoscopicPicture(FieldWriter& fields, XMLElement& list, const PictureAsset& asset) {
  const char* namespace_name = fields.IsInterop() ? NS_Interop_Stereo : NS_SMPTE_Stereo;
  WritePicture(fields, AddExtension(list, "msp-cpl", "MainStereoscopicPicture", namespace_name), asset);
}

void WriteMarkers(FieldWriter& fields, XMLElement& list, const MarkerAsset& asset) {
  XMLElement& element = list.AddChild("MainMarkers");
  WriteGenericAsset(fields, element, asset, false);
  XMLElement& markers = element.AddChild("MarkerList");
  for (const Marker& marker : asset.MarkerList) {
    XMLElement& item = markers.AddChild("Marker");
    XMLElement& label = item.AddChildWithContent("Label", marker.Label);
    if (!marker.Scope.empty()) label.SetAttr("scope", marker.Scope);
    fields.OptionalText(item, "AnnotationText", marker.Annotation);
    FieldWriter::Count(item, "Offset", marker.Offset);
  }
}

void WriteSound(FieldWriter& fields, XMLElement& list, const SoundAsset& asset) {
  XMLElement& element = list.AddChild("MainSound");
  WriteTrackFileAsset(fields, element, asset);
  fields.OptionalLanguage(element, "Language", asset.Language);
}

void WriteSubtitle(FieldWriter& fields, XMLElement& list, const TimedTextAsset& asset) {
  XMLElement& element = list.AddChild("MainSubtitle");
  WriteTrackFileAsset(fields, element, asset);
  fields.OptionalLanguage(element, "Language", asset.Language);
}

void WriteSMPTECaption(FieldWriter& fields, XMLElement& list, const char* name, const TimedTextAsset& asset) {
  XMLElement& element = AddExtension(list, "tt", name, NS_SMPTE_TT);
  WriteTrackFileAsset(fields, element, asset);
  fields.OptionalLanguage(element, "tt:Language", asset.Language);
}

void WriteInteropCaption(FieldWriter& fields, XMLElement& list, const TimedTextAsset& asset) {
  XMLElement& element = AddExtension(list, "cc-cpl", "MainClosedCaption", NS_Interop_CC);
  WriteTrackFileAsset(fields, element, asset);
  fields.OptionalLanguage(element, "Language", asset.Language);
}

void WriteOffScreenText(FieldWriter& fields, XMLElement& list, const TimedTextAsset& asset) {
  if (!fields.IsInterop()) {
    WriteSMPTECaption(fields, list, asset.Purpose == TT_CAPTION ? "ClosedCaption" : "ClosedSubtitle", asset);
  } else if (asset.Purpose == TT_CAPTION) {
    WriteInteropCaption(fields, list, asset);
  } else {
    fields.Invalid("off-screen text of an Interop composition", "ClosedSubtitle");
  }
}

void WriteAuxData(FieldWriter& fields, XMLElement& list, const AuxDataAsset& asset) {
  if (fields.IsInterop()) return fields.Invalid("asset of an Interop composition", "AuxData");
  const bool is_coding = asset.Form == ADF_DataEssenceCoding;
  XMLElement& element = AddExtension(list, "axd", "AuxData", is_coding ? NS_SMPTE_AuxData : NS_ImmersiveAudio);
  WriteTrackFileAsset(fields, element, asset);
  element.AddChildWithContent(is_coding ? "axd:DataEssenceCoding" : "axd:DataType", asset.DataType);
}

void WriteMainText(FieldWriter& fields, XMLElement& list, const TimedTextAsset& asset) {
  if (asset.Purpose == TT_SUBTITLE) {
    WriteSubtitle(fields, list, asset);
  } else if (fields.IsInterop()) {
    fields.Invalid("on-screen text of an Interop composition", "MainCaption");
  }
}

}  // namespace

void WriteGenericAsset(FieldWriter& fields, XMLElement& element, const GenericAsset& asset, bool is_track_file) {
  fields.ID(element, "Id", asset.AssetID);
  fields.OptionalText(element, "AnnotationText", asset.Annotation);
  fields.Rate(element, "EditRate", asset.EditRate);
  FieldWriter::Count(element, "IntrinsicDuration", asset.IntrinsicDuration);
  const bool is_whole = asset.EntryPoint == 0 && asset.Duration == asset.IntrinsicDuration;
  if (is_whole && !is_track_file) return;
  FieldWriter::Count(element, "EntryPoint", asset.EntryPoint);
  FieldWriter::Count(element, "Duration", asset.Duration);
}

void WriteReel(FieldWriter& fields, XMLElement& parent, const Reel& reel, const CompositionPlaylist& cpl,
               bool is_first) {
  XMLElement& element = parent.AddChild("Reel");
  fields.ID(element, "Id", reel.ID);
  fields.OptionalText(element, "AnnotationText", reel.Annotation);
  XMLElement& list = element.AddChild("AssetList");
  const bool has_picture = reel.MainPicture.AssetID.HasValue();
  const bool has_text = reel.MainSubtitle.AssetID.HasValue();
  if (reel.MainMarkers.AssetID.HasValue()) WriteMarkers(fields, list, reel.MainMarkers);
  if (has_picture && !cpl.StereoscopicImage) WritePicture(fields, list.AddChild("MainPicture"), reel.MainPicture);
  if (reel.MainSound.AssetID.HasValue()) WriteSound(fields, list, reel.MainSound);
  if (has_text) WriteMainText(fields, list, reel.MainSubtitle);
  // Extension elements follow all others.
  if (has_picture && cpl.StereoscopicImage) WriteStereoscopicPicture(fields, list, reel.MainPicture);
  if (has_text && reel.MainSubtitle.Purpose == TT_CAPTION && !fields.IsInterop())
    WriteSMPTECaption(fields, list, "MainCaption", reel.MainSubtitle);
  for (const TimedTextAsset& asset : reel.OffScreenText) WriteOffScreenText(fields, list, asset);
  for (const AuxDataAsset& asset : reel.AuxData) WriteAuxData(fields, list, asset);
  if (!is_first || !cpl.Metadata.AssetID.HasValue()) return;
  if (fields.IsInterop()) return fields.Invalid("asset of an Interop composition", "CompositionMetadataAsset");
  WriteCompositionMetadata(fields, list, cpl.Metadata);
}

}  // namespace Cairn
