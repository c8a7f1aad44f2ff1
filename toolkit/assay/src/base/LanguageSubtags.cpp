// SPDX-License-Identifier: BSD-3-Clause
#include "LanguageSubtags.h"

#include "LanguageSubtagTable.h"
#include "Text.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace Assay {
namespace {

// What the registry of subtags has beside the lists of ISO: codes that were replaced, codes that ISO reserves, and areas of
// several countries (UN M.49).
constexpr std::array<std::string_view, 5> ReplacedLanguages = {"in", "iw", "ji", "jw", "mo"};
constexpr std::array<std::string_view, 20> OtherRegions = {"ac", "an", "bu", "cp", "cs", "dd", "dg", "ea", "eu", "ez",
                                                           "fx", "ic", "nt", "su", "ta", "tp", "un", "yd", "yu", "zr"};
constexpr std::array<std::string_view, 31> Areas = {
    "001", "002", "003", "005", "009", "011", "013", "014", "015", "017", "018", "019", "021", "029", "030", "034",
    "035", "039", "053", "054", "057", "061", "142", "143", "145", "150", "151", "154", "155", "202", "419"};

/// `codes` are as long as `code`, one behind the other and in order.
bool Holds(std::string_view codes, std::string_view code) {
  size_t first = 0;
  size_t count = codes.size() / code.size();
  while (count > 0) {
    const std::string_view middle = codes.substr((first + count / 2) * code.size(), code.size());
    if (middle == code) return true;
    if (middle < code) first += count - count / 2;
    count /= 2;
  }
  return false;
}

template <class T>
bool Holds(const T& codes, std::string_view code) {
  return std::ranges::find(codes, code) != codes.end();
}

bool IsWithin(std::string_view code, std::string_view first, std::string_view last) {
  return code.size() == first.size() && first <= code && code <= last;
}

bool IsLanguage(std::string_view code) {
  if (code.size() == 2) return Holds(LanguagesOfTwoLetters, code) || Holds(ReplacedLanguages, code);
  return code.size() == 3 && (Holds(LanguagesOfThreeLetters, code) || IsWithin(code, "qaa", "qtz"));
}

bool IsScript(std::string_view code) {
  return Holds(Scripts, code) || IsWithin(code, "qaaa", "qabx");
}

bool IsRegion(std::string_view code) {
  if (code.size() == 3) return Holds(Areas, code);
  return Holds(Regions, code) || Holds(OtherRegions, code) || code == "aa" || code == "zz" ||
         IsWithin(code, "qm", "qz") || IsWithin(code, "xa", "xz");
}

}  // namespace

std::string_view UnknownSubtag(std::string_view tag) {
  const std::string lower = ToLower(tag);
  const std::vector<std::string_view> subtags = Split(lower, '-');
  size_t next = 0;
  size_t position = 0;
  const auto take = [&] { position += subtags[next++].size() + 1; };
  const auto unknown = [&] { return tag.substr(position, subtags[next].size()); };
  const auto is_next = [&](size_t size, bool (*is_kind)(char)) {
    return next < subtags.size() && subtags[next].size() == size && std::ranges::all_of(subtags[next], is_kind);
  };
  if (subtags.front().size() < 2) return {};  // private use, or from before there were rules
  if (!IsLanguage(subtags.front())) return unknown();
  take();
  for (; is_next(3, IsLetter); take())
    if (!IsLanguage(subtags[next])) return unknown();
  if (is_next(4, IsLetter)) {
    if (!IsScript(subtags[next])) return unknown();
    take();
  }
  if (is_next(2, IsLetter) || is_next(3, IsDigit))
    if (!IsRegion(subtags[next])) return unknown();
  return {};
}

}  // namespace Assay
