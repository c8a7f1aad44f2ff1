// SPDX-License-Identifier: BSD-3-Clause
#include "KeyReport.h"

#include "Moment.h"
#include "terminal/DisplayText.h"

#include <StrataHost/KeyResult.h>

namespace Tool {

std::string KeyAnswerText(const KeyAnswer& answer) {
  const std::string moment = answer.IsNow ? "now: " : "at " + LocalText(answer.Begin) + ": ";
  if (answer.Choice.Best == nullptr) return moment + "no key message";
  const Sigil::KeyMessage& message = answer.Choice.Best->Message;
  return moment + DisplayText(answer.Choice.Best->Source) + (answer.Serves() ? " serves" : " does not serve") +
         ", from " + WrittenText(message.NotBefore) + " until " + WrittenText(message.NotAfter);
}

Json KeyAnswersJson(const std::vector<KeyAnswer>& answers) {
  Json list = Json::Array();
  for (const KeyAnswer& answer : answers) {
    Json& json = list.push_back(Json{{"at", answer.Begin.EncodeString()},
                                     {"now", answer.IsNow},
                                     {"serves", answer.Serves()},
                                     {"result", StrataHost::EngineResult(answer.Result).Symbol()}});
    if (answer.Choice.Best == nullptr) continue;
    const Sigil::KeyMessage& message = answer.Choice.Best->Message;
    json["file"] = answer.Choice.Best->Source;
    json["message_id"] = message.ID.EncodeString();
    json["not_before"] = message.NotBefore.EncodeString();
    json["not_after"] = message.NotAfter.EncodeString();
  }
  return list;
}

}  // namespace Tool
