// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FindingCases.h"

#include "MessageSamples.h"

#include <Sigil/KeyMessageStore.h>

#include <optional>
#include <string>
#include <vector>

namespace testsupport {

/// A sound package whose composition is encrypted with one key and signed, as its packing list is; and the key message
/// that serves it. Issued on 2026-03-01, checked within the message's window.
class SignedPackage {
 public:
  SignedPackage();

  SamplePackage Package;
  Assay::CheckRequest Request;                     ///< its folder is set by Report
  std::optional<Sigil::KeyMessageStore> Messages;  ///< has a value

  /// What the message is made of.
  [[nodiscard]] static Sigil::MessageRequest SoundRequest();
  /// SigilTest::Signed, with certificates that hold.
  [[nodiscard]] static std::string Sign(const std::string& xml);
  /// Has the composition signed by another function.
  SignedPackage& SignComposition(const SamplePackage::Signing& sign);
  /// Puts another message in place of the sound one.
  SignedPackage& Message(const std::string& xml);
  SignedPackage& Message(const Sigil::MessageRequest& request) { return Message(SigilTest::Made(request)); }

  [[nodiscard]] Assay::CheckReport Report();
  /// As SamplePackage::Findings.
  [[nodiscard]] Names Findings() { return NamesOf(Report().Findings); }
};

/// A signed document with its values computed anew by xmlsec1, after a change of what they cover or how.
[[nodiscard]] std::string SignedAnew(const std::string& xml);

}  // namespace testsupport
