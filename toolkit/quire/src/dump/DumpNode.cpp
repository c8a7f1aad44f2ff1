// SPDX-License-Identifier: BSD-3-Clause
#include "DumpNode.h"

#include <algorithm>
#include <cstdio>

// The tree is as deep as the code that builds it, whatever the file holds.

namespace QUIRE::MXF {
namespace {

using Kind = DumpNode::Kind;

std::string Indent(size_t depth) {
  return std::string(2 * depth, ' ');
}

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      quoted += {'\\', c};
    } else if (byte < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", byte);
      quoted += escape;
    } else {
      quoted += c;
    }
  }
  return quoted + '"';
}

// Line ends within a text would look like another value.
std::string OneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
  return text;
}

bool HasGroups(const DumpNode& list) {
  return std::any_of(list.Children.begin(), list.Children.end(),
                     [](const auto& item) { return item.Is == Kind::Group; });
}

std::string InLine(const DumpNode& node) {
  if (node.Is != Kind::List) return OneLine(node.Value);
  std::string text = "[";
  for (const DumpNode& item : node.Children) text += (&item == &node.Children.front() ? "" : ", ") + InLine(item);
  return text + ']';
}

void AppendText(const DumpNode& node, size_t depth, std::string& out) {
  if (node.Is == Kind::Group || HasGroups(node)) {
    if (!node.Name.empty()) out += Indent(depth) + node.Name + (node.Value.empty() ? "" : " " + node.Value) + ":\n";
    for (const DumpNode& child : node.Children) AppendText(child, depth + 1, out);
  } else {
    out += Indent(depth) + node.Name + ": " + InLine(node) + '\n';
  }
}

void AppendJSON(const DumpNode& node, size_t depth, std::string& out) {
  if (node.Is == Kind::Word) {
    out += node.Value;
  } else if (node.Is == Kind::Text) {
    out += Quoted(node.Value);
  } else {
    const bool group = node.Is == Kind::Group;
    out += group ? '{' : '[';
    for (const DumpNode& child : node.Children) {
      out += (&child == &node.Children.front() ? "\n" : ",\n") + Indent(depth + 1);
      if (group) out += Quoted(child.Name) + ": ";
      AppendJSON(child, depth + 1, out);
    }
    if (!node.Children.empty()) out += '\n' + Indent(depth);
    out += group ? '}' : ']';
  }
}

}  // namespace

DumpNode& DumpNode::Add(std::string name, Kind kind, std::string value) {
  return Children.emplace_back(DumpNode{kind, std::move(name), std::move(value), {}});
}

std::string DumpNode::AsText() const {
  std::string out;
  for (const DumpNode& child : Children) AppendText(child, 0, out);
  return out;
}

std::string DumpNode::AsJSON() const {
  std::string out;
  AppendJSON(*this, 0, out);
  return out + '\n';
}

}  // namespace QUIRE::MXF
