// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/AssetRecord.h>
#include <Cairn/Result.h>
#include <Cairn/Types.h>

#include <map>
#include <string>

namespace Cairn {

/// What tells that a file is still the one that was inspected.
struct FileStamp {
  fsize_t Size = 0;
  i64_t ModifiedNs = 0;  ///< nanoseconds since 1970

  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// The stamp of a regular file now; false when there is none.
[[nodiscard]] bool StampFile(const std::string& path, FileStamp& stamp);

/// Files by path, in byte order, so that what lies below one folder stands together.
using FileStamps = std::map<std::string, FileStamp>;

/// What cannot be read, by path.
using UnreadableEntries = std::map<std::string, UnreadableEntry>;

/// True when this process may open the file to read it, by the permissions of the file and the folders around it.
[[nodiscard]] bool MayBeRead(const std::string& path);

/// Why a file cannot be opened, in the system's words; empty when it can.
[[nodiscard]] std::string OpenFailureOf(const std::string& path);

/// Finds the regular files below a folder, at any depth. Folders that are symbolic links are not entered; a symbolic
/// link to a file counts when the file lies below `folder`. What cannot be opened is logged and left out.
/// @param folder      its canonical path, without a separator at the end.
/// @param unreadable  gets what was left out, but for a file system's own lost+found.
/// @return RESULT_OK; RESULT_NOT_FOUND, RESULT_NO_PERM or RESULT_NOTAFILE for the folder itself.
[[nodiscard]] Result_t ScanFolder(const std::string& folder, FileStamps& files, UnreadableEntries& unreadable);

}  // namespace Cairn
