// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "SampleOptions.h"

#include <Ferro/SHA1Digest.h>
#include <Ferro/Timestamp.h>
#include <Ferro/UUID.h>
#include <QUIRE/Crypto.h>

#include <string>

namespace Tool {

/// All that would else be random in a sample show: identifiers, dates and keys follow from one number, and from what makes
/// the files of one show differ from those of another.
class SampleSeed {
 public:
  explicit SampleSeed(Ferro::ui64_t number) : m_Text(std::to_string(number)) {}
  explicit SampleSeed(const SampleOptions& options);

  /// The identifier that belongs to a name, with the version bits of a name-based one (RFC 4122, 4.3).
  [[nodiscard]] Ferro::UUID ID(const std::string& name) const;
  /// A content key; worth nothing as a secret.
  [[nodiscard]] QUIRE::CipherBlock Key(const std::string& name) const;
  /// A minute of the days from 2026-01-01 on.
  [[nodiscard]] Ferro::Timestamp Date() const;

 private:
  [[nodiscard]] Ferro::SHA1 Digest(const std::string& name) const;

  std::string m_Text;
};

}  // namespace Tool
