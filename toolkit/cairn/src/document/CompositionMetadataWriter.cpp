// SPDX-License-Identifier: BSD-3-Clause
#include "CompositionWriter.h"
#include "base/Decimal.h"

#include <Cairn/Namespace.h>

namespace Cairn {
namespace {

using Ferro::XMLElement;

void WriteVersionNumber(FieldWriter& fields, XMLElement& element, const CompositionMetadata& metadata) {
  if (!metadata.HasVersionNumber) return;
  XMLElement& number = element.AddChildWithContent("meta:VersionNumber", std::to_string(metadata.VersionNumber));
  const std::string& status = metadata.VersionStatus;
  if (status.empty()) return;
  if (status != "final" && status != "temp" && status != "pre") fields.Invalid("VersionNumber status", status);
  number.SetAttr("status", status);
}

void WriteReleaseTerritory(XMLElement& element, const CompositionMetadata& metadata) {
  if (metadata.ReleaseTerritory.empty()) return;
  XMLElement& territory = element.AddChildWithContent("meta:ReleaseTerritory", metadata.ReleaseTerritory);
  if (!metadata.ReleaseTerritoryScope.empty()) territory.SetAttr("scope", metadata.ReleaseTerritoryScope);
}

void WriteLuminance(FieldWriter& fields, XMLElement& element, const CompositionMetadata& metadata) {
  if (metadata.Luminance.empty()) return;
  const auto value = ParseDecimalFraction(metadata.Luminance);
  if (!value || value->Numerator == 0) fields.Invalid("Luminance", metadata.Luminance);
  const std::string& units = metadata.LuminanceUnits;
  if (units != "foot-lambert" && units != "candela-per-square-metre") fields.Invalid("Luminance units", units);
  element.AddChildWithContent("meta:Luminance", metadata.Luminance).SetAttr("units", units);
}

void WriteArea(FieldWriter& fields, XMLElement& element, const char* name, const PictureArea& area) {
  XMLElement& child = element.AddChild(name);
  fields.PositiveCount(child, "meta:Width", area.Width);
  fields.PositiveCount(child, "meta:Height", area.Height);
}

void WriteLanguages(FieldWriter& fields, XMLElement& element, const std::list<std::string>& languages) {
  std::string text;
  for (const std::string& language : languages) text += (text.empty() ? "" : " ") + language;
  XMLElement checked("MainSubtitleLanguageList");
  for (const std::string& language : languages) fields.OptionalLanguage(checked, "Language", language);
  fields.OptionalText(element, "meta:MainSubtitleLanguageList", text);
}

void WriteExtensions(XMLElement& element, const std::list<ExtensionMetadata>& groups) {
  if (groups.empty()) return;
  XMLElement& list = element.AddChild("meta:ExtensionMetadataList");
  for (const ExtensionMetadata& group : groups) {
    XMLElement& item = list.AddChild("meta:ExtensionMetadata");
    item.SetAttr("scope", group.Scope);
    item.AddChildWithContent("meta:Name", group.Name);
    if (group.PropertyList.empty()) continue;
    XMLElement& properties = item.AddChild("meta:PropertyList");
    for (const auto& [name, value] : group.PropertyList) {
      XMLElement& property = properties.AddChild("meta:Property");
      property.AddChildWithContent("meta:Name", name);
      property.AddChildWithContent("meta:Value", value);
    }
  }
}

}  // namespace

void WriteCompositionMetadata(FieldWriter& fields, XMLElement& parent, const CompositionMetadata& metadata) {
  XMLElement& element = parent.AddChild("meta:CompositionMetadataAsset");
  element.SetAttr("xmlns:meta", NS_SMPTE_Metadata);
  WriteGenericAsset(fields, element, metadata, false);
  XMLElement& title = element.AddChildWithContent("meta:FullContentTitleText", metadata.FullContentTitle);
  if (!metadata.FullContentTitleLanguage.empty()) title.SetAttr("language", metadata.FullContentTitleLanguage);
  WriteReleaseTerritory(element, metadata);
  WriteVersionNumber(fields, element, metadata);
  fields.OptionalText(element, "meta:Chain", metadata.Chain);
  fields.OptionalText(element, "meta:Distributor", metadata.Distributor);
  fields.OptionalText(element, "meta:Facility", metadata.Facility);
  if (!metadata.AlternateContentVersionList.empty()) {
    XMLElement& list = element.AddChild("meta:AlternateContentVersionList");
    for (const ContentVersion& version : metadata.AlternateContentVersionList) {
      // The list's items are of the metadata's vocabulary, what is in them of the composition's.
      XMLElement& item = list.AddChild("meta:ContentVersion");
      item.AddChildWithContent("Id", version.ID);
      item.AddChildWithContent("LabelText", version.LabelText);
    }
  }
  WriteLuminance(fields, element, metadata);
  element.AddChildWithContent("meta:MainSoundConfiguration", metadata.MainSoundConfiguration);
  fields.Rate(element, "meta:MainSoundSampleRate", metadata.MainSoundSampleRate);
  WriteArea(fields, element, "meta:MainPictureStoredArea", metadata.MainPictureStoredArea);
  WriteArea(fields, element, "meta:MainPictureActiveArea", metadata.MainPictureActiveArea);
  WriteLanguages(fields, element, metadata.MainSubtitleLanguageList);
  WriteExtensions(element, metadata.ExtensionMetadataList);
}

}  // namespace Cairn
