// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentMutator.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace testsupport {
namespace {

using Assay::Node;

// Values near the borders of each form.
constexpr const char* Values[] = {"",
                                  " ",
                                  "0",
                                  "1",
                                  "-1",
                                  "+1",
                                  "007",
                                  "1.5",
                                  ".5",
                                  "5.",
                                  "-0",
                                  "x",
                                  "24 1",
                                  "24",
                                  "24 1 1",
                                  "24\t1",
                                  "-24 0",
                                  "9223372036854775807",
                                  "9223372036854775808",
                                  "-9223372036854775808",
                                  "true",
                                  "false",
                                  "TRUE",
                                  " 1 ",
                                  "urn:uuid:0F0F0F0F-1111-4222-8333-00000000ABCD",
                                  "urn:uuid:0f0f0f0f1111422283330000000000ab",
                                  "URN:UUID:0f0f0f0f-1111-4222-8333-0000000000ab",
                                  "0f0f0f0f-1111-4222-8333-0000000000ab",
                                  "urn:uuid:0f0f0f0f-1111-4222-8333-0000000000a",
                                  " urn:uuid:0f0f0f0f-1111-4222-8333-0000000000ab\n",
                                  "urn:uuid:0f0f0f0f-1111-4222-8333-0000000000ag",
                                  "2024-03-01T09:30:00",
                                  "2024-03-01T09:30:00Z",
                                  "2024-03-01T09:30:00.25+14:00",
                                  "2024-03-01T09:30:00+14:01",
                                  "2024-02-30T09:30:00Z",
                                  "2024-02-29T24:00:00Z",
                                  "2023-02-29T00:00:00Z",
                                  "2024-03-01T24:00:01Z",
                                  "2024-03-01 09:30:00",
                                  "2024-03-01",
                                  "24-03-01T09:30:00Z",
                                  "2024-03-01T09:60:00Z",
                                  "2024-03-01T09:30Z",
                                  "02024-03-01T09:30:00Z",
                                  "12024-03-01T09:30:00Z",
                                  "2024-03-01T09:30:00.Z",
                                  "2024-13-01T09:30:00Z",
                                  "0000-03-01T09:30:00Z",
                                  "en",
                                  "fr-CA",
                                  "x-private",
                                  "i-klingon",
                                  "toolongaprimary",
                                  "en_US",
                                  "en-",
                                  "e1",
                                  "zh-Hant-TW",
                                  "en fr",
                                  "AAAA",
                                  "AAA=",
                                  "AAB=",
                                  "AA==",
                                  "AB==",
                                  "A===",
                                  "AAAA AAAA",
                                  "AAAAA",
                                  "A A A A",
                                  "AA=A",
                                  "00:00:04:00",
                                  "00:00:04:000",
                                  "00:00:04:249",
                                  "00:00:04:250",
                                  "00:00:04.5",
                                  "00:00:04.5000",
                                  "30:00:00:00",
                                  "29:59:59:1",
                                  "0:00:04:00",
                                  "00:60:00:00",
                                  "00:00:04:",
                                  "249",
                                  "1000",
                                  "FFFFFFFF",
                                  "ffffff00",
                                  "FFFFFF",
                                  "FFFFFFFG",
                                  "yes",
                                  "no",
                                  "Yes",
                                  "left",
                                  "right",
                                  "center",
                                  "bottom",
                                  "top",
                                  "100",
                                  "100.0",
                                  "100.01",
                                  "-100",
                                  "-100.5",
                                  "0.25",
                                  "0.249",
                                  "4.0",
                                  "4.001",
                                  "-1.0",
                                  "-1.1",
                                  "0em",
                                  "0.5em",
                                  "-0.5em",
                                  ".5em",
                                  "0.em",
                                  "0.5 em",
                                  "http://a/b",
                                  "http://a/b#c",
                                  "a/b.xml",
                                  "../x",
                                  "%41",
                                  "%zz",
                                  "a#b#c",
                                  "a%20b",
                                  ":x",
                                  "1a:b",
                                  "final",
                                  "temp",
                                  " final ",
                                  "foot-lambert",
                                  "normal",
                                  "bold",
                                  "shadow",
                                  "ltr",
                                  "horizontal",
                                  "1.0",
                                  "1.1",
                                  "1.2",
                                  "before",
                                  "middle"};

constexpr const char* Names[] = {"Id",   "Unknown", "AnnotationText", "EditRate", "Asset",   "Reel", "Language",
                                 "Font", "Text",    "Hash",           "Issuer",   "Creator", "Label"};
constexpr const char* AttributeNames[] = {"language", "scope",  "Size",  "ID",    "Id",     "xml:lang", "unknown",
                                          "TimeIn",   "status", "units", "Color", "Halign", "HAlign",   "xml:space"};

void Collect(Node& node, std::vector<Node*>& all) {
  all.push_back(&node);
  for (Node& child : node.Children) Collect(child, all);
}

std::string Escaped(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c == '&')
      out += "&amp;";
    else if (c == '<')
      out += "&lt;";
    else if (c == '"')
      out += "&quot;";
    else
      out += c;
  }
  return out;
}

