// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/ArchivableList.h>
#include <Ferro/Export.h>
#include <Ferro/Identifier.h>

#include <optional>
#include <string>
#include <string_view>

namespace Ferro {

/// A 16-byte universally unique identifier (RFC 4122).
class FERRO_API UUID : public Identifier<16> {
 public:
  using Identifier<16>::Identifier;

  /// A random (version 4) identifier from the operating system's generator; without value where that fails.
  [[nodiscard]] static UUID Random();
  /// Reads the hyphenated or plain hexadecimal form, either case; no value when it is malformed.
  [[nodiscard]] static std::optional<UUID> FromHex(std::string_view text);
  /// Reads "urn:uuid:", in either case, followed by a hexadecimal form; no value when it is malformed.
  [[nodiscard]] static std::optional<UUID> FromURN(std::string_view text);

  /// The hyphenated lower-case form, 36 characters (8-4-4-4-12).
  [[nodiscard]] std::string EncodeString() const;
  /// "urn:uuid:" and the hyphenated form.
  [[nodiscard]] std::string EncodeURN() const;
};

using UUIDList = ArchivableList<UUID>;

/// A SHA-1 message digest, 20 bytes. In documents it stands as Base64.
class FERRO_API SHA1 : public Identifier<20> {
 public:
  using Identifier<20>::Identifier;
};

/// A basic unique material identifier, 32 bytes (ST 330).
class FERRO_API UMID : public Identifier<32> {
 public:
  using Identifier<32>::Identifier;
};

}  // namespace Ferro
