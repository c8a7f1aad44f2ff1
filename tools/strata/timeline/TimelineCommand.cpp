// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineCommand.h"

#include "TimelineHtml.h"
#include "TimelineJson.h"
#include "TimelineText.h"
#include "drawing/TimelineModel.h"
#include "drawing/TimelineSvg.h"
#include "show/Inputs.h"
#include "terminal/Command.h"
#include "terminal/CommandError.h"
#include "terminal/ExitCode.h"
#include "terminal/Interrupt.h"
#include "terminal/LogView.h"
#include "terminal/Messages.h"
#include "terminal/Terminal.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace Tool {

namespace {

constexpr unsigned FewestColumns = 40;
constexpr unsigned MostColumns = 1000;

struct TimelineOptions {
  InputOptions Inputs;
  KeyOptions Keys;
  ShowTimeOptions Times;
  std::string SvgFile;
  std::string HtmlFile;
  bool AsText = false;
  bool AsJson = false;
  unsigned Columns = 0;
};

/// POSIX: LC_ALL goes before LC_CTYPE, and that before LANG. ASCII where none says UTF-8.
bool IsUTF8Locale() {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value == '\0') continue;
    std::string locale = value;
    std::transform(locale.begin(), locale.end(), locale.begin(), [](unsigned char c) { return std::tolower(c); });
    return locale.find("utf-8") != std::string::npos || locale.find("utf8") != std::string::npos;
  }
  return false;
}

unsigned ColumnsOfTerminal() {
  return std::clamp(Terminal::Columns(STDOUT_FILENO), FewestColumns, MostColumns);
}

bool WriteFile(const std::string& name, const std::string& text) {
  const std::string problem = WriteWholeFile(name, text);
  if (!problem.empty()) TellError(problem);
  return problem.empty();
}

ExitCode Timeline(const TimelineOptions& options) {
  QuietLog log;  // what is wrong is told in other words
  Inputs inputs;
  if (!inputs.Open(options.Inputs)) {
    TellError(inputs.Problem());
    return inputs.ProblemCode();
  }
  ShowKeys keys(options.Keys, options.Times, FoldersOf(options.Inputs));
  const ShowOutline outline(inputs);
  const ShowSecurity security(keys, outline);
  const TimelineModel model = MakeTimelineModel(outline, &security);
  if (Interrupt::Requested()) {
    TellRemark("interrupted; nothing was written");
    return ExitCode::Interrupted;
  }
  if (!options.SvgFile.empty() && !WriteFile(options.SvgFile, TimelineSvg(model))) return ExitCode::NotPlayable;
  if (!options.HtmlFile.empty() && !WriteFile(options.HtmlFile, TimelineHtml(model))) return ExitCode::NotPlayable;
  const bool nothing_else = options.SvgFile.empty() && options.HtmlFile.empty() && !options.AsJson;
  if (options.AsText || nothing_else) {
    const TimelineTextForm form = {options.Columns != 0 ? options.Columns : ColumnsOfTerminal(), IsUTF8Locale()};
    std::fputs(TimelineText(model, form).c_str(), stdout);
  }
  if (options.AsJson) std::fputs(TimelineJson(model).c_str(), stdout);
  if (model.Code != ExitCode::Fine) TellError(TimelineVerdict(model) + " `strata check` tells more.");
  return model.Code;
}

}  // namespace

void AddTimelineCommand(Command& program) {
  const auto options = std::make_shared<TimelineOptions>();
  Command& command = program.AddCommand("timeline", "Draw what plays when, to scale, and what is missing");
  options->Inputs.AddTo(command, "show", "A folder, an asset map, a playlist file or an identifier");
  options->Keys.AddMessagesTo(command);
  options->Times.AddTo(command);
  command.Add("--svg", options->SvgFile, "Draw a picture into this file").Called("FILE");
  command
      .Add("--html", options->HtmlFile,
           "Write a page into this file that zooms and tells of what is pointed at; it needs no other file")
      .Called("FILE");
  Option& text = command.Add("--text", options->AsText, "Print lines of text; so it is without other options");
  command
      .Add("--width", options->Columns,
           "Columns of the text, 40 to 1000 (default: the terminal's; 80 where there is none)")
      .Within(FewestColumns, MostColumns);
  command.Add("--json", options->AsJson, "Print what is drawn as JSON").Excludes(text);
  command.SetFooter(
      "A show with missing assets is drawn too. Characters beyond ASCII are printed where the locale is UTF-8.\n"
      "Exit codes: 0 nothing is wrong, 1 usage, 2 something is broken or a file cannot be written, 3 assets are "
      "missing,\n"
      "4 interrupted.\n"
      "Examples:\n"
      "  strata timeline show --at 20:00\n"
      "  strata timeline show/Feature --store show --html timeline.html --svg timeline.svg");
  command.Does([options] { return Timeline(*options); });
}

}  // namespace Tool
