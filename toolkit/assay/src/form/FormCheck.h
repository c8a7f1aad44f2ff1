// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "DocumentNode.h"
#include "Grammar.h"

#include <string>
#include <string_view>
#include <vector>

namespace Assay {

/// What can be wrong with the form of a document.
enum class FaultKind : ui8_t {
  MissingElement,
  RepeatedElement,
  MisplacedElement,  ///< known here, but too early or too late
  UnknownElement,
  MissingAttribute,
  UnknownAttribute,
  WrongValue,  ///< of an element or attribute
  LooseText,   ///< text beside elements
};

/// One thing that is wrong with the form of a document. Pointers live as long as the document's node.
struct FormFault {
  FaultKind Kind;
  const Node* Parent = nullptr;   ///< the element that the fault is in; null for a value of the document element
  const Node* Element = nullptr;  ///< the element concerned; null for a missing one
  std::string Name;               ///< of the element or attribute concerned
  ui64_t Line = 0;
  std::string Expected;
  std::string Found;
};

inline constexpr size_t MaxFormFaults = 100;  ///< of one document

/// Holds a document against the tables of its kind. In document order, MaxFormFaults at most.
[[nodiscard]] std::vector<FormFault> CheckForm(const Node& root, const Grammar& grammar);

/// A fault's found text for people: "Reel has no Id".
[[nodiscard]] std::string DescribeFault(const FormFault& fault);

}  // namespace Assay
