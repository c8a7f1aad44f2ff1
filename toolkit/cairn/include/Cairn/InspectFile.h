// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Export.h>
#include <Cairn/FileType.h>
#include <Cairn/Result.h>
#include <Cairn/Types.h>

#include <string>

namespace Cairn {

/// Why a document cannot be read.
enum DocumentProblem_t : ui32_t {
  DP_NONE = 0,       ///< it can, or it is none of digital cinema, or no document
  DP_ENCODING = 1,   ///< its encoding is not supported, or is not the one that it declares
  DP_MALFORMED = 2,  ///< it is not well-formed XML, or beyond the limits of DocumentParser
};

/// What a look inside a file tells.
struct FileContent {
  FileType_t Type = FT_UNKNOWN;
  UUID ID;  ///< the file's own: a document's Id or SubtitleID, a track file's asset; no value where there is none
  DocumentProblem_t Problem = DP_NONE;
  std::string Reason;  ///< of the problem, part of a sentence: the encoding "WINDOWS-1252" is not supported
};

/// Finds out what a file holds from its bytes; its name does not count, and a document's namespace must be one of those of
/// digital cinema. That a file is nothing known, or is broken beyond its first tag, is an answer and is not logged, but
/// for the faults that QUIRE finds in an MXF file. Only the beginning of a file is read, and documents whole.
/// @return RESULT_OK whenever the file could be read; else the failure of Ferro::FileReader. Any thread may call it.
[[nodiscard]] CAIRN_API Result_t InspectFile(const std::string& filename, FileContent& content);

}  // namespace Cairn
