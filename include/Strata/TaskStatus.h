// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>
#include <Strata/TaskType.h>
#include <Strata/Types.h>

#include <Ferro/ArchivableList.h>
#include <Ferro/IArchive.h>
#include <Ferro/LogEntry.h>

#include <iosfwd>

namespace Strata {

/// How far a task of the asset store has come.
///
/// Archive form, in order: AssetID 16 bytes, State u32, TaskType u32, Progress u32, Size u64, Messages as a list;
/// 40 bytes and the messages'. ArchiveLength does not count the list's own 4 bytes: peers rely on the short count, so a
/// buffer has to be larger than it says. Reading appends to the messages that are there.
class STRATA_API TaskStatus : public Ferro::IArchive {
 public:
  UUID AssetID;
  Cairn::TaskState_t State = Cairn::TS_NEW;
  TaskType_t TaskType = TT_INIT;
  ui32_t Progress = 0;  ///< in the unit of the task
  ui64_t Size = 0;      ///< of the asset, in bytes
  Ferro::ArchivableList<Ferro::LogEntry> Messages;

  /// True when the asset's identifier has a value.
  [[nodiscard]] bool HasValue() const override;
  [[nodiscard]] ui32_t ArchiveLength() const override;
  [[nodiscard]] bool Archive(Ferro::MemIOWriter* Writer) const override;
  [[nodiscard]] bool Unarchive(Ferro::MemIOReader* Reader) override;
};

/// Inserts one labelled line per field, then the messages, one line each, or "No messages.".
STRATA_API std::ostream& operator<<(std::ostream& stream, const TaskStatus& status);

}  // namespace Strata
