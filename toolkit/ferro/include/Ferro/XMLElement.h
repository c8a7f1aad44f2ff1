// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/Result.h>

#include <list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Ferro {

/// An XML element for writing documents: a name, attributes, text and child elements, each in the order in which they
/// were added; text stands before the children. Owns its children; references stay valid until the tree is destroyed. One thread at a time.
class FERRO_API XMLElement {
 public:
  /// `name` may carry a prefix; it must be an XML name (assertion).
  explicit XMLElement(std::string name);
  ~XMLElement();
  XMLElement(const XMLElement&) = delete;
  XMLElement& operator=(const XMLElement&) = delete;

  [[nodiscard]] const std::string& Name() const { return m_Name; }
  /// Appends an attribute, or replaces the value of one of that name.
  void SetAttr(std::string_view name, std::string_view value);
  void SetBody(std::string_view text);
  void AppendBody(std::string_view text);
  XMLElement& AddChild(std::string_view name);
  /// A child that holds `text`.
  XMLElement& AddChildWithContent(std::string_view name, std::string_view text);
  /// A comment among the children; "--" in the text and "-" at its end are refused by Render.
  void AddComment(std::string_view text);

  /// Renders the document: declaration, this element, two blanks of indentation per level, one line per element. Text
  /// content is never altered by indentation: beside text, children follow without white space. Text and attributes are
  /// escaped.
  /// @return RESULT_OK; RESULT_PARAM when some text holds a character that XML 1.0 cannot carry (control characters,
  /// invalid UTF-8) or a comment "--" or a "-" at its end, `out` then being unchanged.
  [[nodiscard]] Result_t Render(std::string& out) const;

 private:
  bool RenderElement(std::string& out, unsigned depth, bool indent) const;

  std::string m_Name;
  std::string m_Body;
  bool m_IsComment = false;  // then m_Body alone is written
  std::vector<std::pair<std::string, std::string>> m_Attributes;
  std::list<XMLElement> m_Children;
};

}  // namespace Ferro
