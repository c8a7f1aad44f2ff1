// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentFault.h"

#include "terminal/ReasonText.h"

#include <Cairn/InspectFile.h>
#include <Cairn/Result.h>

#include <algorithm>

namespace Tool {

std::string DocumentFault(const std::string& path, const Ferro::Result_t& result,
                          const std::vector<Ferro::LogEntry>& messages) {
  Cairn::FileContent content;
  const bool is_known = Cairn::InspectFile(path, content).Success() && content.Type != Cairn::FT_UNKNOWN;
  if (content.Problem == Cairn::DP_ENCODING) return content.Reason;
  const bool is_told =
      result == Cairn::RESULT_XML_PARSE || result == Cairn::RESULT_CN_VALUE || result == Cairn::RESULT_CN_UUID_FORMAT;
  const auto first = std::find_if(messages.begin(), messages.end(),
                                  [](const auto& entry) { return entry.Level == Ferro::LogLevel::Error; });
  if (!is_told || first == messages.end() || !is_known) return ReasonText(result);
  std::string fault = first->Message;
  if (fault.ends_with('.')) fault.pop_back();
  return fault;
}

}  // namespace Tool
