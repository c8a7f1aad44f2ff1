// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/MXF/OP1aHeader.h>
#include <QUIRE/Result.h>

#include <Ferro/FileReader.h>

#include <string>

namespace QUIRE::MXF {

enum class DumpForm { Text, JSON };

/// Describes a file's structure for people who debug files: partitions, random index pack, header metadata sets with all
/// their items, index, essence elements. What cannot be read is named among the problems, and so is how much is left out
/// of a file whose description would be longer than 4 MiB.
/// @return RESULT_OK; RESULT_FORMAT with one log line when the file is not MXF; what the reader returns.
[[nodiscard]] QUIRE_API Result_t DumpFile(const Ferro::FileReader& file, DumpForm form, std::string& out);
/// Describes one set, its items in stored order.
[[nodiscard]] QUIRE_API std::string DumpSet(const InterchangeObject& set, DumpForm form);

}  // namespace QUIRE::MXF
