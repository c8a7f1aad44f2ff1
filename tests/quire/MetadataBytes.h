// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ExampleFile.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/KLV.h>
#include <QUIRE/MXF/OP1aHeader.h>

#include <gtest/gtest.h>

#include <vector>

namespace QUIRE::MXF {

/// Where the example file's header metadata begin and end.
inline constexpr size_t MetadataStart = 140;
inline constexpr size_t MetadataEnd = 4057;

inline std::vector<ui8_t> ExampleMetadata() {
  const std::vector<ui8_t> file = ExampleFile();
  return {file.begin() + MetadataStart, file.begin() + MetadataEnd};
}

inline OP1aHeader ExampleHeader() {
  OP1aHeader header;
  EXPECT_EQ(header.InitFromBuffer(ExampleMetadata(), MetadataStart), Ferro::RESULT_OK);
  return header;
}

/// One item of a set.
inline std::vector<ui8_t> Item(ui16_t tag, const std::vector<ui8_t>& value) {
  std::vector<ui8_t> bytes = {static_cast<ui8_t>(tag >> 8), static_cast<ui8_t>(tag),
                              static_cast<ui8_t>(value.size() >> 8), static_cast<ui8_t>(value.size())};
  bytes.insert(bytes.end(), value.begin(), value.end());
  return bytes;
}

/// A set with these items, as a KLV.
inline std::vector<ui8_t> SetBytes(const UL& key, const std::vector<std::vector<ui8_t>>& items) {
  std::vector<ui8_t> value;
  for (const auto& item : items) value.insert(value.end(), item.begin(), item.end());
  std::vector<ui8_t> bytes;
  AppendKL(bytes, key, value.size());
  bytes.insert(bytes.end(), value.begin(), value.end());
  return bytes;
}

inline std::vector<ui8_t> SetBytes(MDD_t set, const std::vector<std::vector<ui8_t>>& items) {
  return SetBytes(DefaultSMPTEDict().ul(set), items);
}

}  // namespace QUIRE::MXF
