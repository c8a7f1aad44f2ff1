// SPDX-License-Identifier: BSD-3-Clause
#include "Report.h"

#include <cstdio>

Json NewReport(const std::string& command, int version) {
  return Json{{"schema", "strata-" + command + "-" + std::to_string(version)}};
}

void PrintReport(const Json& report, bool as_json, const std::function<std::string(const Json&)>& render) {
  std::string text = as_json ? report.dump(2, ' ', false, Json::error_handler_t::replace) : render(report);
  if (text.empty() || text.back() != '\n') text += '\n';
  std::fwrite(text.data(), 1, text.size(), stdout);
}
