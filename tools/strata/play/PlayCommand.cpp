// SPDX-License-Identifier: BSD-3-Clause
#include "PlayCommand.h"

#include "PlaySession.h"
#include "findings/LoadFailure.h"
#include "terminal/Command.h"
#include "terminal/CommandError.h"
#include "terminal/ExitCode.h"
#include "terminal/LogView.h"

#include <charconv>
#include <cstdio>
#include <memory>

namespace Tool {

namespace {

/// Reads "max" or a number into the speed. Returns what is wrong with it; empty: nothing.
std::string ReadSpeed(const std::string& text, std::optional<double>& speed) {
  double value = 0;
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, value);
  const bool is_number = error == std::errc() && end == last && value >= 0.01 && value <= 100;
  if (!is_number && text != "max") return "not a speed: " + text;
  speed = is_number ? std::optional(value) : std::nullopt;
  return "";
}

bool Load(PlaySession& session) {
  QuietLog log;  // why it failed is told in other words
  return session.Load();
}

ExitCode Play(const PlayOptions& options) {
  Inputs inputs;
  if (!inputs.Open(options.Inputs)) throw CommandError(inputs.ProblemCode(), inputs.Problem());
  PlaySession session(options, inputs);
  if (!Load(session)) return ReportLoadFailure(inputs);
  const bool finished = session.Play();
  const PlayReport report = session.Report(!finished);
  std::fputs((options.AsJson ? PlayJson(report) : PlayText(report)).c_str(), stdout);
  return report.Code();
}

}  // namespace

void AddPlayCommand(Command& program) {
  const auto options = std::make_shared<PlayOptions>();
  Command& command = program.AddCommand("play", "Play a show: read every frame of every channel, fire its events");
  options->Inputs.AddTo(command, "show", "A folder, an asset map, a playlist file or an identifier");
  command
      .AddText(
          "--speed", [options](const std::string& text) { return ReadSpeed(text, options->Speed); },
          "Times real time, 0.01 to 100, or max: as fast as frames can be read")
      .Form = "NUMBER|max";
  command
      .Add("--resume", options->ResumeFile,
           "Start where this file says, and keep the position in it; a file with anything else, or of another show "
           "that was left in the middle, stays as it is")
      .Called("FILE");
  command.Add("--verify", options->Verify, "Compare each frame with its file; with keys, verify encrypted ones");
  options->Keys.AddTo(command);
  command.Add("--paused", options->Paused, "Wait for a command before playing");
  command.Add("--json", options->AsJson, "Print only the summary, as JSON");
  command.SetFooter(
      "Commands, typed or read from standard input as lines: f and b play forwards and backwards, l<n> locates edit\n"
      "unit n, t<n> shuttles at n times the speed, jf and jb jog one edit unit on and back, p pauses, s stops, q "
      "quits,\n"
      "? tells of them and of the keys.\n"
      "Exit codes: 0 fine, 2 not playable, or frames differ or are lacking, 3 assets are missing, 4 interrupted.\n"
      "Examples:\n"
      "  strata play show\n"
      "  strata play show --speed max --verify --resume position.txt");
  command.Does([options] { return Play(*options); });
}

}  // namespace Tool
