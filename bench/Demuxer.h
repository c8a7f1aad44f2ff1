// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <string>

struct AVFormatContext;
struct AVPacket;

namespace bench {

/// libavformat's demuxer on one file, as a peer to measure against. Ends the program on a failure.
class Demuxer {
 public:
  explicit Demuxer(const std::string& filename);
  ~Demuxer();
  Demuxer(const Demuxer&) = delete;
  Demuxer& operator=(const Demuxer&) = delete;

  /// Reads the next frame. Returns its size in bytes.
  std::size_t Read();
  /// Makes this position, in edit units of `ticks` units of the stream's time base, the next to be read.
  void Seek(std::uint32_t position, std::int64_t ticks);

 private:
  AVFormatContext* m_Context = nullptr;
  AVPacket* m_Packet = nullptr;
};

/// False in a program that was built without libavformat, where a Demuxer ends the program.
[[nodiscard]] bool HasDemuxer();

}  // namespace bench
