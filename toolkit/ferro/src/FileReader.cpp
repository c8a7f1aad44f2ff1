// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/FileReader.h>

#include "SystemError.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Ferro {
namespace {

constexpr auto s_MaxPosition = static_cast<fsize_t>(std::numeric_limits<off_t>::max());

}  // namespace

FileReader::~FileReader() {
  Close();
}

FileReader::FileReader(FileReader&& other) noexcept
    : m_Filename(std::exchange(other.m_Filename, {})),
      m_Descriptor(std::exchange(other.m_Descriptor, -1)),
      m_Size(std::exchange(other.m_Size, 0)) {}

FileReader& FileReader::operator=(FileReader&& other) noexcept {
  if (this == &other) return *this;
  Close();
  m_Filename = std::exchange(other.m_Filename, {});
  m_Descriptor = std::exchange(other.m_Descriptor, -1);
  m_Size = std::exchange(other.m_Size, 0);
  return *this;
}

Result_t FileReader::OpenRead(const std::string& filename) {
  Close();
  if (const Result_t result = CheckFilename(filename); result.Failure()) return result;

  std::string name = filename;  // copied before there is a descriptor to lose
  // Without O_NONBLOCK, opening a pipe would wait for its writer.
  const int descriptor = open(filename.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) return ResultOfOpenError(errno);
  struct stat status {};
  const bool known = fstat(descriptor, &status) == 0;
  if (!known || !S_ISREG(status.st_mode)) {
    close(descriptor);
    return known ? RESULT_NOTAFILE : RESULT_FILEOPEN;
  }
  m_Filename = std::move(name);
  m_Descriptor = descriptor;
  m_Size = static_cast<fsize_t>(status.st_size);
  return RESULT_OK;
}

void FileReader::Close() {
  if (m_Descriptor >= 0) close(m_Descriptor);
  m_Descriptor = -1;
  m_Filename.clear();
  m_Size = 0;
}

Result_t FileReader::ReadAt(fsize_t position, std::span<ui8_t> out) const {
  size_t count = 0;
  const Result_t result = ReadUpTo(position, out, count);
  if (result.Failure()) return result;
  return count == out.size() ? RESULT_OK : RESULT_ENDOFFILE;
}

Result_t FileReader::ReadUpTo(fsize_t position, std::span<ui8_t> out, size_t& count) const {
  count = 0;
  if (!IsOpen()) return RESULT_INIT;
  while (count < out.size() && position < s_MaxPosition) {
    // The system refuses ranges that leave its type for positions, even where the file ends before.
    const size_t wanted = std::min<fsize_t>(out.size() - count, s_MaxPosition - position);
    const ssize_t got = pread(m_Descriptor, out.data() + count, wanted, static_cast<off_t>(position));
    if (got == 0) break;
    if (got < 0) {
      if (errno == EINTR) continue;
      return RESULT_READFAIL;
    }
    count += static_cast<size_t>(got);
    position += static_cast<fsize_t>(got);
  }
  return RESULT_OK;
}

void FileReader::AdviseSequential() const {
  // Advice only: where the file system takes none, reading works all the same.
  if (IsOpen()) posix_fadvise(m_Descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
}

}  // namespace Ferro
