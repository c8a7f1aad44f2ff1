// SPDX-License-Identifier: BSD-3-Clause
#include "ExportCommand.h"

#include "findings/LoadFailure.h"
#include "show/Inputs.h"
#include "terminal/Command.h"
#include "terminal/CommandError.h"
#include "terminal/ExitCode.h"
#include "terminal/Interrupt.h"
#include "terminal/LogView.h"
#include "terminal/Messages.h"

#include <Strata/IPlaylist.h>
#include <Strata/PlayedSpan.h>
#include <Strata/ShowPlaylist.h>

#include <charconv>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace Tool {

namespace {

using Ferro::ui32_t;

enum class ExportedIDs { Compositions, Encrypted, Keys };

struct ExportOptions {
  InputOptions Inputs;
  std::string OutputFile;  ///< empty: standard output
  std::string BaseURL;     ///< of an RPL
  std::string Title;       ///< of a show playlist; empty: Untitled
  ExportedIDs Which = ExportedIDs::Compositions;
};

/// What is exported; no value when a text in it, as an event's label, is none that XML can carry.
using Export = std::function<std::optional<std::string>(const Strata::IPlaylist&, const ExportOptions&)>;

std::optional<std::string> DocumentOrNone(const std::string& document) {
  return document.empty() ? std::nullopt : std::optional(document);
}

std::optional<std::string> ShowPlaylist(const Strata::IPlaylist& playlist, const ExportOptions& options) {
  std::string document;
  static_cast<void>(playlist.GetShowPlaylistForTimeline(document));
  if (options.Title.empty() || document.empty()) return DocumentOrNone(document);
  Strata::ShowPlaylist titled;
  const bool is_read = titled.DecodeXML(document).Success();
  titled.ShowTitle = options.Title;
  titled.Label.clear();  // made from the title
  document.clear();
  if (is_read) static_cast<void>(titled.EncodeXML(document, Cairn::DFT_DCI_SMPTE));
  return DocumentOrNone(document);
}

/// The value of an attribute of the start tag at `tag`; empty where it has none. The list's writer escapes "<" in values.
/// @param name  with what stands around it: ` Duration="`.
std::string_view AttributeOf(std::string_view document, size_t tag, std::string_view name) {
  const std::string_view rest = document.substr(tag, document.find('<', tag + 1) - tag);
  const size_t at = rest.find(name);
  if (at == std::string_view::npos) return {};
  const std::string_view value = rest.substr(at + name.size());
  return value.substr(0, value.find('"'));
}

ui32_t NumberOf(std::string_view text) {
  ui32_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/// Edit units of the reel that starts at `position`.
ui32_t ReelDurationAt(const Strata::IPlaylist& playlist, ui32_t position) {
  ui32_t reel_position = 0;
  ui32_t reel = 0;
  ui32_t duration = 0;
  Strata::UUID composition;
  QUIRE::Rational edit_rate;
  bool distinct_coding = false;
  playlist.TranslateReelPosition(position, reel_position, reel, duration, composition, edit_rate, distinct_coding);
  return duration;
}

/// Ends the texts of a presentation list with the pictures of their reels: the engine lists them as long as their
/// compositions have them.
void EndTextsWithTheirReels(const Strata::IPlaylist& playlist, std::string& document) {
  constexpr std::string_view Reel = "<ReelResources ";
  constexpr std::string_view Resource = "<ReelResource ";
  constexpr std::string_view Duration = " Duration=\"";
  ui32_t reel_duration = 0;
  for (size_t tag = document.find('<'); tag != std::string::npos; tag = document.find('<', tag + 1)) {
    if (document.compare(tag, Reel.size(), Reel) == 0)
      reel_duration = ReelDurationAt(playlist, NumberOf(AttributeOf(document, tag, " TimelineOffset=\"")));
    if (document.compare(tag, Resource.size(), Resource) != 0) continue;
    const std::string_view duration = AttributeOf(document, tag, Duration);
    if (duration.empty()) continue;
    const std::string played = std::to_string(Strata::PlayedDuration(NumberOf(duration), reel_duration));
    document.replace(static_cast<size_t>(duration.data() - document.data()), duration.size(), played);
  }
}

std::optional<std::string> PresentationList(const Strata::IPlaylist& playlist, const ExportOptions& options) {
  std::string document;
  ui32_t playout = 0;
  if (playlist.GetPresentationListForTimeline(options.BaseURL, document, playout) == Ferro::RESULT_FALSE)
    TellRemark("no reel of this show has subtitles or captions: the list names none");
  EndTextsWithTheirReels(playlist, document);
  return DocumentOrNone(document);
}

std::optional<std::string> Identifiers(const Strata::IPlaylist& playlist, const ExportOptions& options) {
  Cairn::UUIDList ids;
  if (options.Which == ExportedIDs::Keys)
    playlist.GetKeyIDList(ids);
  else if (options.Which == ExportedIDs::Encrypted)
    playlist.GetCiphertextCPLIDList(ids);
  else
    playlist.GetCPLIDList(ids);
  std::string text;
  for (const Cairn::UUID& id : ids) text += id.EncodeString() + '\n';
  return text;
}

/// Loads the show; where that fails, what is wrong is told in other words than the engine's.
Strata::Result_t Load(const Inputs& inputs, Ferro::mem_ptr<Strata::IPlaylist>& playlist) {
  QuietLog log;
  const Strata::Result_t result = Strata::NewPlaylist(playlist);
  return result.Failure() ? result : inputs.Load(*playlist);
}

ExitCode Write(const std::string& text, const std::string& file) {
  if (file.empty()) {
    std::fwrite(text.data(), 1, text.size(), stdout);  // whether it arrives is seen at the program's end
  } else if (const std::string problem = WriteWholeFile(file, text); !problem.empty()) {
    TellError(problem);
    return ExitCode::NotPlayable;
  }
  return ExitCode::Fine;
}

ExitCode ExportShow(const ExportOptions& options, const Export& make) {
  Inputs inputs;
  if (!inputs.Open(options.Inputs)) {
    TellError(inputs.Problem());
    return inputs.ProblemCode();
  }
  Ferro::mem_ptr<Strata::IPlaylist> playlist;
  if (Load(inputs, playlist).Failure()) return ReportLoadFailure(inputs);
  const std::optional<std::string> text = make(*playlist, options);
  if (Interrupt::Requested()) {
    TellRemark("interrupted; nothing was written");
    return ExitCode::Interrupted;
  }
  if (text) return Write(*text, options.OutputFile);
  TellError("this cannot be a document: some text in it holds characters that XML does not have");
  return ExitCode::NotPlayable;
}

/// Adds one of the kinds of export. Its own options go in between.
Command& AddKind(Command& command, const std::string& name, const std::string& description, const Export& make,
                 const std::shared_ptr<ExportOptions>& options) {
  Command& kind = command.AddCommand(name, description);
  options->Inputs.AddTo(kind, "show", "A folder, an asset map, a playlist file or an identifier");
  kind.Add("--out", options->OutputFile,
           "Write into this file, which is complete or as it was before (default: standard output)")
      .Called("FILE");
  kind.Does([options, make] { return ExportShow(*options, make); });
  return kind;
}

}  // namespace

void AddExportCommand(Command& program) {
  const auto options = std::make_shared<ExportOptions>();
  Command& command = program.AddCommand("export", "Write a show's timeline as a show playlist, an RPL or a list");
  command.SetFooter(
      "The show is loaded as for playing; one that would not play is not exported. `strata export KIND --help`\n"
      "explains each kind.\n"
      "Exit codes: 0 written, 1 usage, 2 not playable or cannot be written, 3 assets are missing, 4 interrupted.\n"
      "Examples:\n"
      "  strata export spl show --out flat.xml\n"
      "  strata export ids show --which keys");

  Command& spl = AddKind(command, "spl", "One flat show playlist that plays the same", ShowPlaylist, options);
  spl.Add("--title", options->Title, "The title of the new show playlist (default: Untitled)").Called("TEXT");
  spl.SetFooter(
      "Show playlists inside the show come out as their compositions, events as markers. The playlist has a new\n"
      "identifier each time.\n"
      "Examples:\n"
      "  strata export spl show --title 'Saturday, first show' --out flat.xml\n"
      "  strata check flat.xml --store show");

  Command& rpl = AddKind(command, "rpl", "The resource presentation list (ST 430-11) of subtitles and captions",
                         PresentationList, options);
  rpl.Add("--base-url", options->BaseURL,
          "Stands in front of each resource's identifier in its address (default: nothing, the bare identifier)")
      .Called("URL");
  rpl.SetFooter(
      "For systems that show captions beside the screen. The list has a new playout number each time.\n"
      "Examples:\n"
      "  strata export rpl show --base-url http://192.168.1.20/captions --out show.rpl.xml");

  Command& ids = AddKind(command, "ids", "Identifiers, one on each line, in order of the show", Identifiers, options);
  ids.AddChoice(
      "--which", options->Which,
      {{"compositions", ExportedIDs::Compositions}, {"encrypted", ExportedIDs::Encrypted}, {"keys", ExportedIDs::Keys}},
      "compositions: all; encrypted: compositions that need keys; keys: the content keys that are needed");
  ids.SetFooter(
      "A composition that plays twice stands there twice; each key stands there once.\n"
      "Examples:\n"
      "  strata export ids show\n"
      "  strata export ids show --which keys --out keys.txt");
}

}  // namespace Tool
