// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <unistd.h>

namespace testsupport {

/// A file that exists as long as the object does.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::vector<std::uint8_t>& bytes = {}) {
    m_Name = (std::filesystem::temp_directory_path() / "strata-test-XXXXXX").string();
    const int descriptor = mkstemp(m_Name.data());
    if (descriptor < 0) throw std::runtime_error("cannot make a temporary file");
    close(descriptor);
    Write(bytes);
  }
  ~TemporaryFile() { std::remove(m_Name.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  [[nodiscard]] const std::string& Name() const { return m_Name; }
  void Write(const std::vector<std::uint8_t>& bytes) const {
    std::ofstream file(m_Name, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!file) throw std::runtime_error("cannot write a temporary file");
  }
  /// Overwrites bytes from `at` on; the file must reach that far.
  void Patch(std::size_t at, const std::vector<std::uint8_t>& bytes) const {
    std::fstream file(m_Name, std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(static_cast<std::streamoff>(at));
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!file) throw std::runtime_error("cannot change a temporary file");
  }
  void Truncate(std::uintmax_t size) const { std::filesystem::resize_file(m_Name, size); }

 private:
  std::string m_Name;
};

}  // namespace testsupport
