// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/XMLAttrPtr.h>

#include <Cairn/XMLNode.h>

#include <xercesc/dom/DOMElement.hpp>

#include <string_view>

namespace Cairn {

std::string XMLAttrPtr::get_attr_with_name(const xercesc::DOMNode* node, const char* name) {
  if (node == nullptr || name == nullptr || node->getNodeType() != xercesc::DOMNode::ELEMENT_NODE) return {};
  const std::string_view ascii_name(name);  // attribute names of the documents are ASCII
  const std::u16string wide_name(ascii_name.begin(), ascii_name.end());
  return XMLChToUTF8(static_cast<const xercesc::DOMElement*>(node)->getAttribute(wide_name.c_str()));
}

}  // namespace Cairn
