// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

namespace testsupport {

/// A file in memory that exists as long as the object does and is opened by its name like any other.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::vector<std::uint8_t>& bytes = {})
      : m_Descriptor(memfd_create("strata-test", MFD_CLOEXEC)) {
    Check(m_Descriptor >= 0);
    m_Name = "/proc/self/fd/" + std::to_string(m_Descriptor);
    Write(bytes);
  }
  ~TemporaryFile() { close(m_Descriptor); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  [[nodiscard]] const std::string& Name() const { return m_Name; }
  /// Replaces what the file holds.
  void Write(const std::vector<std::uint8_t>& bytes) const {
    Truncate(0);
    Patch(0, bytes);
  }
  /// Overwrites bytes from `at` on.
  void Patch(std::size_t at, const std::vector<std::uint8_t>& bytes) const {
    Check(pwrite(m_Descriptor, bytes.data(), bytes.size(), static_cast<off_t>(at)) ==
          static_cast<ssize_t>(bytes.size()));
  }
  void Truncate(std::size_t size) const { Check(ftruncate(m_Descriptor, static_cast<off_t>(size)) == 0); }

 private:
  static void Check(bool success) {
    if (!success) throw std::runtime_error("a temporary file could not be made or changed");
  }

  const int m_Descriptor;
  std::string m_Name;
};

}  // namespace testsupport
