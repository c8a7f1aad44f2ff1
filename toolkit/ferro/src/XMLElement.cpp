// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Assert.h>
#include <Ferro/XMLElement.h>

#include "XMLCharacters.h"

#include <algorithm>

namespace Ferro {
namespace {

enum class Place { Text, Attribute };

// What stands for a character in the given place; empty for one that stands for itself. A carriage return, and any
// white space but the blank in an attribute, would not survive the parser's normalisation.
std::string_view EscapeOf(char c, Place place) {
  const bool attribute = place == Place::Attribute;
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\r':
      return "&#xD;";
    case '"':
      return attribute ? "&quot;" : "";
    case '\t':
      return attribute ? "&#x9;" : "";
    case '\n':
      return attribute ? "&#xA;" : "";
    default:
      return "";
  }
}

bool IsXMLText(std::string_view text) {
  while (!text.empty())
    if (!IsXMLCharacter(TakeUTF8(text))) return false;
  return true;
}

bool AppendEscaped(std::string& out, std::string_view text, Place place) {
  if (!IsXMLText(text)) return false;
  for (const char c : text) {
    const std::string_view escape = EscapeOf(c, place);
    if (escape.empty())
      out += c;
    else
      out += escape;
  }
  return true;
}

bool AppendComment(std::string& out, std::string_view text) {
  if (!IsXMLText(text) || text.find("--") != std::string_view::npos || text.ends_with('-')) return false;
  out.append("<!--").append(text).append("-->");
  return true;
}

void AppendLineStart(std::string& out, unsigned depth) {
  out.append(1, '\n').append(2 * static_cast<size_t>(depth), ' ');
}

}  // namespace

XMLElement::XMLElement(std::string name) : m_Name(std::move(name)) {
  FERRO_ASSERT(IsQualifiedName(m_Name));
}

XMLElement::~XMLElement() = default;

void XMLElement::SetAttr(std::string_view name, std::string_view value) {
  FERRO_ASSERT(IsQualifiedName(name));
  const auto same = [name](const auto& attribute) { return attribute.first == name; };
  const auto found = std::find_if(m_Attributes.begin(), m_Attributes.end(), same);
  if (found != m_Attributes.end())
    found->second = value;
  else
    m_Attributes.emplace_back(name, value);
}

void XMLElement::SetBody(std::string_view text) {
  m_Body = text;
}

void XMLElement::AppendBody(std::string_view text) {
  m_Body += text;
}

XMLElement& XMLElement::AddChild(std::string_view name) {
  return m_Children.emplace_back(std::string(name));
}

XMLElement& XMLElement::AddChildWithContent(std::string_view name, std::string_view text) {
  XMLElement& child = AddChild(name);
  child.SetBody(text);
  return child;
}

void XMLElement::AddComment(std::string_view text) {
  XMLElement& comment = m_Children.emplace_back("comment");
  comment.m_IsComment = true;
  comment.m_Body = text;
}

Result_t XMLElement::Render(std::string& out) const {
  std::string document = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  if (!RenderElement(document, 0, true)) return RESULT_PARAM;
  document += '\n';
  out = std::move(document);
  return RESULT_OK;
}

bool XMLElement::RenderElement(std::string& out, unsigned depth, bool indent) const {
  if (m_IsComment) return AppendComment(out, m_Body);

  out.append(1, '<').append(m_Name);
  for (const auto& [name, value] : m_Attributes) {
    out.append(1, ' ').append(name).append("=\"");
    if (!AppendEscaped(out, value, Place::Attribute)) return false;
    out += '"';
  }
  if (m_Body.empty() && m_Children.empty()) {
    out += "/>";
    return true;
  }
  out += '>';
  if (!AppendEscaped(out, m_Body, Place::Text)) return false;

  // Beside text, and in all that stands within, white space would be content.
  indent = indent && m_Body.empty();
  for (const XMLElement& child : m_Children) {
    if (indent) AppendLineStart(out, depth + 1);
    if (!child.RenderElement(out, depth + 1, indent)) return false;
  }
  if (indent) AppendLineStart(out, depth);
  out.append("</").append(m_Name).append(1, '>');
  return true;
}

}  // namespace Ferro
