// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/ShowPlaylist.h>

#include <Ferro/ILogSink.h>
#include <Ferro/XMLElement.h>
#include <QUIRE/Result.h>

#include <utility>

namespace Strata {
namespace {

void AddUnlessEmpty(Ferro::XMLElement& parent, const char* name, const std::string& text) {
  if (!text.empty()) parent.AddChildWithContent(name, text);
}

// The title with its blanks taken out. The search goes on behind the place of each one, so that of two in a row the
// second stays: labels made before are made the same again.
std::string LabelFromTitle(std::string title) {
  for (size_t blank = title.find(' '); blank != std::string::npos; blank = title.find(' ', blank + 1))
    title.erase(blank, 1);
  return title;
}

std::pair<std::string, std::string> LabelAndTitle(const ShowPlaylist& playlist) {
  std::string title = playlist.ShowTitle;
  if (playlist.Label.empty() && title.empty()) title = "Untitled";
  std::string label = playlist.Label.empty() ? LabelFromTitle(title) : playlist.Label;
  if (title.empty()) title = label;
  return {std::move(label), std::move(title)};
}

void AddShowParameters(Ferro::XMLElement& parent, const std::list<NameValueGroup>& parameters) {
  if (parameters.empty()) return;
  Ferro::XMLElement& element = parent.AddChild("ShowParameters");
  for (const NameValueGroup& group : parameters) {
    Ferro::XMLElement& parameter = element.AddChild("Parameter");
    parameter.AddChildWithContent("Name", group.Name);
    parameter.AddChildWithContent("Value", group.Value);
  }
}

}  // namespace

void ShowPlaylist::CompositionItem::EncodeXML(Ferro::XMLElement& parent) const {
  Ferro::XMLElement& element = parent.AddChild("CompositionPlaylist");
  element.AddChildWithContent("CompositionId", ID.EncodeURN());
  AddUnlessEmpty(element, "AnnotationText", Annotation);
  element.AddChildWithContent("EditRate", EditRate.EncodeString());
  element.AddChildWithContent("Duration", std::to_string(Duration));
  for (const MarkerItem& marker : MarkerList) marker.EncodeXML(element);
}

void ShowPlaylist::ShowPlaylistItem::EncodeXML(Ferro::XMLElement& parent) const {
  parent.AddChild("ShowPlaylist").AddChildWithContent("URI", URI);
}

void ShowPlaylist::MarkerItem::EncodeXML(Ferro::XMLElement& parent) const {
  Ferro::XMLElement& element = parent.AddChild("Marker");
  Ferro::XMLElement& label = element.AddChildWithContent("Label", Label);
  if (!Scope.empty() && Scope != StandardMarkersScope) label.SetAttr("scope", Scope);
  AddUnlessEmpty(element, "AnnotationText", Annotation);
  if (parent.Name() == "CompositionPlaylist") element.AddChildWithContent("Offset", std::to_string(Offset));
}

Result_t ShowPlaylist::EncodeXML(std::string& out, Cairn::DCPFormat_t) const {
  const auto [label, title] = LabelAndTitle(*this);
  Ferro::XMLElement document("ShowPlaylist");
  document.SetAttr("xmlns", Namespace);
  document.AddChildWithContent("Id", ID.EncodeURN());
  document.AddChildWithContent("Label", label);
  document.AddChildWithContent("ShowTitleText", title);
  AddUnlessEmpty(document, "AnnotationText", Annotation);
  document.AddChildWithContent("IssueDate", IssueDate.EncodeString());
  AddUnlessEmpty(document, "Creator", Creator);
  AddUnlessEmpty(document, "Issuer", Issuer);
  if (EstimatedDuration != 0)  // printed signed: that is the document's type
    document.AddChildWithContent("EstimatedDuration", std::to_string(static_cast<i32_t>(EstimatedDuration)));
  AddShowParameters(document, ShowParameters);

  Ferro::XMLElement& sequence = document.AddChild("ShowSequence");
  for (const auto& item : ShowSequence) {
    if (item->m_Type != SIT_CPL && item->m_Type != SIT_SHOW && item->m_Type != SIT_MARKER) {
      Ferro::DefaultLogSink().Error("Unexpected ShowSequence item type: %d\n", static_cast<i32_t>(item->m_Type));
      return QUIRE::RESULT_FORMAT;
    }
    item->EncodeXML(sequence);
  }
  return document.Render(out);
}

}  // namespace Strata
