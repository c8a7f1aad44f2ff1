// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentFile.h"

#include "base/Text.h"

#include <Cairn/Namespace.h>

#include <Ferro/SHA1Digest.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

namespace Assay {

FindingPlace DocumentFile::At(const Node* node) const {
  FindingPlace place;
  place.Package = Package;
  place.Document = Path;
  place.Line = LineOf(node);
  return place;
}

DocumentFile DocumentFile::FromText(const std::string& package, const std::string& path, std::string text) {
  DocumentFile document;
  document.Package = package;
  document.Path = path;
  document.Parsed = ParseDocument(text);
  if (!document.Parsed.Root) return document;
  document.Grammar = FindGrammar(document.Parsed.Root->Namespace, document.Parsed.Root->Name);
  if (document.Kind() == DocumentKind::Composition) document.Digest = Ferro::DigestText(text);
  if (!document.IsInterop()) document.CharactersFault = FindCharactersFault(text);
  if (HasSignature(*document.Parsed.Root)) document.Text = std::move(text);
  return document;
}

bool HasSignature(const Node& node) {
  return (node.Name == "Signature" && node.Namespace == Cairn::NS_XMLDSig) ||
         std::ranges::any_of(node.Children, HasSignature);
}

std::optional<UUID> IDOf(const Node* node) {
  if (node == nullptr) return std::nullopt;
  const std::string_view text = TextOf(node);
  if (const auto id = UUID::FromURN(text)) return id;
  return UUID::FromHex(text);
}

std::optional<ui64_t> CountOf(const Node* node) {
  std::string_view text = TextOf(node);
  if (text.starts_with('+')) text.remove_prefix(1);
  ui64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, number);
  if (text.empty() || error != std::errc() || last != end) return std::nullopt;
  return number;
}

std::optional<QUIRE::Rational> RateOf(const Node* node) {
  const std::vector<std::string_view> words = Words(TextOf(node));
  if (words.size() != 2) return std::nullopt;
  Ferro::i32_t numbers[2] = {};
  for (size_t i = 0; i < 2; ++i) {
    std::string_view word = words[i];
    if (word.starts_with('+')) word.remove_prefix(1);
    const char* end = word.data() + word.size();
    const auto [last, error] = std::from_chars(word.data(), end, numbers[i]);
    if (error != std::errc() || last != end || numbers[i] <= 0) return std::nullopt;
  }
  return QUIRE::Rational(numbers[0], numbers[1]);
}

std::string HashOf(const Node* node) {
  std::string hash;
  for (const std::string_view word : Words(TextOf(node))) hash += word;
  return hash;
}

}  // namespace Assay
