// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Export.h>

#include <xercesc/dom/DOMNode.hpp>

#include <string>

namespace Cairn {

/// Access to the attributes of an element.
struct CAIRN_API XMLAttrPtr {
  /// The value of the attribute of that name (without namespace) as UTF-8; empty when absent, when `node` is null or is
  /// not an element.
  [[nodiscard]] static std::string get_attr_with_name(const xercesc::DOMNode* node, const char* name);
};

}  // namespace Cairn
