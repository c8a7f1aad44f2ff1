// SPDX-License-Identifier: BSD-3-Clause
#include "KdmList.h"

#include "keys/KeyOptions.h"
#include "keys/MessageReport.h"
#include "terminal/Command.h"
#include "terminal/DisplayText.h"
#include "terminal/ExitCode.h"

#include <cstdio>
#include <memory>

namespace Tool {

namespace {

struct ListOptions {
  std::vector<std::string> Names;
  bool AsJson = false;
};

std::string ListText(const Sigil::KeyMessageStore& store) {
  std::string text;
  for (const Sigil::KeyMessageStore::Entry& entry : store.Entries())
    text += DisplayText(entry.Source) + '\n' + MessageText(entry.Message);
  text += ProblemLines(store.Problems());
  const size_t count = store.Entries().size();
  return text + std::to_string(count) + (count == 1 ? " key message.\n" : " key messages.\n");
}

std::string ListJson(const Sigil::KeyMessageStore& store) {
  Json json = NewJsonReport("kdm-list");
  json["messages"] = Json::Array();
  for (const Sigil::KeyMessageStore::Entry& entry : store.Entries())
    json["messages"].push_back(Json{{"file", entry.Source}}).update(MessageJson(entry.Message));
  json["problems"] = ProblemsJson(store.Problems());
  return JsonText(json);
}

ExitCode List(const ListOptions& options) {
  Sigil::KeyMessageStore store({Ferro::Timestamp(), {}});
  AddMessages(options.Names, store);
  std::fputs((options.AsJson ? ListJson(store) : ListText(store)).c_str(), stdout);
  return store.Problems().empty() ? ExitCode::Fine : ExitCode::NotPlayable;
}

}  // namespace

std::string ProblemLines(const std::vector<Sigil::KeyMessageStore::Problem>& problems) {
  std::string text;
  for (const Sigil::KeyMessageStore::Problem& problem : problems)
    text += "problem: " + DisplayText(problem.Source + ": " + problem.What.Text) + '\n';
  return text;
}

Json ProblemsJson(const std::vector<Sigil::KeyMessageStore::Problem>& problems) {
  Json json = Json::Array();
  for (const Sigil::KeyMessageStore::Problem& problem : problems)
    json.push_back(
        Json{{"file", problem.Source}, {"id", Sigil::FindingName(problem.What.ID)}, {"message", problem.What.Text}});
  return json;
}

void AddKdmList(Command& kdm) {
  const auto options = std::make_shared<ListOptions>();
  Command& command = kdm.AddCommand("list", "Say what key messages open, for whom, from when until when");
  command.Add("path", options->Names, "A key message, a ZIP archive or a folder of them").Required();
  command.Add("--json", options->AsJson, "Print the report as JSON");
  command.SetFooter(
      "Exit codes: 0 all were read, 1 there is no such thing, 2 something cannot be read.\n"
      "Examples:\n"
      "  strata kdm list kdm.xml");
  command.Does([options] { return List(*options); });
}

}  // namespace Tool
