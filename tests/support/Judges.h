// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Types.h>

#include <map>
#include <span>
#include <string>
#include <vector>

namespace testsupport {

// Independent programs that read and write MXF. One that is not installed is a test failure, with its name.

/// Runs a command and returns what it writes to standard output; a test failure, with its error output, unless it ends
/// with 0. The first word is the program.
std::string RunJudge(const std::vector<std::string>& command);

/// Size and MD5 of one packet.
struct PacketFacts {
  size_t Size = 0;
  std::string MD5;
  friend bool operator==(const PacketFacts&, const PacketFacts&) = default;
};
std::ostream& operator<<(std::ostream& stream, const PacketFacts& facts);
PacketFacts FactsOf(std::span<const QUIRE::ui8_t> bytes);

/// The packets of the only stream, as FFmpeg reads them, in stored order. `options` stand before the file.
std::vector<PacketFacts> PacketsByFFmpeg(const std::string& filename, const std::vector<std::string>& options = {});
/// What ffprobe says of the only stream, and the container's duration as "format_duration".
std::map<std::string, std::string> ProbeByFFmpeg(const std::string& filename);
/// What MediaInfo tells of a section ("Video"), its fields put between percent signs: "%Width% %Height%".
std::string AskMediaInfo(const std::string& filename, const std::string& section, const std::string& fields);

}  // namespace testsupport
