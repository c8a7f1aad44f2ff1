// SPDX-License-Identifier: BSD-3-Clause
#include "PlaySession.h"

#include "show/Description.h"
#include "terminal/DisplayText.h"
#include "terminal/Interrupt.h"
#include "terminal/Messages.h"
#include "terminal/TextForms.h"

#include <Strata/DeviceStatus.h>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <utility>

namespace Tool {

namespace {

constexpr auto StatusInterval = std::chrono::milliseconds(100);
constexpr auto PositionInterval = std::chrono::seconds(1);
constexpr auto MostCaughtUp = std::chrono::seconds(1);  // of time that was lost; the rest of it is held up
constexpr unsigned SecondsToEnd = 5;        // after a signal, when some file cannot be read and does not fail either
constexpr size_t MostEvents = 10'000;       // kept for the summary
constexpr Ferro::ui64_t MostAltered = 100;  // told one by one

}  // namespace

PlaySession::PlaySession(const PlayOptions& options, Inputs& inputs)
    : m_Options(options),
      m_Inputs(inputs),
      m_Outline(inputs),
      m_AtMaximum(!options.Speed),
      m_ShowsStatus(isatty(STDOUT_FILENO) != 0 && !options.AsJson),
      m_Keys(OpenKeys(options.Keys, FoldersOf(options.Inputs))),
      m_PositionFile(options.ResumeFile, inputs.Shows().front().ID),
      m_KeepsPosition(!options.ResumeFile.empty()) {}

PlaySession::~PlaySession() = default;

bool PlaySession::Load() {
  if (Strata::NewPlaylist(m_Playlist).Failure() || m_Inputs.Load(*m_Playlist).Failure()) return false;
  m_Transport.emplace(*m_Playlist);
  m_Reader = std::make_unique<ChannelReader>(*m_Playlist);
  if (m_Options.Verify) m_Verifier = std::make_unique<FrameVerifier>(m_Inputs.Store(), m_Keys);
  Resume();
  return true;
}

bool PlaySession::Play() {
  m_Log.emplace();
  m_Reader->OnFirstLacking([this](const std::string& channel, Ferro::ui32_t frame) {
    Warn("edit unit " + std::to_string(m_Playlist->GetPosition()) + ", " + channel + ": frame " +
         std::to_string(frame) + " of the file cannot be read; others of this file are only counted");
  });
  m_Reader->OnFirstMissing([this](const std::string& channel, Ferro::ui32_t) {
    Warn("edit unit " + std::to_string(m_Playlist->GetPosition()) + ", " + channel +
         ": the file cannot be opened any more; the rest plays without it");
  });
  Terminal terminal;
  Interrupt::EndAfter(SecondsToEnd, &Terminal::Restore);
  if (terminal.IsTerminal()) Say("space pause   . , step   arrows jump   q quit   ? help");
  if (!m_Options.Paused) m_Transport->TogglePause();
  m_Started = Clock::now();
  m_Due = m_Started;
  bool quit = false;
  while (!quit && !Interrupt::Requested()) {
    if (m_Played != m_Playlist->GetPosition()) PlayEditUnit();
    ShowStatus();
    const bool moving = m_Transport->IsMoving();
    m_Due = moving ? EndOfEditUnit() : Clock::now() + std::chrono::milliseconds(200);
    // Wait out the edit unit, doing what the user wants meanwhile.
    for (bool waiting = true; waiting && !quit;) {
      const std::chrono::duration<double> left = m_Due - Clock::now();
      const auto input = terminal.Read(moving && m_AtMaximum ? std::chrono::duration<double>(0) : left);
      if (input) quit = HandleInput(terminal, *input);
      const bool over = Clock::now() >= m_Due || m_AtMaximum;
      waiting = !over && !Interrupt::Requested() && m_Played == m_Playlist->GetPosition();
    }
    const bool ended = moving && m_Transport->IsMoving() && !m_Transport->Advance();
    const bool nothing_comes = !m_Transport->IsMoving() && terminal.AtEnd();
    quit = quit || ended || nothing_comes || m_Transport->IsStopped();
  }
  m_Elapsed = Clock::now() - m_Started;
  KeepPosition();
  if (m_ShowsStatus) std::fputs("\n", stdout);
  return !Interrupt::Requested();
}

void PlaySession::PlayEditUnit() {
  const Ferro::ui32_t position = m_Playlist->GetPosition();
  ChannelReader::Inspect inspect;
  if (m_Verifier) inspect = [this](const DeliveredFrame& frame) { Verify(frame); };
  m_Reader->ReadEditUnit(position, m_Transport->NextPosition(), EndOfEditUnit(), inspect);
  m_Played = position;
  ++m_EditUnits;

  m_Playlist->TransportStatusNotify(this, m_Transport->LastCommand(), Strata::DeviceStatus(), false);
  m_Playlist->PlaylistStatusNotify(this, false);
  if (m_Playlist->EssenceCodingChanged()) Say("essence coding changes");
  m_Playlist->PlaylistEventNotify(this);
}

void PlaySession::Verify(const DeliveredFrame& frame) {
  const auto say = [&](const std::string& what) {
    Say("edit unit " + std::to_string(frame.ShowPosition) + ", " + frame.Channel + ": " + what);
  };
  const Verification& outcome = m_Verifier->Outcome();
  if (!m_Verifier->Inspect(frame) && outcome.Different <= outcome.Differences.size())
    say("the frame is not edit unit " + std::to_string(frame.FilePosition) + " of its file");
  const Ferro::Result_t result = m_Verifier->VerifyIntegrity(frame);
  if (result.Failure() && outcome.Altered <= MostAltered)
    say("the encrypted frame is not as it was written: " + std::string(result.Label()));
}

std::chrono::duration<double> PlaySession::EditUnitLength() const {
  const QUIRE::Rational& rate = m_Playlist->GetCompositionInfoForCurrentPosition().EditRate;
  const double seconds = rate.Numerator > 0 ? double(rate.Denominator) / rate.Numerator : 1.0 / 24;
  return std::chrono::duration<double>(seconds / m_Options.Speed.value_or(1));
}

// Where the show falls far behind its clock, as while the whole program was stopped, the clock is set back.
PlaySession::Clock::time_point PlaySession::EndOfEditUnit() {
  const Clock::time_point now = Clock::now();
  const auto length = std::chrono::duration_cast<Clock::duration>(EditUnitLength());
  if (!m_Transport->IsMoving() || m_AtMaximum) return now + length;
  if (const Clock::duration lost = now - m_Due - MostCaughtUp; lost > Clock::duration::zero()) {
    m_HeldUp += lost;
    m_Due += lost;
  }
  return m_Due + length;
}

void PlaySession::TransportStatusNotify(const Strata::TimelinePosition&, const Strata::TimelinePosition&,
                                        const Strata::TimelinePosition&, const Strata::DeviceStatus&,
                                        const Strata::CommandType_t&) {
  if (Clock::now() - m_PositionKept >= PositionInterval) KeepPosition();
}

void PlaySession::TransportExceptionNotify(const Strata::TransportException& exception) {
  Say(exception.Message);
}

void PlaySession::PlaylistStatusNotify(const Strata::CompositionInfo& composition) {
  std::string line = "composition \"" + composition.Title + "\", reel " + std::to_string(composition.CurrentReel) +
                     " of " + std::to_string(composition.TotalReels);
  const size_t number = CompositionAt(m_Playlist->GetPosition());
  const bool is_new = std::exchange(m_Composition, number) != number;
  if (is_new && !m_Options.AsJson && number < m_Outline.Compositions().size())
    line += ": " + DescriptionOf(m_Outline.Compositions()[number]);
  Say(line);
}

size_t PlaySession::CompositionAt(Ferro::ui32_t position) const {
  const auto& all = m_Outline.Compositions();
  const auto after = std::upper_bound(all.begin(), all.end(), position,
                                      [](Ferro::ui32_t p, const OutlineComposition& c) { return p < c.Start; });
  return after == all.begin() ? 0 : static_cast<size_t>(after - all.begin()) - 1;
}

const std::string& PlaySession::DescriptionOf(const OutlineComposition& composition) {
  const auto [known, is_new] = m_Descriptions.try_emplace(composition.ID);
  if (is_new) known->second = Describe(TraitsOf(composition));
  return known->second;
}

void PlaySession::PlaylistEventNotify(const Ferro::ArchivableList<Strata::PlaylistEvent>& events) {
  for (const Strata::PlaylistEvent& event : events) {
    Say("event " + event.Label + (event.LabelScope.empty() ? "" : " (" + event.LabelScope + ")"));
    if (m_Events.size() < MostEvents) m_Events.push_back({event.Label, event.LabelScope, event.ShowPosition});
  }
}

bool PlaySession::HandleInput(Terminal& terminal, const std::string& input) {
  if (terminal.IsTerminal()) return HandleKey(input);
  if (input == "q") return true;
  HandleLine(input);
  return false;
}

// Keys act at once; anything else begins a command, which Enter ends and the escape key gives up.
bool PlaySession::HandleKey(const std::string& key) {
  const auto second = static_cast<Ferro::i64_t>(1 / EditUnitLength().count() + 0.5);
  const bool is_letter = key.size() == 1 && key.front() >= ' ' && key.front() <= '~';
  if (key == "?" && m_Typed.empty()) {
    SayHelp(true);
  } else if (key == "\n" || key == "\r") {
    HandleLine(std::exchange(m_Typed, ""));
  } else if (key == "\x7f" || key == "\b") {
    if (!m_Typed.empty()) m_Typed.pop_back();
  } else if (key == "left" || key == "right") {
    m_Transport->Jump(key == "left" ? -10 * second : 10 * second);
  } else if (key == "up" || key == "down") {
    m_Transport->Jump(key == "up" ? 60 * second : -60 * second);
  } else if (key == "escape") {
    m_Typed.clear();
  } else if (is_letter && !m_Typed.empty()) {
    m_Typed += key;
  } else if (key == "q") {
    return true;
  } else if (key == " ") {
    m_Transport->TogglePause();
  } else if (key == "." || key == ",") {
    HandleLine(key == "." ? "jf" : "jb");
  } else if (is_letter) {
    m_Typed = key;
  }
  return false;
}

void PlaySession::HandleLine(const std::string& line) {
  if (line.empty()) return;
  if (line == "?") return SayHelp(false);
  Strata::Command command;
  if (command.ParseCommand(line))
    m_Transport->Execute(command);
  else
    Say(command.LastError());
}

std::string LateText(const std::vector<ChannelStatistics>& channels) {
  Ferro::ui64_t late = 0;
  std::string names;
  for (const ChannelStatistics& channel : channels)
    if (channel.Late > 0) {
      late += channel.Late;
      names += (names.empty() ? "" : ", ") + channel.Name + ' ' + std::to_string(channel.Late);
    }
  return "late " + std::to_string(late) + (late == 0 ? "" : " (" + names + ')');
}

std::string PlayHelp(bool has_keys) {
  const char* const keys =
      "  space         play, or pause\n"
      "  . ,           one edit unit on, back\n"
      "  right left    ten seconds on, back\n"
      "  up down       a minute on, back\n"
      "  q             quit\n"
      "Commands, each with Enter; escape gives one up:\n";
  Strata::Command command;
  static_cast<void>(command.ParseCommand("?"));
  return std::string(has_keys ? keys : "") +
         "  f b           play forwards, backwards\n"
         "  l48           locate edit unit 48\n"
         "  t4            shuttle at four times the speed\n"
         "  jf jb         jog one edit unit on, back\n"
         "  p s           pause, stop and end\n"
         "In short: " +
         command.LastError();
}

std::string PlaySession::TimeTo(Ferro::ui32_t position) const {
  return DurationText(double(position - m_Playlist->GetPosition()) * EditUnitLength().count());
}

std::string PlaySession::WhatComes(Ferro::ui32_t position) const {
  const auto& all = m_Outline.Compositions();
  const size_t next = CompositionAt(position) + 1;
  std::string text = next < all.size() ? "next " + all[next].Title + " in " + TimeTo(all[next].Start)
                                       : "end in " + TimeTo(m_Playlist->GetDuration());
  const auto marker = std::find_if(m_Outline.Markers().begin(), m_Outline.Markers().end(),
                                   [&](const OutlineMarker& m) { return m.Position > position; });
  if (marker != m_Outline.Markers().end()) text += "  " + marker->Label + " in " + TimeTo(marker->Position);
  return text;
}

// A narrow terminal shows the beginning: what matters most goes first.
std::string PlaySession::StatusLine() const {
  const Ferro::ui32_t position = m_Playlist->GetPosition();
  const Strata::CompositionInfo& composition = m_Playlist->GetCompositionInfoForCurrentPosition();
  const auto of = [](size_t number, size_t all) { return std::to_string(number) + '/' + std::to_string(all); };
  return TimeCodeText(position, composition.EditRate) + " of " + DurationText(m_Playlist->GetDurationSeconds()) + "  " +
         of(position, m_Playlist->GetDuration()) + "  " + m_Transport->StateText() + "  " +
         LateText(m_Reader->Statistics()) + "  " + of(CompositionAt(position) + 1, m_Outline.Compositions().size()) +
         ' ' + composition.Title + "  reel " + of(composition.CurrentReel, composition.TotalReels) + "  " +
         WhatComes(position);
}

void PlaySession::ShowStatus() {
  const Clock::time_point now = Clock::now();
  if (!m_ShowsStatus || now - m_StatusShown < StatusInterval) return;
  m_StatusShown = now;
  std::string line = (m_Typed.empty() ? "" : "> " + m_Typed + "  ") + StatusLine();
  line = FitColumns(line, Terminal::Columns(STDOUT_FILENO) - 1);  // a line that wraps cannot be undone
  std::printf("\r%s\x1b[K", line.c_str());
  std::fflush(stdout);
}

void PlaySession::Say(const std::string& line) {
  if (m_Options.AsJson) return;
  std::printf("%s%s\n", m_ShowsStatus ? "\r\x1b[K" : "", DisplayText(line).c_str());
  std::fflush(stdout);
}

void PlaySession::SayHelp(bool has_keys) {
  std::istringstream lines(PlayHelp(has_keys));
  for (std::string line; std::getline(lines, line);) Say(line);
}

void PlaySession::Warn(const std::string& line) const {
  if (m_ShowsStatus) std::fputs("\r\x1b[K", stdout);
  std::fflush(stdout);
  TellWarning(DisplayText(line));
}

// It is written at once: the user learns before the show, not after it, that it cannot be.
void PlaySession::Resume() {
  const Ferro::ui32_t position = m_PositionFile.Read(m_Playlist->GetDuration());
  if (!m_PositionFile.Problem().empty()) Warn(m_PositionFile.Problem());
  if (position > 0) {
    m_Playlist->MoveToEditUnit(position);
    const auto& rate = m_Playlist->GetCompositionInfoForCurrentPosition().EditRate;
    Say("resuming at " + TimeCodeText(position, rate) + ", edit unit " + std::to_string(position) + " of " +
        std::to_string(m_Playlist->GetDuration()));
  }
  KeepPosition();
}

void PlaySession::KeepPosition() {
  if (!m_KeepsPosition) return;
  m_PositionKept = Clock::now();
  const Ferro::ui32_t position = m_Playlist->GetPosition();
  m_KeepsPosition = m_PositionFile.Keep(position + 1 >= m_Playlist->GetDuration() ? 0 : position);
  if (!m_KeepsPosition) Warn(m_PositionFile.Problem());
}

PlayReport PlaySession::Report(bool interrupted) const {
  PlayReport report;
  report.Interrupted = interrupted;
  report.Position = m_Playlist->GetPosition();
  report.Duration = m_Playlist->GetDuration();
  report.EditUnits = m_EditUnits;
  report.Seconds = std::chrono::duration<double>(m_Elapsed).count();
  report.HeldUpSeconds = std::chrono::duration<double>(m_HeldUp).count();
  report.Channels = m_Reader->Statistics();
  if (m_Verifier) report.Verified = m_Verifier->Outcome();
  report.Events = m_Events;
  return report;
}

}  // namespace Tool
