// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/FileWriter.h>
#include <Ferro/Path.h>
#include <Ferro/Random.h>
#include <Ferro/TextEncoding.h>

#include "SystemError.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <limits>
#include <new>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Ferro {
namespace {

constexpr auto s_MaxPosition = static_cast<fsize_t>(std::numeric_limits<off_t>::max());

// Hidden, in the same folder so that renaming stays within one file system, and random so that several writers of one
// name do not meet. The original name is cut to leave room within the usual 255 bytes.
// Empty where the system has no random bytes.
std::string TemporaryNameFor(const std::string& filename) {
  std::array<ui8_t, 8> random{};
  if (FillRandom(random).Failure()) return {};
  const std::string name = "." + PathBasename(filename).substr(0, 200) + "." + bin2hex(random) + ".tmp";
  return PathJoin(PathDirname(filename), name);
}

/// What stands under a name.
struct Present {
  bool IsOther = false;       // a folder, device or pipe
  bool IsFile = false;        // a regular file
  mode_t Permissions = 0666;  // those of the file; of a new one, before the process's mask
};

Present WhatStandsAt(const std::string& filename) {
  struct stat status {};
  if (stat(filename.c_str(), &status) != 0) return {};
  if (!S_ISREG(status.st_mode)) return {true, false, 0666};
  return {false, true, status.st_mode & 0777};
}

// Follows symbolic links, so that the file behind them is replaced and not the link. It need not be there yet.
// Leaves ELOOP in errno where it is false.
bool FollowLinks(std::string& filename) {
  constexpr int MaxLinks = 40;
  char target[PATH_MAX];
  for (int links = 0; links < MaxLinks; ++links) {
    const ssize_t length = readlink(filename.c_str(), target, sizeof target);
    if (length < 0) return true;
    const std::string text(target, static_cast<size_t>(length));
    filename = text.starts_with('/') ? text : PathJoin(PathDirname(filename), text);
  }
  errno = ELOOP;
  return false;
}

// Makes a rename durable. Some file systems cannot synchronise folders; the file is complete nevertheless.
void SynchroniseFolderOf(const std::string& filename) {
  std::string folder;
  try {
    folder = PathDirname(filename);
  } catch (const std::bad_alloc&) {
    return;  // the file stands under its name already
  }
  const int descriptor = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  fsync(descriptor);
  close(descriptor);
}

// Leaves the reason in errno where it fails.
bool WriteWhole(int descriptor, fsize_t position, std::span<const ui8_t> bytes) {
  if (position > s_MaxPosition || bytes.size() > s_MaxPosition - position) {
    errno = EFBIG;
    return false;
  }
  while (!bytes.empty()) {
    const ssize_t count = pwrite(descriptor, bytes.data(), bytes.size(), static_cast<off_t>(position));
    if (count < 0 && errno == EINTR) continue;
    if (count == 0) errno = EIO;
    if (count <= 0) return false;
    bytes = bytes.subspan(static_cast<size_t>(count));
    position += static_cast<fsize_t>(count);
  }
  return true;
}

}  // namespace

FileWriter::~FileWriter() {
  Abandon();
}

FileWriter::FileWriter(FileWriter&& other) noexcept {
  *this = std::move(other);
}

FileWriter& FileWriter::operator=(FileWriter&& other) noexcept {
  if (this == &other) return *this;
  Abandon();
  m_Filename = std::exchange(other.m_Filename, {});
  m_TemporaryName = std::exchange(other.m_TemporaryName, {});
  m_Descriptor = std::exchange(other.m_Descriptor, -1);
  m_Position = std::exchange(other.m_Position, 0);
  m_Error = std::exchange(other.m_Error, 0);
  return *this;
}

Result_t FileWriter::OpenWrite(const std::string& filename) {
  if (IsOpen()) return RESULT_STATE;
  m_Error = 0;
  if (const Result_t result = CheckFilename(filename); result.Failure()) return result;
  std::string target = filename;  // all strings are made before there is a descriptor to lose
  if (!FollowLinks(target)) {
    m_Error = errno;
    return ResultOfOpenError(m_Error);
  }
  const Present present = WhatStandsAt(target);
  if (PathBasename(target).empty() || present.IsOther) return RESULT_NOTAFILE;

  std::string temporary_name = TemporaryNameFor(target);
  if (temporary_name.empty()) return RESULT_FILEOPEN;
  const int descriptor = open(temporary_name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, present.Permissions);
  if (descriptor < 0) {
    m_Error = errno;
    return ResultOfOpenError(m_Error);
  }
  if (present.IsFile) static_cast<void>(fchmod(descriptor, present.Permissions));  // some file systems have none
  m_Filename = std::move(target);
  m_TemporaryName = std::move(temporary_name);
  m_Descriptor = descriptor;
  m_Position = 0;
  return RESULT_OK;
}

Result_t FileWriter::Write(std::span<const ui8_t> bytes) {
  const Result_t result = WriteAt(m_Position, bytes);
  if (result.Success()) m_Position += bytes.size();
  return result;
}

Result_t FileWriter::Write(std::string_view text) {
  return Write(std::span(reinterpret_cast<const ui8_t*>(text.data()), text.size()));
}

Result_t FileWriter::WriteAt(fsize_t position, std::span<const ui8_t> bytes) {
  if (!IsOpen()) return RESULT_INIT;
  if (WriteWhole(m_Descriptor, position, bytes)) return RESULT_OK;
  if (m_Error == 0) m_Error = errno;
  return RESULT_WRITEFAIL;
}

Result_t FileWriter::Seek(fsize_t position) {
  if (!IsOpen()) return RESULT_INIT;
  if (position > s_MaxPosition) return RESULT_BADSEEK;
  m_Position = position;
  return RESULT_OK;
}

Result_t FileWriter::Commit() {
  if (!IsOpen()) return RESULT_INIT;
  const auto note = [this](int answer) {
    if (answer != 0 && m_Error == 0) m_Error = errno;
  };
  if (m_Error == 0) note(fsync(m_Descriptor));
  note(close(std::exchange(m_Descriptor, -1)));
  if (m_Error == 0) note(std::rename(m_TemporaryName.c_str(), m_Filename.c_str()));
  if (m_Error != 0) {
    unlink(m_TemporaryName.c_str());
    return RESULT_WRITEFAIL;
  }
  SynchroniseFolderOf(m_Filename);
  return RESULT_OK;
}

void FileWriter::Abandon() {
  if (!IsOpen()) return;
  close(std::exchange(m_Descriptor, -1));
  unlink(m_TemporaryName.c_str());
}

std::string FileWriter::FailureReason() const {
  return m_Error == 0 ? "" : std::generic_category().message(m_Error);
}

}  // namespace Ferro
