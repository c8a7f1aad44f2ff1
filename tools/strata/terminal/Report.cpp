// SPDX-License-Identifier: BSD-3-Clause
#include "Report.h"

#include "DisplayText.h"

#include <cstdio>
#include <utility>

namespace Tool {

Json NewReport(const std::string& command, int version) {
  return Json{{"schema", "strata-" + command + "-" + std::to_string(version)}};
}

Json DisplayModel(Json model) {
  if (model.is_string()) return DisplayText(model.get_ref<const std::string&>());
  if (model.is_structured())
    for (Json& element : model) element = DisplayModel(std::move(element));
  return model;
}

void PrintReport(const Json& report, bool as_json, const std::function<std::string(const Json&)>& render) {
  std::string text =
      as_json ? report.dump(2, ' ', false, Json::error_handler_t::replace) : render(DisplayModel(report));
  if (text.empty() || text.back() != '\n') text += '\n';
  std::fwrite(text.data(), 1, text.size(), stdout);
}

}  // namespace Tool
