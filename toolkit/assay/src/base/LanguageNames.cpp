// SPDX-License-Identifier: BSD-3-Clause
#include "LanguageNames.h"

#include "LanguageSubtags.h"
#include "LanguageTag.h"
#include "Text.h"

#include <algorithm>
#include <array>

namespace Assay {
namespace {

struct Name {
  std::string_view English, Tag;
};

// Languages that films are subtitled in.
constexpr std::array<Name, 71> Names = {{{"albanian", "sq"},    {"arabic", "ar"},     {"armenian", "hy"},
                                         {"azerbaijani", "az"}, {"basque", "eu"},     {"belarusian", "be"},
                                         {"bengali", "bn"},     {"bosnian", "bs"},    {"brazilian portuguese", "pt-br"},
                                         {"bulgarian", "bg"},   {"burmese", "my"},    {"cantonese", "yue"},
                                         {"castilian", "es"},   {"catalan", "ca"},    {"chinese", "zh"},
                                         {"croatian", "hr"},    {"czech", "cs"},      {"danish", "da"},
                                         {"dutch", "nl"},       {"english", "en"},    {"estonian", "et"},
                                         {"finnish", "fi"},     {"flemish", "nl"},    {"french", "fr"},
                                         {"galician", "gl"},    {"georgian", "ka"},   {"german", "de"},
                                         {"greek", "el"},       {"gujarati", "gu"},   {"hebrew", "he"},
                                         {"hindi", "hi"},       {"hungarian", "hu"},  {"icelandic", "is"},
                                         {"indonesian", "id"},  {"irish", "ga"},      {"italian", "it"},
                                         {"japanese", "ja"},    {"kannada", "kn"},    {"kazakh", "kk"},
                                         {"khmer", "km"},       {"korean", "ko"},     {"lao", "lo"},
                                         {"latvian", "lv"},     {"lithuanian", "lt"}, {"luxembourgish", "lb"},
                                         {"macedonian", "mk"},  {"malay", "ms"},      {"malayalam", "ml"},
                                         {"maltese", "mt"},     {"mandarin", "cmn"},  {"marathi", "mr"},
                                         {"mongolian", "mn"},   {"norwegian", "no"},  {"persian", "fa"},
                                         {"polish", "pl"},      {"portuguese", "pt"}, {"punjabi", "pa"},
                                         {"romanian", "ro"},    {"russian", "ru"},    {"serbian", "sr"},
                                         {"slovak", "sk"},      {"slovenian", "sl"},  {"spanish", "es"},
                                         {"swedish", "sv"},     {"tamil", "ta"},      {"telugu", "te"},
                                         {"thai", "th"},        {"turkish", "tr"},    {"ukrainian", "uk"},
                                         {"urdu", "ur"},        {"vietnamese", "vi"}}};
static_assert(std::ranges::is_sorted(Names, {}, &Name::English));

}  // namespace

std::string LanguageTagOf(std::string_view text) {
  std::string lower = ToLower(Trim(text));
  const auto name = std::ranges::lower_bound(Names, std::string_view(lower), {}, &Name::English);
  if (name != Names.end() && name->English == lower) return std::string(name->Tag);
  return IsLanguageTag(lower) && UnknownSubtag(lower).empty() ? lower : std::string();
}

bool CanBeSameLanguage(std::string_view first, std::string_view second) {
  if (first.size() > second.size()) std::swap(first, second);
  return second.starts_with(first) && (second.size() == first.size() || second[first.size()] == '-');
}

}  // namespace Assay
