// SPDX-License-Identifier: BSD-3-Clause
#include "Demuxer.h"

#include <cstdlib>
#include <iostream>

#ifdef BENCH_HAS_LIBAVFORMAT

extern "C" {
#include <libavformat/avformat.h>
}

namespace bench {

namespace {

void Check(bool success, const char* what) {
  if (success) return;
  std::cerr << "benchmark: libavformat cannot " << what << '\n';
  std::exit(1);
}

}  // namespace

bool HasDemuxer() {
  return true;
}

Demuxer::Demuxer(const std::string& filename) : m_Packet(av_packet_alloc()) {
  av_log_set_level(AV_LOG_ERROR);
  Check(avformat_open_input(&m_Context, filename.c_str(), nullptr, nullptr) == 0, "open a file");
}

Demuxer::~Demuxer() {
  av_packet_free(&m_Packet);
  avformat_close_input(&m_Context);
}

std::size_t Demuxer::Read() {
  av_packet_unref(m_Packet);
  Check(av_read_frame(m_Context, m_Packet) == 0, "read a frame");
  return static_cast<std::size_t>(m_Packet->size);
}

void Demuxer::Seek(std::uint32_t position, std::int64_t ticks) {
  Check(av_seek_frame(m_Context, 0, position * ticks, AVSEEK_FLAG_BACKWARD) >= 0, "seek");
}

}  // namespace bench

#else

namespace bench {

bool HasDemuxer() {
  return false;
}

Demuxer::Demuxer(const std::string& /*filename*/) {
  std::cerr << "benchmark: built without libavformat\n";
  std::exit(1);
}
Demuxer::~Demuxer() = default;
std::size_t Demuxer::Read() {
  return 0;
}
void Demuxer::Seek(std::uint32_t /*position*/, std::int64_t /*ticks*/) {}

}  // namespace bench

#endif
