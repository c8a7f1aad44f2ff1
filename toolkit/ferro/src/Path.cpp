// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Path.h>

#include <vector>

namespace Ferro {
namespace {

constexpr char s_Separator = '/';
constexpr auto npos = std::string_view::npos;

std::string_view WithoutTrailing(std::string_view path, char separator) {
  return path.substr(0, path.find_last_not_of(separator) + 1);
}

}  // namespace

std::string PathJoin(std::string_view head, std::string_view tail, char separator) {
  if (head.empty() || tail.empty()) return std::string(head.empty() ? tail : head);
  const size_t first = tail.find_first_not_of(separator);
  std::string path(WithoutTrailing(head, separator));
  path += separator;
  if (first != npos) path += tail.substr(first);
  return path;
}

std::string PathDirname(std::string_view path) {
  const size_t last = path.rfind(s_Separator);
  if (last == npos) return {};
  const std::string_view head = WithoutTrailing(path.substr(0, last), s_Separator);
  return std::string(head.empty() ? path.substr(0, 1) : head);
}

std::string PathBasename(std::string_view path) {
  const size_t last = path.rfind(s_Separator);
  return std::string(last == npos ? path : path.substr(last + 1));
}

std::string PathExtension(std::string_view path) {
  const std::string name = PathBasename(path);
  const size_t point = name.rfind('.');
  return point == std::string::npos || point == 0 ? std::string() : name.substr(point + 1);
}

bool PathIsAbsolute(std::string_view path) {
  return path.starts_with(s_Separator);
}

std::string PathNormalize(std::string_view path) {
  const bool absolute = PathIsAbsolute(path);
  std::vector<std::string_view> steps;
  while (!path.empty()) {
    const std::string_view step = path.substr(0, path.find(s_Separator));
    path.remove_prefix(step.size() == path.size() ? step.size() : step.size() + 1);
    if (step.empty() || step == ".") continue;
    if (step != "..")
      steps.push_back(step);
    else if (!steps.empty() && steps.back() != "..")
      steps.pop_back();
    else if (!absolute)
      steps.push_back(step);
  }
  std::string normal(absolute ? 1 : 0, s_Separator);
  for (const std::string_view step : steps) {
    if (!normal.empty() && normal.back() != s_Separator) normal += s_Separator;
    normal += step;
  }
  return normal;
}

bool PathStaysInside(std::string_view relative) {
  if (PathIsAbsolute(relative) || relative.find('\0') != npos) return false;
  const std::string normal = PathNormalize(relative);
  return normal != ".." && !normal.starts_with("../");
}

}  // namespace Ferro