void Write(const Node& node, const std::string& outer, std::string& out) {
  out += '<' + node.Name;
  if (node.Namespace != outer) out += " xmlns=\"" + node.Namespace + '"';
  for (const Node::Attribute& attribute : node.Attributes)
    if (!attribute.Name.starts_with("xmlns")) out += ' ' + attribute.Name + "=\"" + Escaped(attribute.Value) + '"';
  out += '>';
  if (node.Children.empty() || node.HasLooseText) out += Escaped(node.Children.empty() ? node.Text : "loose");
  for (const Node& child : node.Children) Write(child, node.Namespace, out);
  out += "</" + node.Name + ">\n";
}

}  // namespace

std::string DocumentMutator::Text(const Node& document) {
  std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  Write(document, "", out);
  return out;
}

std::string DocumentMutator::Mutated(const Node& document) {
  Node copy = document;
  for (size_t count = 1 + Below(3); count > 0; --count) Damage(copy);
  return Text(copy);
}

const char* DocumentMutator::Value() {
  return Values[Below(std::size(Values))];
}

void DocumentMutator::Damage(Node& root) {
  std::vector<Node*> all;
  Collect(root, all);
  Node& node = *all[Below(all.size())];
  switch (Below(4)) {
    case 0:
      return DamageAttribute(node);
    case 1:
      return DamageChildren(node);
    default:
      return node.Children.empty() ? DamageValue(node) : DamageChildren(node);
  }
}

void DocumentMutator::DamageValue(Node& node) {
  node.Text = Value();
}

void DocumentMutator::DamageChildren(Node& parent) {
  std::vector<Node>& children = parent.Children;
  if (children.empty()) {
    children.emplace_back().Name = Names[Below(std::size(Names))];
    children.back().Namespace = parent.Namespace;
    return;
  }
  const auto at = children.begin() + static_cast<std::ptrdiff_t>(Below(children.size()));
  switch (Below(8)) {
    case 0:
      children.erase(at);
      break;
    case 1: {
      const Node again = *at;
      children.insert(at, again);
      break;
    }
    case 2:
      std::iter_swap(at, children.begin() + static_cast<std::ptrdiff_t>(Below(children.size())));
      break;
    case 3:
      at->Name = Names[Below(std::size(Names))];
      break;
    case 4: {
      Node stranger;
      stranger.Name = Names[Below(std::size(Names))];
      stranger.Namespace = Below(2) == 0 ? parent.Namespace : "urn:stranger";
      children.insert(at, stranger);
      break;
    }
    case 5:
      at->Namespace = Below(2) == 0 ? "urn:stranger" : parent.Namespace;
      break;
    case 6:
      parent.HasLooseText = true;
      break;
    default:
      std::rotate(children.begin(), at, children.end());
      break;
  }
}

void DocumentMutator::DamageAttribute(Node& node) {
  std::vector<Node::Attribute>& attributes = node.Attributes;
  const size_t which = Below(3);
  if (attributes.empty() || which == 0) {
    const std::string name = AttributeNames[Below(std::size(AttributeNames))];
    if (node.Find(name) == nullptr) attributes.push_back({name, Value()});
  } else if (which == 1) {
    attributes.erase(attributes.begin() + static_cast<std::ptrdiff_t>(Below(attributes.size())));
  } else {
    attributes[Below(attributes.size())].Value = Value();
  }
}

}  // namespace testsupport
