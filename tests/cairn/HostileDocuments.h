// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <vector>

namespace CairnTest {

/// A document that must be refused, with the lines that say so.
struct HostileDocument {
  std::string Name;
  std::string Text;
  std::vector<std::string> Lines;
};

/// Documents with document type declarations: entities that expand, and that lead to files and networks.
std::vector<HostileDocument> DocumentsWithTypes();
/// Documents beyond the limits: depth, counts, lengths.
std::vector<HostileDocument> DocumentsBeyondLimits();
/// Documents whose encoding is not supported or is not what it says.
std::vector<HostileDocument> DocumentsOfOddEncodings();

/// Volume index documents around the given content.
std::string VolumeIndexText(const std::string& content, const std::string& before = "");
/// The text in UTF-16 or UTF-32 without byte order mark, from ASCII.
std::string Widen(const std::string& ascii, size_t unit_bytes, bool is_big_endian);

}  // namespace CairnTest
