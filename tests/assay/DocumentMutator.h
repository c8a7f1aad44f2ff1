// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "form/DocumentNode.h"

#include <random>
#include <string>

namespace testsupport {

/// Damages documents, the same way for the same seed: elements go missing, are repeated, moved, renamed or put in, values
/// and attributes change, text stands where none should.
class DocumentMutator {
 public:
  explicit DocumentMutator(uint32_t seed) : m_Random(seed) {}

  /// The document with one to three damages.
  [[nodiscard]] std::string Mutated(const Assay::Node& document);

  [[nodiscard]] static std::string Text(const Assay::Node& document);

 private:
  size_t Below(size_t count) { return std::uniform_int_distribution<size_t>(0, count - 1)(m_Random); }
  void Damage(Assay::Node& root);
  void DamageChildren(Assay::Node& parent);
  void DamageValue(Assay::Node& node);
  void DamageAttribute(Assay::Node& node);
  const char* Value();

  std::mt19937 m_Random;
};

}  // namespace testsupport
