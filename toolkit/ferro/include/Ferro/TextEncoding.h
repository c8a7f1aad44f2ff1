// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/Types.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Ferro {

/// Lower-case hexadecimal, two digits per byte.
[[nodiscard]] FERRO_API std::string bin2hex(std::span<const ui8_t> bytes);
/// Fills `out` exactly from hexadecimal text of either case; hyphens are passed over. False, with `out` unspecified,
/// when another character occurs or the digits do not fill `out` exactly.
[[nodiscard]] FERRO_API bool hex2bin(std::string_view text, std::span<ui8_t> out);
/// The hyphenated lower-case text of a UUID, 36 characters.
[[nodiscard]] FERRO_API std::string bin2UUIDhex(std::span<const ui8_t, 16> bytes);
/// Base64 (RFC 4648, 4) with padding.
[[nodiscard]] FERRO_API std::string base64encode(std::span<const ui8_t> bytes);
/// Decodes Base64; white space is passed over, padding must be right and unused bits 0 (as XML Schema's base64Binary
/// demands). False when malformed; `out` is then empty.
[[nodiscard]] FERRO_API bool base64decode(std::string_view text, std::vector<ui8_t>& out);
/// Fills `out` exactly; false when malformed or of another length, `out` then being unspecified.
[[nodiscard]] FERRO_API bool base64decode(std::string_view text, std::span<ui8_t> out);

}  // namespace Ferro
