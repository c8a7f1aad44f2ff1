// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Export.h>
#include <Assay/FindingID.h>
#include <Assay/Types.h>

#include <array>
#include <initializer_list>
#include <span>
#include <string_view>

namespace Assay {

/// What a finding is worth. Worst first.
enum class FindingClass : ui8_t {
  Error,    ///< servers refuse it, or it does not play
  Warning,  ///< some equipment fails, or the audience notices
  Profile,  ///< outside RDD 52, though it plays
  Note,     ///< worth knowing
};

/// "error", "warning", "profile", "note". Never null.
[[nodiscard]] ASSAY_API const char* FindingClassName(FindingClass value);

/// The classes of one kind of finding: the usual one first, then those that it has in special places.
class FindingClasses {
 public:
  constexpr FindingClasses(std::initializer_list<FindingClass> classes) {
    for (const FindingClass value : classes) m_Classes[m_Count++] = value;
  }
  [[nodiscard]] constexpr FindingClass Usual() const { return m_Classes[0]; }
  [[nodiscard]] constexpr std::span<const FindingClass> All() const { return {m_Classes.data(), m_Count}; }
  [[nodiscard]] constexpr bool Has(FindingClass value) const {
    for (const FindingClass each : All())
      if (each == value) return true;
    return false;
  }

 private:
  std::array<FindingClass, 4> m_Classes{};
  size_t m_Count = 0;
};

/// The packages that a kind of finding can be about.
enum class Flavour : ui8_t { Any, Interop, SMPTE };

/// How far a check looks. Files includes Documents; the three beyond are independent of each other, and each includes
/// Files.
enum class Depth : ui8_t {
  Documents,  ///< XML and directories
  Files,      ///< headers, indexes, sizes, labels of track files
  Frames,     ///< every frame, sample and text, undecoded
  Hash,       ///< digests of whole files
  Decode,     ///< pictures through the decoder
};

/// "documents", "files", "frames", "hash", "decode". Never null.
[[nodiscard]] ASSAY_API const char* DepthName(Depth depth);

/// What two findings are both about.
enum class Scope : ui8_t {
  Asset,
  Reel,
  Document,
  Composition,
  Package,
};

/// A kind of finding that follows from another where both are about the same.
struct Consequence {
  FindingID ID;
  Scope Same;
};

/// What is the same for all findings of one kind. Texts live as long as the program.
struct FindingRule {
  FindingID ID;
  const char* Name;        ///< "reel-durations": for programs; it never changes
  FindingClasses Classes;  ///< what it can be worth
  Assay::Flavour Flavour;
  Assay::Depth Depth;    ///< the least that answers it
  const char* Sentence;  ///< one sentence, for a projectionist
  const char* Reason;    ///< what it is, and what which equipment makes of it; some sentences
  const char* Advice;    ///< what to do
  const char* Source;    ///< standard and clause; empty where it is this system's own
  /// What follows from it: is shown below it, and does not count beside it.
  std::span<const Consequence> Consequences = {};
};

/// Every kind, in the order of FindingID.
[[nodiscard]] ASSAY_API std::span<const FindingRule> FindingRules();
[[nodiscard]] ASSAY_API const FindingRule& RuleOf(FindingID id);
/// By its name; null where there is none.
[[nodiscard]] ASSAY_API const FindingRule* FindRule(std::string_view name);

}  // namespace Assay
