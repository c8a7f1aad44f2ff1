// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/Export.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Sigil {

/// A name in a certificate: the attributes of an X.501 distinguished name, the last one of the certificate first, as
/// texts have them (RFC 4514). A plain value.
struct SIGIL_API DistinguishedName {
  struct Attribute {
    std::string Type;         ///< object identifier in dotted form: "2.5.4.46"
    std::string Value;        ///< UTF-8
    bool IsJoined = false;    ///< stands in one set with the attribute before it ("+" in texts)
    bool IsPrintable = true;  ///< a PrintableString in the certificate; not known of texts, not compared

    friend bool operator==(const Attribute& lhs, const Attribute& rhs) {
      return lhs.Type == rhs.Type && lhs.Value == rhs.Value && lhs.IsJoined == rhs.IsJoined;
    }
  };

  std::vector<Attribute> Attributes;

  /// Reads the text form, attribute types as keywords in either case or as object identifiers.
  /// @return no value for a malformed text, an unknown keyword, or more than 100 attributes.
  [[nodiscard]] static std::optional<DistinguishedName> FromText(std::string_view text);
  /// The text form, with "dnQualifier", "CN" and other usual keywords.
  [[nodiscard]] std::string Text() const;
  /// The value of the first attribute of that type; empty when there is none.
  [[nodiscard]] std::string Value(std::string_view type) const;
  /// How many attributes have that type.
  [[nodiscard]] size_t Count(std::string_view type) const;

  friend bool operator==(const DistinguishedName&, const DistinguishedName&) = default;
};

// Attribute types that names in D-Cinema certificates consist of (ST 430-2:2017, 5.3).
inline constexpr char OID_CommonName[] = "2.5.4.3";
inline constexpr char OID_Organization[] = "2.5.4.10";
inline constexpr char OID_OrganizationalUnit[] = "2.5.4.11";
inline constexpr char OID_DnQualifier[] = "2.5.4.46";

}  // namespace Sigil
