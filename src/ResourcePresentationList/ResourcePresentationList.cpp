// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/ResourcePresentationList.h>

#include <Ferro/MemIO.h>
#include <Ferro/Random.h>
#include <Ferro/XMLElement.h>

#include <array>

namespace Strata {
namespace {

using RPL = ResourcePresentationList;

// Receivers take counts of 32 bits, whatever the schema allows.
std::string CountText(ui64_t count) {
  return std::to_string(static_cast<ui32_t>(count));
}

void AddFile(Ferro::XMLElement& parent, const RPL::ResourceFile& file) {
  Ferro::XMLElement& element = parent.AddChildWithContent("ResourceFile", file.URL);
  if (file.ResourceID.HasValue()) element.SetAttr("ResourceID", file.ResourceID.EncodeURN());
}

void AddResource(Ferro::XMLElement& parent, const RPL::ReelResource& resource) {
  Ferro::XMLElement& element = parent.AddChild("ReelResource");
  element.SetAttr("Id", resource.ID.EncodeURN());
  element.SetAttr("ResourceType", resource.ResourceType);
  if (!resource.Language.empty()) element.SetAttr("Language", resource.Language);
  element.SetAttr("EntryPoint", CountText(resource.EntryPoint));
  if (resource.Duration != 0) element.SetAttr("Duration", CountText(resource.Duration));
  element.SetAttr("IntrinsicDuration", CountText(resource.IntrinsicDuration));
  for (const RPL::ResourceFile& file : resource.ResourceFileList) AddFile(element, file);
}

void AddReel(Ferro::XMLElement& parent, const RPL::ReelResources& reel) {
  Ferro::XMLElement& element = parent.AddChild("ReelResources");
  element.SetAttr("TimelineOffset", CountText(reel.TimelineOffset));
  if (reel.ReelID.HasValue()) element.SetAttr("ReelID", reel.ReelID.EncodeURN());
  element.SetAttr("EditRate", reel.EditRate.EncodeString());
  for (const RPL::ReelResource& resource : reel.ReelResourceList) AddResource(element, resource);
}

}  // namespace

void ResourcePresentationList::GenRandomIDValue() {
  PlayoutID = 0;
  std::array<ui8_t, 16> bytes{};
  while (PlayoutID == 0 && Ferro::FillRandom(bytes).Success()) {
    Ferro::MemIOReader reader(bytes);
    static_cast<void>(reader.ReadUi32BE(&PlayoutID));  // four of sixteen are always there
  }
}

Result_t ResourcePresentationList::EncodeXML(std::string& out) const {
  Ferro::XMLElement document("ResourcePresentationList");
  document.SetAttr("xmlns", Namespace);
  document.SetAttr("PlayoutID", std::to_string(PlayoutID));
  for (const ReelResources& reel : ReelResourcesList) AddReel(document, reel);
  return document.Render(out);
}

}  // namespace Strata
