// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/CheckedMath.h>
#include <Ferro/FileReader.h>

#include <sys/uio.h>

#include <array>
#include <cerrno>
#include <limits>

namespace Ferro {

namespace {

constexpr size_t MaxParts = 16;
constexpr auto MaxPosition = static_cast<fsize_t>(std::numeric_limits<off_t>::max());

// Takes `count` bytes off the front of the list.
std::span<iovec> Advance(std::span<iovec> parts, size_t count) {
  while (!parts.empty() && count >= parts.front().iov_len) {
    count -= parts.front().iov_len;
    parts = parts.subspan(1);
  }
  if (count > 0) {
    parts.front().iov_base = static_cast<ui8_t*>(parts.front().iov_base) + count;
    parts.front().iov_len -= count;
  }
  return parts;
}

}  // namespace

Result_t FileReader::ReadPartsAt(fsize_t position, std::span<const std::span<ui8_t>> parts) const {
  if (m_Descriptor < 0) return RESULT_INIT;
  if (parts.size() > MaxParts) return RESULT_PARAM;
  std::array<iovec, MaxParts> vectors;
  fsize_t total = 0;
  for (size_t i = 0; i < parts.size(); ++i) {
    vectors[i] = {parts[i].data(), parts[i].size()};
    total += parts[i].size();
  }
  if (total > 0 && !RangeFits(position, total, MaxPosition)) return RESULT_ENDOFFILE;

  std::span<iovec> left = Advance({vectors.data(), parts.size()}, 0);
  while (!left.empty()) {
    const ssize_t count =
        ::preadv(m_Descriptor, left.data(), static_cast<int>(left.size()), static_cast<off_t>(position));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return RESULT_READFAIL;
    if (count == 0) return RESULT_ENDOFFILE;
    position += static_cast<fsize_t>(count);
    left = Advance(left, static_cast<size_t>(count));
  }
  return RESULT_OK;
}

}  // namespace Ferro
