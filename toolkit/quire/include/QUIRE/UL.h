// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/Types.h>

#include <Ferro/Identifier.h>

#include <string>

namespace QUIRE {

/// A SMPTE universal label, 16 bytes (ST 298). A default-constructed label has no value.
class QUIRE_API UL : public Ferro::Identifier<16> {
 public:
  using Ferro::Identifier<16>::Identifier;

  /// "060e2b34.04010101.0d010201.01000000": the bytes in four groups.
  [[nodiscard]] std::string EncodeString() const;
  /// True when both labels are equal but for byte 8, the version of the registry that defined the label.
  [[nodiscard]] bool MatchIgnoringVersion(const UL& other) const;
};

}  // namespace QUIRE
