// SPDX-License-Identifier: BSD-3-Clause
#include "DumpNode.h"

#include <algorithm>
#include <cstdio>

// The tree is as deep as the code that builds it, whatever the file holds.

namespace QUIRE::MXF {

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

namespace {

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

}  // namespace

void DumpNode::AppendText(size_t depth, std::string& out) const {
  if (Is == Kind::Group || HasGroups(*this)) {
    if (!Name.empty()) out += Indent(depth) + Name + (Value.empty() ? "" : " " + Value) + ":\n";
    for (const DumpNode& child : Children) child.AppendText(depth + 1, out);
  } else {
    out += Indent(depth) + Name + ": " + InLine(*this) + '\n';
  }
}

void DumpNode::AppendJSON(size_t depth, std::string& out) const {
  if (Is == Kind::Word) {
    out += Value;
  } else if (Is == Kind::Text) {
    out += Quoted(Value);
  } else {
    const bool group = Is == Kind::Group;
    out += group ? '{' : '[';
    for (const DumpNode& child : Children) {
      out += (&child == &Children.front() ? "\n" : ",\n") + Indent(depth + 1);
      if (group) out += Quoted(child.Name) + ": ";
      child.AppendJSON(depth + 1, out);
    }
    if (!Children.empty()) out += '\n' + Indent(depth);
    out += group ? '}' : ']';
  }
}

DumpNode& DumpNode::Add(std::string name, Kind kind, std::string value) {
  return Children.emplace_back(DumpNode{kind, std::move(name), std::move(value), {}});
}

std::string DumpNode::AsText() const {
  std::string out;
  for (const DumpNode& child : Children) child.AppendText(0, out);
  return out;
}

std::string DumpNode::AsJSON() const {
  std::string out;
  AppendJSON(0, out);
  return out + '\n';
}

}  // namespace QUIRE::MXF
