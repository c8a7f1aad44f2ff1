// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/UL.h>

namespace QUIRE {

std::string UL::EncodeString() const {
  const std::string digits = EncodeHex();
  return digits.substr(0, 8) + '.' + digits.substr(8, 8) + '.' + digits.substr(16, 8) + '.' + digits.substr(24, 8);
}

bool UL::MatchIgnoringVersion(const UL& other) const {
  UL same_version = other;
  same_version.m_Value[7] = m_Value[7];
  return *this == same_version;
}

}  // namespace QUIRE
