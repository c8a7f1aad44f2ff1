// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "form/FormCheck.h"

#include <Assay/Finding.h>
#include <Assay/Types.h>

#include <QUIRE/Rational.h>

#include <optional>
#include <string>
#include <vector>

namespace Assay {

/// A document of a package: what it is, and what came of parsing it.
struct DocumentFile {
  std::string Package;  ///< its folder
  std::string Path;     ///< from the package's folder on
  std::string Text;     ///< as stored, of a signed document: a signature covers bytes; else empty
  SHA1 Digest;          ///< of the bytes of a composition
  std::string
      CharactersFault;  ///< what is not plain about its characters; empty where all is, and of Interop documents
  ParsedDocument Parsed;
  const Assay::Grammar* Grammar = nullptr;  ///< null: of no known kind

  [[nodiscard]] DocumentKind Kind() const { return Grammar == nullptr ? DocumentKind::Other : Grammar->Kind; }
  [[nodiscard]] bool IsInterop() const { return Grammar != nullptr && Grammar->Flavour == Cairn::DFT_Interop; }
  /// The document element; null where the document is malformed or of no known kind.
  [[nodiscard]] const Node* Root() const { return Grammar == nullptr || !Parsed.Root ? nullptr : &*Parsed.Root; }
  /// A place in it.
  [[nodiscard]] FindingPlace At(const Node* node) const;

  /// Takes the document apart.
  [[nodiscard]] static DocumentFile FromText(const std::string& package, const std::string& path, std::string text);
};

/// Whether a signature stands anywhere in an element.
[[nodiscard]] bool HasSignature(const Node& node);

// Values of documents; no value where the element is null or has not the form.
[[nodiscard]] std::optional<UUID> IDOf(const Node* node);
[[nodiscard]] std::optional<ui64_t> CountOf(const Node* node);
[[nodiscard]] std::optional<QUIRE::Rational> RateOf(const Node* node);
/// Base64 without the blanks in it.
[[nodiscard]] std::string HashOf(const Node* node);

/// What is not plain about a document's characters; empty where it is plain.
[[nodiscard]] std::string FindCharactersFault(std::string_view text);

/// What is wrong with a document by itself: xml-malformed, xml-constraints, its form, am-id-form.
void FindInDocument(const DocumentFile& document, FindingList& findings);

}  // namespace Assay
