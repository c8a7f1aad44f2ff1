// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Types.h>

#include <Ferro/FileReader.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

#include <unistd.h>

namespace QUIRE {

/// A file with these bytes, open for reading, that is gone when the object is.
class ScratchFile {
 public:
  explicit ScratchFile(std::span<const ui8_t> bytes) {
    char name[] = "/tmp/strata-test-XXXXXX";
    const int descriptor = mkstemp(name);
    m_Name = name;
    std::FILE* file = fdopen(descriptor, "wb");
    const bool written = bytes.empty() || std::fwrite(bytes.data(), bytes.size(), 1, file) == 1;
    const bool closed = std::fclose(file) == 0;
    EXPECT_TRUE(written && closed && Reader.OpenRead(m_Name).Success());
  }
  ~ScratchFile() { std::remove(m_Name.c_str()); }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  Ferro::FileReader Reader;

 private:
  std::string m_Name;
};

}  // namespace QUIRE
