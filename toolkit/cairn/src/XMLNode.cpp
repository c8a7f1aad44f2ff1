// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/XMLNode.h>

#include "Blanks.h"
#include "UTF16.h"

#include <xercesc/util/XMLString.hpp>

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

}  // namespace Cairn
