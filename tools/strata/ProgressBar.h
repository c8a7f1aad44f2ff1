// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <chrono>
#include <string>

/// A line on standard error that says how far long work is: a bar, bytes, rate and time left. Shown from one second on,
/// and only on a terminal.
class ProgressBar {
 public:
  explicit ProgressBar(std::string what);
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// `done` and `total` in bytes.
  void Update(Ferro::ui64_t done, Ferro::ui64_t total);

  /// What Update shows after `seconds`: for `columns` characters.
  [[nodiscard]] static std::string Line(const std::string& what, Ferro::ui64_t done, Ferro::ui64_t total,
                                        double seconds, unsigned columns);

 private:
  using Clock = std::chrono::steady_clock;

  const std::string m_What;
  const bool m_OnTerminal;
  const Clock::time_point m_Started = Clock::now();
  Clock::time_point m_Shown = m_Started;
  bool m_IsShown = false;
};
