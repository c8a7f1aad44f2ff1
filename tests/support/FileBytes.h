// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/MXF/KLV.h>

#include <Ferro/TextEncoding.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace testsupport {

/// A file's bytes.
inline std::vector<QUIRE::ui8_t> ReadFileBytes(const std::string& filename) {
  std::ifstream file(filename, std::ios::binary);
  EXPECT_TRUE(file) << filename;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// All KLVs of a file, from the first byte to the last; a failure where they do not fill it.
inline std::vector<QUIRE::MXF::KLVPacket> ReadKLVs(const std::vector<QUIRE::ui8_t>& bytes) {
  std::vector<QUIRE::MXF::KLVPacket> packets;
  for (size_t offset = 0; offset < bytes.size();) {
    const auto packet = QUIRE::MXF::ParseKLV(std::span(bytes).subspan(offset), offset, bytes.size());
    if (!packet) {
      ADD_FAILURE() << "no KLV at offset " << offset;
      break;
    }
    packets.push_back(*packet);
    offset = static_cast<size_t>(packet->End());
  }
  return packets;
}

/// Lower-case hexadecimal of `length` bytes from `offset` on.
inline std::string Hex(const std::vector<QUIRE::ui8_t>& bytes, size_t offset, size_t length) {
  if (offset > bytes.size() || length > bytes.size() - offset) return "beyond the end";
  return Ferro::bin2hex(std::span(bytes).subspan(offset, length));
}

}  // namespace testsupport
