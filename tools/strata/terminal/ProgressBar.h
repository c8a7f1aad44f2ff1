// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <string>

namespace Tool {

/// What progress is counted in.
enum class ProgressUnit { Bytes, Files, Pictures, Frames, Compositions, Packages };

/// A line on standard error that says how far long work is: a bar, what is done, rate and time left. Shown from one second on,
/// and only on a terminal.
class ProgressBar {
 public:
  explicit ProgressBar(std::string what, ProgressUnit unit = ProgressUnit::Bytes);
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// `done` and `total` in the bar's unit.
  void Update(Ferro::ui64_t done, Ferro::ui64_t total);
  /// Makes room for other output; the next Update shows the bar again.
  void Hide();

  /// What Update shows after `seconds`: for `columns` characters.
  [[nodiscard]] static std::string Line(const std::string& what, Ferro::ui64_t done, Ferro::ui64_t total,
                                        double seconds, unsigned columns, ProgressUnit unit = ProgressUnit::Bytes);

 private:
  const std::string m_What;
  const ProgressUnit m_Unit;
  const bool m_OnTerminal;
  const double m_Started;  // seconds, on a clock that never goes back; so is m_Shown
  double m_Shown;
  bool m_IsShown = false;
};

}  // namespace Tool
