// SPDX-License-Identifier: BSD-3-Clause
#include "CompositionReader.h"

#include <sstream>

namespace Cairn {
namespace {

std::list<std::string> SplitWords(const std::string& text) {
  std::istringstream words(text);
  std::list<std::string> out;
  for (std::string word; words >> word;) out.push_back(word);
  return out;
}

void ReadArea(FieldReader& fields, const Element* element, PictureArea& area) {
  if (const Element* width = FirstChildNamed(element, "Width")) fields.Count(width, area.Width);
  if (const Element* height = FirstChildNamed(element, "Height")) fields.Count(height, area.Height);
}

void ReadVersions(const Element* list, std::list<ContentVersion>& out) {
  for (auto* child = FirstChildElement(list); child != nullptr; child = NextSiblingElement(child))
    if (LocalName(child) == "ContentVersion") ReadContentVersion(child, out.emplace_back());
}

void ReadExtensions(const Element* list, std::list<ExtensionMetadata>& out) {
  for (auto* child = FirstChildElement(list); child != nullptr; child = NextSiblingElement(child)) {
    if (LocalName(child) != "ExtensionMetadata") continue;
    ExtensionMetadata& group = out.emplace_back();
    group.Scope = AttributeValue(child, "scope");
    group.Name = TrimmedText(FirstChildNamed(child, "Name"));
    const Element* properties = FirstChildNamed(child, "PropertyList");
    for (auto* item = FirstChildElement(properties); item != nullptr; item = NextSiblingElement(item))
      if (LocalName(item) == "Property")
        group.PropertyList.emplace_back(TrimmedText(FirstChildNamed(item, "Name")),
                                        TrimmedText(FirstChildNamed(item, "Value")));
  }
}

void ReadVersionNumber(FieldReader& fields, const Element* element, CompositionMetadata& metadata) {
  // An empty element has the standard's default, 1.
  metadata.HasVersionNumber = TrimmedText(element).empty() || fields.Count(element, metadata.VersionNumber);
  metadata.VersionStatus = AttributeValue(element, "status");
}

// Elements whose text is all there is to them.
std::string* TextField(CompositionMetadata& metadata, const std::string& name) {
  if (name == "FullContentTitleText") return &metadata.FullContentTitle;
  if (name == "ReleaseTerritory") return &metadata.ReleaseTerritory;
  if (name == "Chain") return &metadata.Chain;
  if (name == "Distributor") return &metadata.Distributor;
  if (name == "Facility") return &metadata.Facility;
  if (name == "Luminance") return &metadata.Luminance;
  if (name == "MainSoundConfiguration") return &metadata.MainSoundConfiguration;
  return nullptr;
}

void ReadStructure(FieldReader& fields, const Element* child, const std::string& name, CompositionMetadata& metadata) {
  if (name == "VersionNumber") {
    ReadVersionNumber(fields, child, metadata);
  } else if (name == "AlternateContentVersionList") {
    ReadVersions(child, metadata.AlternateContentVersionList);
  } else if (name == "MainSoundSampleRate") {
    fields.Rate(child, metadata.MainSoundSampleRate);
  } else if (name == "MainPictureStoredArea") {
    ReadArea(fields, child, metadata.MainPictureStoredArea);
  } else if (name == "MainPictureActiveArea") {
    ReadArea(fields, child, metadata.MainPictureActiveArea);
  } else if (name == "MainSubtitleLanguageList") {
    metadata.MainSubtitleLanguageList = SplitWords(TextContent(child));
  } else if (name == "ExtensionMetadataList") {
    ReadExtensions(child, metadata.ExtensionMetadataList);
  }
}

}  // namespace

void ReadContentVersion(const Element* element, ContentVersion& version) {
  version.ID = TrimmedText(FirstChildNamed(element, "Id"));
  version.LabelText = TextContent(FirstChildNamed(element, "LabelText"));
}

// Nothing played depends on it: what is malformed is reported and left out.
void ReadCompositionMetadata(FieldReader& strict, const Element* element, CompositionMetadata& metadata) {
  FieldReader fields(strict.Document(), strict.Log(), FieldReader::Mode::Lenient);
  if (metadata.AssetID.HasValue()) {
    fields.Log().Warn("%s: there is another CompositionMetadataAsset, ignored\n", fields.Document());
    return;
  }
  ReadGenericAsset(fields, element, metadata);
  for (auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child)) {
    if (!IsOwnElement(child)) continue;
    const std::string& name = LocalName(child);
    if (std::string* text = TextField(metadata, name)) {
      *text = TrimmedText(child);
    } else {
      ReadStructure(fields, child, name, metadata);
    }
    if (name == "FullContentTitleText") metadata.FullContentTitleLanguage = AttributeValue(child, "language");
    if (name == "ReleaseTerritory") metadata.ReleaseTerritoryScope = AttributeValue(child, "scope");
    if (name == "Luminance") metadata.LuminanceUnits = AttributeValue(child, "units");
  }
}

}  // namespace Cairn
