// SPDX-License-Identifier: BSD-3-Clause
#include "Judges.h"

#include "FileBytes.h"
#include "TemporaryFolder.h"

#include <Ferro/TextEncoding.h>

#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <sys/wait.h>

#include <array>
#include <cstdlib>
#include <sstream>
#include <string_view>

namespace testsupport {

namespace {

std::string Quote(const std::string& word) {
  std::string quoted = "'";
  for (const char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

std::string ReadText(const std::string& filename) {
  const auto bytes = ReadFileBytes(filename);
  return {bytes.begin(), bytes.end()};
}

}  // namespace

std::string RunJudge(const std::vector<std::string>& command) {
  const TemporaryFolder folder;
  std::string line;
  for (const auto& word : command) line += Quote(word) + ' ';
  line += "</dev/null >" + Quote(folder.Path("out")) + " 2>" + Quote(folder.Path("err"));
  const int status = std::system(line.c_str());
  const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  EXPECT_NE(code, 127) << command.front() << " is not installed: what it judges was not checked";
  EXPECT_EQ(code, 0) << line << '\n' << ReadText(folder.Path("err"));
  return ReadText(folder.Path("out"));
}

std::ostream& operator<<(std::ostream& stream, const PacketFacts& facts) {
  return stream << facts.Size << ' ' << facts.MD5;
}

PacketFacts FactsOf(std::span<const QUIRE::ui8_t> bytes) {
  std::array<QUIRE::ui8_t, 16> digest{};
  EXPECT_EQ(EVP_Digest(bytes.data(), bytes.size(), digest.data(), nullptr, EVP_md5(), nullptr), 1);
  return {bytes.size(), Ferro::bin2hex(digest)};
}

// Lines of framemd5: stream, dts, pts, duration, size, MD5, and perhaps what goes along with the packet.
std::vector<PacketFacts> PacketsByFFmpeg(const std::string& filename, const std::vector<std::string>& options) {
  std::vector<std::string> command = {"ffmpeg", "-v", "error", "-nostdin"};
  command.insert(command.end(), options.begin(), options.end());
  for (const char* word : {"-i", filename.c_str(), "-map", "0", "-c", "copy", "-f", "framemd5", "-"}) {
    command.emplace_back(word);
  }
  std::vector<PacketFacts> packets;
  std::istringstream lines(RunJudge(command));
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream fields(line);
    std::vector<std::string> values;
    for (std::string value; std::getline(fields, value, ',');) values.push_back(value);
    if (values.size() < 6) {
      ADD_FAILURE() << "unexpected line of framemd5: " << line;
      continue;
    }
    packets.push_back({std::stoul(values[4]), values[5].substr(values[5].find_first_not_of(' '))});
  }
  return packets;
}

std::map<std::string, std::string> ProbeByFFmpeg(const std::string& filename) {
  std::map<std::string, std::string> facts;
  std::istringstream lines(
      RunJudge({"ffprobe", "-v", "error", "-of", "flat=sep_char=_", "-show_streams", "-show_format", filename}));
  for (std::string line; std::getline(lines, line);) {  // streams_stream_0_width=512, format_duration="0.5"
    const size_t equals = line.find('=');
    if (equals == std::string::npos) continue;
    std::string value = line.substr(equals + 1);
    std::erase(value, '"');
    constexpr std::string_view prefix = "streams_stream_0_";
    const size_t start = line.starts_with(prefix) ? prefix.size() : 0;
    facts[line.substr(start, equals - start)] = value;
  }
  return facts;
}

std::string AskMediaInfo(const std::string& filename, const std::string& section, const std::string& fields) {
  std::string answer = RunJudge({"mediainfo", "--Inform=" + section + ";" + fields, filename});
  while (!answer.empty() && answer.back() == '\n') answer.pop_back();
  return answer;
}

}  // namespace testsupport
