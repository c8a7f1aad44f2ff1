// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/TaskStatus.h>

#include "StrataTypes/ReadEnum.h"

#include <Ferro/Assert.h>

#include <ostream>
#include <sstream>

namespace Strata {

bool TaskStatus::HasValue() const {
  return AssetID.HasValue();
}

// 4 bytes less than Archive writes, the list's count; see the class.
ui32_t TaskStatus::ArchiveLength() const {
  return 36 + Messages.ArchiveLength() - static_cast<ui32_t>(sizeof(ui32_t));
}

bool TaskStatus::Archive(Ferro::MemIOWriter* Writer) const {
  FERRO_ASSERT_IN(Writer != nullptr, "Writer", "virtual bool Strata::TaskStatus::Archive(Ferro::MemIOWriter*) const");
  return AssetID.Archive(Writer) && Writer->WriteUi32BE(State) && Writer->WriteUi32BE(TaskType) &&
         Writer->WriteUi32BE(Progress) && Writer->WriteUi64BE(Size) && Messages.Archive(Writer);
}

bool TaskStatus::Unarchive(Ferro::MemIOReader* Reader) {
  FERRO_ASSERT_IN(Reader != nullptr, "Reader", "virtual bool Strata::TaskStatus::Unarchive(Ferro::MemIOReader*)");
  return AssetID.Unarchive(Reader) && ReadEnum(*Reader, State) && ReadEnum(*Reader, TaskType) &&
         Reader->ReadUi32BE(&Progress) && Reader->ReadUi64BE(&Size) && Messages.Unarchive(Reader);
}

std::ostream& operator<<(std::ostream& stream, const TaskStatus& status) {
  std::ostringstream text;
  text.copyfmt(stream);
  text << "AssetID: " << status.AssetID.EncodeString() << std::endl
       << "State: " << Cairn::StringTaskState(status.State) << std::endl
       << "TaskType: " << StringTaskType(status.TaskType) << std::endl
       << "Progress: " << std::to_string(status.Progress) << std::endl
       << "Size: " << std::to_string(status.Size) << std::endl;
  text << (status.Messages.empty() ? "No messages." : "Messages: ") << std::endl;
  for (const Ferro::LogEntry& entry : status.Messages) text << entry;
  return stream << text.str();
}

}  // namespace Strata
