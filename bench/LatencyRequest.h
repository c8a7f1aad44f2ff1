// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>

namespace bench {

/// While it lives, asks the system to keep idle processors ready to run: a thread on one of them is then woken at once.
/// Programs of real-time sound do the same. The request is a number of microseconds written to a device that root may
/// open; it ends when the device is closed.
class LatencyRequest {
 public:
  LatencyRequest() : m_Device(open("/dev/cpu_dma_latency", O_WRONLY | O_CLOEXEC)) {
    constexpr std::int32_t microseconds = 0;
    m_Granted = m_Device >= 0 && write(m_Device, &microseconds, sizeof microseconds) == sizeof microseconds;
  }
  ~LatencyRequest() {
    if (m_Device >= 0) close(m_Device);
  }
  LatencyRequest(const LatencyRequest&) = delete;
  LatencyRequest& operator=(const LatencyRequest&) = delete;

  [[nodiscard]] bool Granted() const { return m_Granted; }

 private:
  int m_Device;
  bool m_Granted = false;
};

}  // namespace bench
