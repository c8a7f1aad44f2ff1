// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "../support/TemporaryFile.h"

#include <QUIRE/Types.h>

#include <Ferro/FileReader.h>

#include <gtest/gtest.h>

#include <span>

namespace QUIRE {

/// A temporary file with these bytes, open for reading.
class ScratchFile {
 public:
  explicit ScratchFile(std::span<const ui8_t> bytes) : m_File({bytes.begin(), bytes.end()}) {
    EXPECT_TRUE(Reader.OpenRead(m_File.Name()).Success());
  }

 private:
  testsupport::TemporaryFile m_File;

 public:
  Ferro::FileReader Reader;
};

}  // namespace QUIRE
