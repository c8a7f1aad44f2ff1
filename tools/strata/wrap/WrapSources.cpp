// SPDX-License-Identifier: BSD-3-Clause
#include "WrapSources.h"

#include "terminal/CommandError.h"
#include "terminal/ReasonText.h"

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
  EssenceKind Kind;
};

constexpr std::array Extensions = {Extension{"j2c", EssenceKind::Picture}, Extension{"j2k", EssenceKind::Picture},
                                   Extension{"jpc", EssenceKind::Picture}, Extension{"wav", EssenceKind::Sound},
                                   Extension{"xml", EssenceKind::Text},    Extension{"m2v", EssenceKind::Video},
                                   Extension{"mpv", EssenceKind::Video},   Extension{"bin", EssenceKind::Data},
                                   Extension{"dat", EssenceKind::Data},    Extension{"iab", EssenceKind::Data},
                                   Extension{"atmos", EssenceKind::Data}};

std::optional<EssenceKind> KindByName(const std::string& filename) {
  std::string text = Ferro::PathExtension(filename);
  for (char& letter : text) letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  for (const Extension& extension : Extensions)
    if (extension.Text == text) return extension.Kind;
  return std::nullopt;
}

constexpr char SayWithKind[] = "say it with --kind: picture, video, sound, text, data or immersive";

EssenceKind KindByContent(const std::string& filename) {
  Cairn::FileContent content;
  if (const Ferro::Result_t result = Cairn::InspectFile(filename, content); result.Failure())
    throw CommandError(ExitCode::Usage, filename + ": " + ReasonText(result));
  switch (content.Type) {
    case Cairn::FT_J2C:
      return EssenceKind::Picture;
    case Cairn::FT_MPEG2_VES:
      return EssenceKind::Video;
    case Cairn::FT_WAV:
      return EssenceKind::Sound;
    case Cairn::FT_DCST:
      return EssenceKind::Text;
    case Cairn::FT_TI_SUBTITLE:
      throw CommandError(ExitCode::Usage,
                         filename + ": Interop packages keep subtitles as they are, not in a track file");
    default:
      throw CommandError(ExitCode::Usage, filename + ": what this is cannot be seen from it; " + SayWithKind);
  }
}

/// The files of one kind in a folder; data and immersive audio have the same names.
std::vector<std::string> FilesIn(const std::string& folder, std::optional<EssenceKind> asked, EssenceKind& kind) {
  const std::optional<EssenceKind> meant = asked == EssenceKind::Immersive ? EssenceKind::Data : asked;
  std::vector<std::string> files;
  std::set<EssenceKind> kinds;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().string();
    const std::optional<EssenceKind> found = KindByName(name);
    std::error_code ignored;
    if (!found || (meant && meant != found) || !entry->is_regular_file(ignored)) continue;
    kinds.insert(*found);
    files.push_back(name);
  }
  if (error) throw CommandError(ExitCode::Usage, folder + ": this folder cannot be read: " + error.message());
  if (files.empty()) throw CommandError(ExitCode::Usage, folder + ": there is nothing to wrap in this folder");
  if (kinds.size() > 1)
    throw CommandError(ExitCode::Usage, folder + ": there are " + EssenceKindName(*kinds.begin()) + " and " +
                                            EssenceKindName(*kinds.rbegin()) + " in this folder; " + SayWithKind);
  kind = asked.value_or(*kinds.begin());
  std::sort(files.begin(), files.end(), NameComesBefore);
  return files;
}

WrapSources Find(const WrapOptions& options) {
  WrapSources sources;
  if (options.Left.empty() != options.Right.empty())
    throw CommandError(ExitCode::Usage, "--left and --right go together");
  if (!options.Left.empty()) {
    if (!options.Sources.empty())
      throw CommandError(ExitCode::Usage, "sources are named either alone or by --left and --right");
    sources.Files = FilesIn(options.Left, EssenceKind::Picture, sources.Kind);
    sources.Right = FilesIn(options.Right, EssenceKind::Picture, sources.Kind);
    if (sources.Files.size() != sources.Right.size())
      throw CommandError(ExitCode::Usage, "there are " + std::to_string(sources.Files.size()) + " left and " +
                                              std::to_string(sources.Right.size()) + " right eyes");
    return sources;
  }
  if (options.Sources.empty()) throw CommandError(ExitCode::Usage, "nothing was named that could be wrapped");
  std::error_code error;  // what cannot be looked at is told when it is read
  if (options.Sources.size() == 1 && fs::is_directory(options.Sources.front(), error)) {
    sources.Files = FilesIn(options.Sources.front(), options.Kind, sources.Kind);
    return sources;
  }
  sources.Files = options.Sources;
  sources.Kind = options.Kind ? *options.Kind : KindByContent(sources.Files.front());
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
