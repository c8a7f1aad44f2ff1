// SPDX-License-Identifier: BSD-3-Clause
#include "PositionFile.h"

#include "terminal/CommandError.h"

#include <Ferro/FileText.h>

#include <charconv>
#include <utility>

namespace Tool {

PositionFile::PositionFile(std::string filename, const Ferro::UUID& show)
    : m_Filename(std::move(filename)), m_Show(show) {}

std::optional<PositionFile::Content> PositionFile::Parse(const std::string& text) {
  const size_t blank = text.find(' ');
  if (blank == std::string::npos) return std::nullopt;
  const auto show = Ferro::UUID::FromHex(text.substr(0, blank));
  if (!show) return std::nullopt;
  Content content{*show};
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data() + blank + 1, last, content.Position);
  const bool is_whole = error == std::errc() && (end == last || (*end == '\n' && end + 1 == last));
  return is_whole ? std::optional(content) : std::nullopt;
}

// A file that is missing or empty is a new one.
Ferro::ui32_t PositionFile::Read(Ferro::ui32_t duration) {
  constexpr Ferro::fsize_t Longest = 4096;  // bytes
  const std::string from_the_beginning = "; playing starts at the beginning";
  std::string text;
  if (m_Filename.empty()) return 0;
  const Ferro::Result_t result = Ferro::ReadFileIntoString(m_Filename, text, Longest);
  if (result == Ferro::RESULT_NOT_FOUND || (result.Success() && text.empty())) return 0;
  const std::optional<Content> content = Parse(text);
  const bool is_of_show = content && content->Show == m_Show;
  if (is_of_show && content->Position < duration) return content->Position;

  if (is_of_show)
    m_Problem = "the position in it lies behind the end of this show";
  else if (content)
    m_Problem = "the position in it is of another show";
  else if (result.Success() || result == Ferro::RESULT_TOOLARGE)
    m_Problem = "there is no position in it";
  else if (result == Ferro::RESULT_NOTAFILE)
    m_Problem = "a folder, device or pipe has this name";
  else
    m_Problem = "this file cannot be read";
  m_IsOurs = is_of_show || (content && content->Position == 0);
  m_Problem = m_Filename + ": " + m_Problem + from_the_beginning;
  if (!m_IsOurs) m_Problem += ", and the position will not be kept: the file is left as it is";
  return 0;
}

bool PositionFile::Keep(Ferro::ui32_t position) {
  if (m_Filename.empty() || !m_IsOurs) return true;
  const std::string problem = WriteWholeFile(m_Filename, m_Show.EncodeString() + ' ' + std::to_string(position) + '\n');
  if (problem.empty()) return true;
  m_Problem = problem + "; the position will not be kept";
  return false;
}

}  // namespace Tool
