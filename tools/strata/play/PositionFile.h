// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>
#include <Ferro/UUID.h>

#include <optional>
#include <string>

namespace Tool {

/// The file in which play keeps the position in a show from one run to the next: the show's identifier and an edit unit,
/// 0 when it was played to its end. A file that holds anything else, as the position in another show that was left in
/// the middle, is never overwritten.
class PositionFile {
 public:
  /// @param filename  empty: nothing is read or kept.
  PositionFile(std::string filename, const Ferro::UUID& show);

  /// Reads where to begin: an edit unit below `duration`, 0 where the file has none. What is in the way is in Problem().
  [[nodiscard]] Ferro::ui32_t Read(Ferro::ui32_t duration);
  /// Writes the position, unless Read has found that the file is not to be overwritten. False, with the problem, when it
  /// cannot be written: the file is as it was.
  bool Keep(Ferro::ui32_t position);

  /// For the user; empty where all is well.
  [[nodiscard]] const std::string& Problem() const { return m_Problem; }

 private:
  struct Content {
    Ferro::UUID Show;
    Ferro::ui32_t Position = 0;
  };
  [[nodiscard]] static std::optional<Content> Parse(const std::string& text);

  std::string m_Filename;
  Ferro::UUID m_Show;
  std::string m_Problem;
  bool m_IsOurs = true;  // to overwrite
};

}  // namespace Tool
