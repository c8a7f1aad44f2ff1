// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/XMLAttrPtr.h>
#include <Cairn/XMLNode.h>

#include "base/Blanks.h"
#include "base/UTF16.h"

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/util/XMLString.hpp>

#include <string_view>

namespace Cairn {
namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;

const DOMElement* ElementFrom(const DOMNode* node) {
  while (node != nullptr && node->getNodeType() != DOMNode::ELEMENT_NODE) node = node->getNextSibling();
  return static_cast<const DOMElement*>(node);
}

}  // namespace

std::string XMLChToUTF8(const XMLCh* text) {
  return text == nullptr ? std::string() : UTF16ToUTF8({text, xercesc::XMLString::stringLen(text)});
}

std::string LocalName(const DOMNode* node) {
  return node == nullptr ? std::string() : XMLChToUTF8(node->getLocalName());
}

std::string NamespaceName(const DOMNode* node) {
  return node == nullptr ? std::string() : XMLChToUTF8(node->getNamespaceURI());
}

std::string TextContent(const DOMNode* node) {
  return node == nullptr ? std::string() : XMLChToUTF8(node->getTextContent());
}

std::string TrimmedText(const DOMNode* node) {
  return std::string(TrimBlanks(TextContent(node)));
}

const DOMElement* FirstChildElement(const DOMNode* node) {
  return node == nullptr ? nullptr : ElementFrom(node->getFirstChild());
}

const DOMElement* NextSiblingElement(const DOMNode* node) {
  return node == nullptr ? nullptr : ElementFrom(node->getNextSibling());
}

const DOMElement* FirstChildNamed(const DOMNode* node, std::string_view name) {
  const DOMElement* child = FirstChildElement(node);
  while (child != nullptr && LocalName(child) != name) child = NextSiblingElement(child);
  return child;
}

std::string XMLAttrPtr::get_attr_with_name(const xercesc::DOMNode* node, const char* name) {
  if (node == nullptr || name == nullptr || node->getNodeType() != xercesc::DOMNode::ELEMENT_NODE) return {};
  const std::string_view ascii_name(name);  // attribute names of the documents are ASCII
  const std::u16string wide_name(ascii_name.begin(), ascii_name.end());
  return XMLChToUTF8(static_cast<const xercesc::DOMElement*>(node)->getAttribute(wide_name.c_str()));
}

}  // namespace Cairn
