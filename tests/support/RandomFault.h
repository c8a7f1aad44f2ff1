// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace testsupport {

/// While one exists, the system has no random bytes. RandomFault.cpp takes the place of the system's function in the
/// program that has it among its sources.
class NoRandomBytes {
 public:
  NoRandomBytes();
  ~NoRandomBytes();
  NoRandomBytes(const NoRandomBytes&) = delete;
  NoRandomBytes& operator=(const NoRandomBytes&) = delete;
};

}  // namespace testsupport
