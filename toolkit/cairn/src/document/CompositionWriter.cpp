// SPDX-License-Identifier: BSD-3-Clause
#include "CompositionWriter.h"

#include <Cairn/Namespace.h>

namespace Cairn {
namespace {

using Ferro::XMLElement;

void WriteContentKind(FieldWriter& fields, XMLElement& root, const CompositionPlaylist& cpl) {
  const std::string text = cpl.ContentKindText.empty() ? ContentKindName(cpl.ContentKind) : cpl.ContentKindText;
  if (text.empty()) fields.Missing("ContentKind");
  XMLElement& element = root.AddChildWithContent("ContentKind", text);
  if (!cpl.ContentKindScope.empty()) element.SetAttr("scope", cpl.ContentKindScope);
}

// SMPTE requires a version; a composition without one is its own first.
void WriteVersion(const FieldWriter& fields, XMLElement& root, const CompositionPlaylist& cpl) {
  const bool is_empty = cpl.ContentVersion == ContentVersion();
  if (!is_empty) {
    WriteContentVersion(root, cpl.ContentVersion);
  } else if (!fields.IsInterop()) {
    WriteContentVersion(root, {cpl.ID.EncodeURN(), cpl.ContentTitle});
  }
}

void WriteRatings(XMLElement& root, const CompositionPlaylist& cpl) {
  XMLElement& list = root.AddChild("RatingList");
  for (const Rating& rating : cpl.RatingList) {
    XMLElement& element = list.AddChild("Rating");
    element.AddChildWithContent("Agency", rating.Agency);
    element.AddChildWithContent("Label", rating.Label);
  }
}

void WriteReels(FieldWriter& fields, XMLElement& root, const CompositionPlaylist& cpl) {
  if (cpl.ReelList.empty()) fields.Missing("Reel");
  XMLElement& list = root.AddChild("ReelList");
  bool is_first = true;
  for (const Reel& reel : cpl.ReelList) {
    WriteReel(fields, list, reel, cpl, is_first);
    is_first = false;
  }
}

}  // namespace

void WriteContentVersion(XMLElement& parent, const ContentVersion& version) {
  XMLElement& element = parent.AddChild("ContentVersion");
  element.AddChildWithContent("Id", version.ID);
  element.AddChildWithContent("LabelText", version.LabelText);
}

Result_t CompositionPlaylist::EncodeXML(std::string& out, DCPFormat_t format) const {
  if (!IsWritableFormat(format)) return Ferro::RESULT_PARAM;
  FieldWriter fields("CompositionPlaylist", format);
  XMLElement root("CompositionPlaylist");
  root.SetAttr("xmlns", fields.IsInterop() ? NS_Interop_CPL : NS_SMPTE_CPL);
  fields.ID(root, "Id", ID);
  fields.OptionalText(root, "AnnotationText", Annotation);
  fields.OptionalID(root, "IconId", IconID);
  fields.Date(root, "IssueDate", IssueDate);
  if (fields.IsInterop() || !Issuer.empty()) root.AddChildWithContent("Issuer", Issuer);
  if (fields.IsInterop() || !Creator.empty()) root.AddChildWithContent("Creator", Creator);
  root.AddChildWithContent("ContentTitleText", ContentTitle);
  WriteContentKind(fields, root, *this);
  WriteVersion(fields, root, *this);
  WriteRatings(root, *this);
  WriteReels(fields, root, *this);
  return fields.Render(root, out);
}

}  // namespace Cairn
