// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Types.h>

#include <string>

namespace Cairn {

/// Why the index of an asset store failed.
enum StoreFailure_t : ui32_t {
  SF_NONE = 0,            ///< it has not failed
  SF_LOCKED = 1,          ///< another process kept it locked for longer than the busy timeout
  SF_FULL = 2,            ///< its disk is full
  SF_CORRUPT = 3,         ///< the database is damaged
  SF_NOT_A_DATABASE = 4,  ///< the file is no SQLite database
  SF_NOT_AN_INDEX = 5,    ///< an SQLite database of another program
  SF_OTHER_VERSION = 6,   ///< an asset index with tables of another version
  SF_READ_ONLY = 7,       ///< the file or its folder may not be written
  SF_CANNOT_OPEN = 8,     ///< the file can be neither opened nor created: its folder is missing, or may not be entered
  SF_IO = 9,              ///< the system failed to read or write the file
  SF_TOO_LARGE = 10,      ///< the file, or something in it, is larger than any index
  SF_OTHER = 11,          ///< anything else, such as memory running out
};

/// A failure of an asset store's index. A plain value.
struct StoreFailure {
  StoreFailure_t Kind = SF_NONE;
  std::string File;    ///< of the index; empty for an index in memory
  std::string Reason;  ///< SQLite's words, or the store's own: "database is locked"
};

}  // namespace Cairn
