// SPDX-License-Identifier: BSD-3-Clause
#include "ProgressBar.h"

#include "Terminal.h"
#include "TextForms.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>

namespace Tool {

namespace {

constexpr double FirstShown = 1;  // seconds
constexpr double Interval = 0.1;
constexpr unsigned BarWidth = 24;

double Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::string Name(ProgressUnit unit) {
  switch (unit) {
    case ProgressUnit::Bytes:
      return "";  // told with each amount
    case ProgressUnit::Files:
      return " files";
    case ProgressUnit::Pictures:
      return " pictures";
    case ProgressUnit::Frames:
      return " frames";
    case ProgressUnit::Compositions:
      return " compositions";
    case ProgressUnit::Packages:
      return " packages";
  }
  return "";
}

}  // namespace

ProgressBar::ProgressBar(std::string what, ProgressUnit unit)
    : m_What(std::move(what)),
      m_Unit(unit),
      m_OnTerminal(isatty(STDERR_FILENO) != 0),
      m_Started(Now()),
      m_Shown(m_Started) {}

ProgressBar::~ProgressBar() {
  Hide();
}

void ProgressBar::Hide() {
  if (m_IsShown) std::fputs("\r\x1b[K", stderr);
  m_IsShown = false;
}

void ProgressBar::Update(Ferro::ui64_t done, Ferro::ui64_t total) {
  const double now = Now();
  if (!m_OnTerminal || now - m_Started < FirstShown || now - m_Shown < Interval) return;
  m_Shown = now;
  m_IsShown = true;
  const unsigned columns = Terminal::Columns(STDERR_FILENO) - 1;
  std::fprintf(stderr, "\r%s\x1b[K", Line(m_What, done, total, now - m_Started, columns, m_Unit).c_str());
  std::fflush(stderr);
}

std::string ProgressBar::Line(const std::string& what, Ferro::ui64_t done, Ferro::ui64_t total, double seconds,
                              unsigned columns, ProgressUnit unit) {
  const double share = total > 0 ? std::min(1.0, double(done) / double(total)) : 0;
  const double rate = seconds > 0 ? double(done) / seconds : 0;
  const unsigned filled = static_cast<unsigned>(share * BarWidth);
  const auto amount = [&](double value) {
    const auto whole = static_cast<Ferro::ui64_t>(value);
    return unit == ProgressUnit::Bytes ? BytesText(whole) : std::to_string(whole);
  };
  std::string line = what + " [" + std::string(filled, '#') + std::string(BarWidth - filled, '.') + "] " +
                     amount(double(done)) + " of " + amount(double(total)) + Name(unit) + ", " + amount(rate) + "/s";
  if (rate > 0 && done < total) line += ", " + DurationText(double(total - done) / rate) + " left";
  return line.substr(0, columns);
}

}  // namespace Tool
