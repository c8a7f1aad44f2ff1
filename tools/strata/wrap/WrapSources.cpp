// SPDX-License-Identifier: BSD-3-Clause
#include "WrapSources.h"

#include "terminal/CommandError.h"

#include <Cairn/InspectFile.h>
#include <Ferro/Path.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <set>
#include <string_view>

namespace Tool {

namespace {

namespace fs = std::filesystem;

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

/// Takes the number at the front of a name, without its leading zeros.
std::string_view TakeNumber(std::string_view& name) {
  size_t end = 0;
  while (end < name.size() && IsDigit(name[end])) ++end;
  std::string_view number = name.substr(0, end);
  name.remove_prefix(end);
  number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
  return number;
}

struct Extension {
  std::string_view Text;
  std::string_view Kind;
};

constexpr std::array Extensions = {
    Extension{"j2c", "picture"}, Extension{"j2k", "picture"}, Extension{"jpc", "picture"}, Extension{"wav", "sound"},
    Extension{"xml", "text"},    Extension{"m2v", "video"},   Extension{"mpv", "video"},   Extension{"bin", "data"},
    Extension{"dat", "data"},    Extension{"iab", "data"},    Extension{"atmos", "data"}};

std::string KindByName(const std::string& filename) {
  std::string text = Ferro::PathExtension(filename);
  for (char& letter : text) letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  for (const Extension& extension : Extensions)
    if (extension.Text == text) return std::string(extension.Kind);
  return "";
}

std::string KindByContent(const std::string& filename) {
  Cairn::FileContent content;
  if (const Ferro::Result_t result = Cairn::InspectFile(filename, content); result.Failure())
    throw CommandError(ExitCode::Usage, filename + ": " + result.Label());
  switch (content.Type) {
    case Cairn::FT_J2C:
      return "picture";
    case Cairn::FT_MPEG2_VES:
      return "video";
    case Cairn::FT_WAV:
      return "sound";
    case Cairn::FT_DCST:
      return "text";
    case Cairn::FT_TI_SUBTITLE:
      throw CommandError(ExitCode::Usage,
                         filename + ": Interop packages keep subtitles as they are, not in a track file");
    default:
      throw CommandError(ExitCode::Usage, filename + ": it cannot be seen what this is; --kind says it");
  }
}

/// The files of one kind in a folder; data and immersive audio have the same names.
std::vector<std::string> FilesIn(const std::string& folder, std::string& kind) {
  std::vector<std::string> files;
  std::set<std::string> kinds;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().string();
    const std::string found = KindByName(name);
    const bool is_meant = kind == "auto" || found == (kind == "immersive" ? "data" : kind);
    std::error_code ignored;
    if (found.empty() || !is_meant || !entry->is_regular_file(ignored)) continue;
    kinds.insert(found);
    files.push_back(name);
  }
  if (error) throw CommandError(ExitCode::Usage, folder + ": this folder cannot be read: " + error.message());
  if (files.empty()) throw CommandError(ExitCode::Usage, folder + ": there is nothing to wrap in this folder");
  if (kinds.size() > 1)
    throw CommandError(ExitCode::Usage, folder + ": there are " + *kinds.begin() + " and " + *kinds.rbegin() +
                                            " in this folder; --kind says which is meant");
  if (kind == "auto") kind = *kinds.begin();
  std::sort(files.begin(), files.end(), NameComesBefore);
  return files;
}

WrapSources Find(const WrapOptions& options) {
  WrapSources sources;
  sources.Kind = options.Kind;
  if (options.Left.empty() != options.Right.empty())
    throw CommandError(ExitCode::Usage, "--left and --right go together");
  if (!options.Left.empty()) {
    if (!options.Sources.empty())
      throw CommandError(ExitCode::Usage, "sources are named either alone or by --left and --right");
    sources.Kind = "picture";
    sources.Files = FilesIn(options.Left, sources.Kind);
    sources.Right = FilesIn(options.Right, sources.Kind);
    if (sources.Files.size() != sources.Right.size())
      throw CommandError(ExitCode::Usage, "there are " + std::to_string(sources.Files.size()) + " left and " +
                                              std::to_string(sources.Right.size()) + " right eyes");
    return sources;
  }
  if (options.Sources.empty()) throw CommandError(ExitCode::Usage, "nothing was named that could be wrapped");
  if (options.Sources.size() == 1 && fs::is_directory(options.Sources.front())) {
    sources.Files = FilesIn(options.Sources.front(), sources.Kind);
    return sources;
  }
  sources.Files = options.Sources;
  if (sources.Kind == "auto") sources.Kind = KindByContent(sources.Files.front());
  return sources;
}

}  // namespace

bool NameComesBefore(const std::string& a, const std::string& b) {
  std::string_view left = a;
  std::string_view right = b;
  while (!left.empty() && !right.empty()) {
    if (IsDigit(left.front()) && IsDigit(right.front())) {
      const std::string_view x = TakeNumber(left);
      const std::string_view y = TakeNumber(right);
      if (x != y) return x.size() != y.size() ? x.size() < y.size() : x < y;
      continue;
    }
    if (left.front() != right.front()) return left.front() < right.front();
    left.remove_prefix(1);
    right.remove_prefix(1);
  }
  if (left.empty() != right.empty()) return left.empty();
  return a < b;  // "01" and "1"
}

WrapSources FindWrapSources(const WrapOptions& options) {
  WrapSources sources = Find(options);
  for (const auto* list : {&sources.Files, &sources.Right})
    for (const std::string& file : *list) {
      std::error_code error;
      const auto size = fs::file_size(file, error);
      if (error) throw CommandError(ExitCode::Usage, file + ": " + error.message());
      sources.TotalSize += size;
    }
  return sources;
}

}  // namespace Tool
