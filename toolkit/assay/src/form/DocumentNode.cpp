// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentNode.h"

#include "base/Text.h"

#include <Cairn/DOMTreeErrorReporter.h>
#include <Cairn/DocumentElement.h>
#include <Cairn/XMLNode.h>

#include <Ferro/LogSink.h>

namespace Assay {
namespace {

/// Character data between the element's children, and before and behind them.
bool HasTextBesideChildren(const Cairn::Element& element) {
  const std::string_view text(*element.DocumentText);
  size_t at = element.TextBegin;
  for (const Cairn::Element* child = element.FirstChild; child != nullptr; child = child->NextSibling) {
    if (!IsBlank(text.substr(at, child->TextBegin - at))) return true;
    at = child->TextEnd;
  }
  return !IsBlank(text.substr(at, element.TextEnd - at));
}

// The parser bounds how deep elements nest.
void Copy(const Cairn::Element& from, Node& to) {
  to.Name = *from.Name;
  to.Namespace = *from.Namespace;
  to.Line = from.Line;
  for (const Cairn::Element::NamedValue& attribute : from.Attributes)
    to.Attributes.push_back({*attribute.Name, Cairn::XMLChToUTF8(attribute.Value.c_str())});
  to.HasLooseText = from.FirstChild != nullptr && HasTextBesideChildren(from);
  if (from.FirstChild == nullptr || to.HasLooseText)
    to.Text = from.DocumentText->substr(from.TextBegin, from.TextEnd - from.TextBegin);
  size_t count = 0;
  for (const Cairn::Element* child = from.FirstChild; child != nullptr; child = child->NextSibling) ++count;
  to.Children.resize(count);
  size_t index = 0;
  for (const Cairn::Element* child = from.FirstChild; child != nullptr; child = child->NextSibling)
    Copy(*child, to.Children[index++]);
}

std::string FirstMessage(const Ferro::MemoryLogSink& log) {
  const auto entries = log.Entries();
  return entries.empty() ? std::string() : Quoted(Trim(entries.front().Message));
}

}  // namespace

const Node* Node::Child(std::string_view name) const {
  for (const Node& child : Children)
    if (child.Name == name) return &child;
  return nullptr;
}

const Node* Node::Path(std::initializer_list<std::string_view> names) const {
  const Node* node = this;
  for (const std::string_view name : names)
    if (node != nullptr) node = node->Child(name);
  return node;
}

const std::string* Node::Find(std::string_view attribute) const {
  for (const Attribute& each : Attributes)
    if (each.Name == attribute) return &each.Value;
  return nullptr;
}

std::string_view TextOf(const Node* node) {
  return node == nullptr ? std::string_view() : Trim(node->Text);
}

ui64_t LineOf(const Node* node) {
  return node == nullptr ? 0 : node->Line;
}

ParsedDocument ParseDocument(const std::string& xml) {
  ParsedDocument out;
  Ferro::MemoryLogSink log;
  Cairn::DOMTreeErrorReporter reporter;
  reporter.m_LogSink = &log;
  const Cairn::Result_t result = Cairn::ParseDocument(xml, reporter, log, [&](const Cairn::Element* root) {
    Copy(*root, out.Root.emplace());
    return Cairn::Result_t(Ferro::RESULT_OK);
  });
  if (result.Success()) return out;
  out.Root.reset();
  out.ErrorLine = reporter.m_FirstErrorLine;
  out.Error = FirstMessage(log);
  return out;
}

}  // namespace Assay
