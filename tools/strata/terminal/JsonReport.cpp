// SPDX-License-Identifier: BSD-3-Clause
#include "JsonReport.h"

#include <nlohmann/json.hpp>

namespace Tool {

namespace {

using Written = nlohmann::ordered_json;

// What the library writes of a value.
struct ToWritten {
  Written operator()(std::monostate) const { return nullptr; }
  Written operator()(const std::vector<Json>& list) const {
    Written array = Written::array();
    for (const Json& element : list) array.push_back(element.Visit(*this));
    return array;
  }
  Written operator()(const Json::Members& members) const {
    Written object = Written::object();
    for (size_t i = 0; i < members.Keys.size(); ++i) object[members.Keys[i]] = members.Contents[i].Visit(*this);
    return object;
  }
  template <class T>
  Written operator()(const T& plain) const {
    return plain;
  }
};

/// Escapes DEL and U+0080 to U+009F; JSON has control characters in texts only, and escapes the others itself (RFC 8259, 7).
std::string WithEscapedControls(const std::string& json) {
  static constexpr char Digits[] = "0123456789abcdef";
  std::string text;
  for (size_t at = 0; at < json.size(); ++at) {
    const auto byte = static_cast<unsigned char>(json[at]);
    const auto next = static_cast<unsigned char>(at + 1 < json.size() ? json[at + 1] : 0);
    const bool is_c1 = byte == 0xc2 && next >= 0x80 && next <= 0x9f;
    if (!is_c1 && byte != 0x7f) {
      text += json[at];
      continue;
    }
    const unsigned char code = is_c1 ? next : byte;
    text += {'\\', 'u', '0', '0', Digits[code >> 4U], Digits[code & 0xfU]};
    if (is_c1) ++at;
  }
  return text;
}

}  // namespace

Json NewJsonReport(const std::string& command, int version) {
  return Json{{"schema", "strata-" + command + "-" + std::to_string(version)}};
}

void AddUnlessEmpty(Json& json, const char* key, const std::string& text) {
  if (!text.empty()) json[key] = text;
}

std::string JsonText(const Json& report, bool is_indented) {
  return WithEscapedControls(
             report.Visit(ToWritten()).dump(is_indented ? 2 : -1, ' ', false, Written::error_handler_t::replace)) +
         '\n';
}

}  // namespace Tool
