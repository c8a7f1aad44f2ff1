// SPDX-License-Identifier: BSD-3-Clause
#include "LanguageTag.h"

#include "Text.h"

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <vector>

namespace Assay {
namespace {

// RFC 5646, 2.2.8: whole tags from before there were rules, of which the rules admit no others.
constexpr std::array<std::string_view, 17> IrregularTags = {
    "en-gb-oed", "i-ami", "i-bnn", "i-default", "i-enochian", "i-hak",     "i-klingon", "i-lux",    "i-mingo",
    "i-navajo",  "i-pwn", "i-tao", "i-tay",     "i-tsu",      "sgn-be-fr", "sgn-be-nl", "sgn-ch-de"};

bool AreLetters(std::string_view text) {
  return std::ranges::all_of(text, IsLetter);
}
bool AreAlphanumeric(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return IsLetter(c) || IsDigit(c); });
}
bool AreDigits(std::string_view text) {
  return std::ranges::all_of(text, IsDigit);
}

/// Takes subtags from the front, as long as they fit.
class TagReader {
 public:
  explicit TagReader(std::vector<std::string_view> subtags) : m_Subtags(std::move(subtags)) {}

  [[nodiscard]] bool IsWhole() {
    if (TakesPrivateUse()) return IsAtEnd();
    if (!TakesLanguage()) return false;
    TakeScript();
    TakeRegion();
    return TakesVariants() && TakesExtensions() && (IsAtEnd() || TakesPrivateUse()) && IsAtEnd();
  }

 private:
  [[nodiscard]] bool IsAtEnd() const { return m_Next == m_Subtags.size(); }
  [[nodiscard]] std::string_view Next() const { return IsAtEnd() ? std::string_view() : m_Subtags[m_Next]; }

  bool TakesLanguage() {
    const std::string_view language = Next();
    if (!AreLetters(language) || language.size() < 2 || language.size() > 8) return false;
    ++m_Next;
    if (language.size() <= 3)
      for (int count = 0; count < 3 && Next().size() == 3 && AreLetters(Next()); ++count) ++m_Next;
    return true;
  }

  void TakeScript() {
    if (Next().size() == 4 && AreLetters(Next())) ++m_Next;
  }

  void TakeRegion() {
    const std::string_view region = Next();
    if ((region.size() == 2 && AreLetters(region)) || (region.size() == 3 && AreDigits(region))) ++m_Next;
  }

  bool TakesVariants() {
    std::set<std::string> variants;
    while ((Next().size() >= 5 && Next().size() <= 8) || (Next().size() == 4 && IsDigit(Next().front())))
      if (!variants.insert(std::string(m_Subtags[m_Next++])).second) return false;
    return true;
  }

  bool TakesExtensions() {
    std::set<char> singletons;
    while (Next().size() == 1 && Next() != "x") {
      if (!singletons.insert(Next().front()).second) return false;
      ++m_Next;
      const size_t first = m_Next;
      while (Next().size() >= 2) ++m_Next;
      if (m_Next == first) return false;
    }
    return true;
  }

  bool TakesPrivateUse() {
    if (Next() != "x") return false;
    ++m_Next;
    const size_t first = m_Next;
    m_Next = m_Subtags.size();
    return m_Next > first;
  }

  std::vector<std::string_view> m_Subtags;
  size_t m_Next = 0;
};

}  // namespace

bool IsLanguageTag(std::string_view tag) {
  const std::string lower = ToLower(tag);
  if (std::ranges::find(IrregularTags, lower) != IrregularTags.end()) return true;
  std::vector<std::string_view> subtags = Split(lower, '-');
  for (const std::string_view subtag : subtags)
    if (subtag.empty() || subtag.size() > 8 || !AreAlphanumeric(subtag)) return false;
  return TagReader(std::move(subtags)).IsWhole();
}

}  // namespace Assay
