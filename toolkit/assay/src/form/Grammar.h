// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ValueForm.h"

#include <Cairn/DCPFormat.h>

#include <span>
#include <string_view>

namespace Assay {

// What documents consist of, as tables: FormCheck holds a document against them.

/// The kinds of documents that packages have.
enum class DocumentKind : ui8_t {
  Other,
  AssetMap,
  VolumeIndex,
  PackingList,
  Composition,
  SMPTEText,    ///< ST 428-7
  InteropText,  ///< DCSubtitle
};

/// Which namespace an element is in.
enum class Space : ui8_t {
  Main,       ///< that of the document element
  Extension,  ///< that of the extension element of a composition that it stands in
  Signature,  ///< that of XML signatures
};

struct TypeForm;

struct AttributeForm {
  const char* Name;  ///< with its prefix, of which there is only "xml:"
  ValueForm Value;
  const char* Choices = "";  ///< of ValueForm::OneOf
  bool IsRequired = false;
};

/// An element that may stand at a place.
struct ElementForm {
  const char* Name;
  const TypeForm* Type;
  Assay::Space Space = Space::Main;
};

/// Elements of other namespaces that may stand at a place.
enum class Others : ui8_t {
  None,
  NotMain,       ///< of any namespace but the document's
  NotExtension,  ///< of any namespace but the extension's
  NotSignature,  ///< of any namespace but that of signatures
  AnyNamespace,
};

inline constexpr unsigned Unbounded = 0xFFFF'FFFF;

/// A step in the order of an element's children: one of the choices, so many times.
struct Step {
  std::span<const ElementForm> Choices;
  unsigned Least = 1;
  unsigned Most = 1;
  Others Foreign = Others::None;  ///< what may stand there besides the choices
};

/// What an element holds: a value, or children in the order of the steps.
struct TypeForm {
  ValueForm Value = ValueForm::Empty;  ///< without steps: the form of the text
  const char* Choices = "";            ///< of ValueForm::OneOf
  std::span<const AttributeForm> Attributes = {};
  std::span<const Step> Steps = {};
  bool IsMixed = false;     ///< text may stand beside the children
  bool HasDefault = false;  ///< an empty element stands for a value that the standard gives
};

/// A document element, or one of another namespace that a document may have.
struct GlobalElement {
  std::string_view Namespace;
  const char* Name;
  const TypeForm* Type;
};

/// A kind of document in one flavour.
struct Grammar {
  DocumentKind Kind;
  Cairn::DCPFormat_t Flavour;
  GlobalElement Root;
  std::span<const GlobalElement> Extensions;  ///< known elements where others may stand
};

/// Every kind of document.
[[nodiscard]] std::span<const Grammar> Grammars();
/// The grammar for a document element; null for a document of another kind.
[[nodiscard]] const Grammar* FindGrammar(std::string_view name_space, std::string_view name);

// The tables, by document.
[[nodiscard]] std::span<const Grammar> PackageGrammars();
[[nodiscard]] std::span<const Grammar> CompositionGrammars();
[[nodiscard]] std::span<const Grammar> SMPTETextGrammars();
[[nodiscard]] std::span<const Grammar> InteropTextGrammars();

}  // namespace Assay
