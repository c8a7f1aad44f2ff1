// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Assay {

/// An element of a document, with all that is in it. A plain value, so that a document can be looked at as a whole, and
/// beside others, after it was parsed.
struct Node {
  struct Attribute {
    std::string Name;  ///< with its prefix
    std::string Value;
  };

  std::string Name;           ///< without its prefix
  std::string Namespace;      ///< empty: in none
  ui64_t Line = 0;            ///< from 1
  std::string Text;           ///< all character data in it; empty where it is blanks between elements
  bool HasLooseText = false;  ///< character data other than blanks stands in it beside its elements
  std::vector<Attribute> Attributes;
  std::vector<Node> Children;

  /// The first child of that name, in any namespace; null where there is none.
  [[nodiscard]] const Node* Child(std::string_view name) const;
  /// Child of child: Path({"ReelList", "Reel"}).
  [[nodiscard]] const Node* Path(std::initializer_list<std::string_view> names) const;
  /// The value of the attribute of that name, its prefix included; null where there is none.
  [[nodiscard]] const std::string* Find(std::string_view attribute) const;
};

/// A text without white space at its ends; empty for null.
[[nodiscard]] std::string_view TextOf(const Node* node);
/// The line of an element; 0 for null.
[[nodiscard]] ui64_t LineOf(const Node* node);

/// What came of parsing a document.
struct ParsedDocument {
  std::optional<Node> Root;  ///< no value: it is malformed, or refused
  ui64_t ErrorLine = 0;      ///< of the first error; 0 where it was refused as a whole
  std::string Error;         ///< the parser's words, one line
};

/// Parses a document within the limits of Cairn::DocumentParser.
[[nodiscard]] ParsedDocument ParseDocument(const std::string& xml);

}  // namespace Assay
