// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Types.h>

#include <string>
#include <vector>

namespace QUIRE::MXF {

/// A value to display: a word (number or truth value), a text, a list, or a group of named values.
struct DumpNode {
  enum class Kind { Word, Text, List, Group };

  Kind Is = Kind::Group;
  std::string Name;   ///< within a group
  std::string Value;  ///< of words and texts
  std::vector<DumpNode> Children;

  DumpNode& Add(std::string name, Kind kind, std::string value = {});
  DumpNode& AddNumber(std::string name, ui64_t value) {
    return Add(std::move(name), Kind::Word, std::to_string(value));
  }
  DumpNode& AddText(std::string name, std::string value) { return Add(std::move(name), Kind::Text, std::move(value)); }

  /// The children of a group, one line each: "Name: value", groups and lists of groups indented below their names.
  [[nodiscard]] std::string AsText() const;
  /// RFC 8259, indented by two blanks.
  [[nodiscard]] std::string AsJSON() const;

  /// This node among the text of others, as AsText and AsJSON write it; depth 0 is not indented.
  void AppendText(size_t depth, std::string& out) const;
  void AppendJSON(size_t depth, std::string& out) const;
};

/// Two blanks for each level.
[[nodiscard]] std::string Indent(size_t depth);
/// A JSON string.
[[nodiscard]] std::string Quoted(const std::string& text);

}  // namespace QUIRE::MXF
