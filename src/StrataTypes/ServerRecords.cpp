// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/DeviceStatus.h>
#include <Strata/DiskFreeInfo.h>
#include <Strata/RPCInitInfo.h>
#include <Strata/TaskStatus.h>

#include "StrataTypes/ReadEnum.h"

#include <Ferro/Assert.h>

#include <algorithm>
#include <ostream>
#include <sstream>

// The records that a server sends about itself: their archive forms and how they are printed.

namespace Strata {

// Counts print as signed numbers; that is what readers of this line expect.
void DeviceStatus::Dump(FILE* stream) const {
  // Left, right, centre, low frequency, the surrounds, the accessibility channels, then the unnamed ones.
  constexpr char letters[] = "LRCelrDHz0123456";
  static_assert(sizeof letters == AudioChannelCount + 1);

  if (stream == nullptr) stream = stderr;
  const auto number = [](ui32_t value) { return static_cast<i32_t>(value); };
  std::fprintf(stream, "BPS: %7d  Skp: %d  Und: %d  Audio:", number(ImageBPS), number(FrameSkipCount),
               number(FrameUnderrunCount));
  for (ui32_t i = 0; i < AudioChannelCount; ++i) {
    const ui32_t flags = m_AudioChannelStatus[i];
    std::fprintf(stream, " %s%c%s", (flags & 4) != 0 ? "!" : "_", (flags & 1) != 0 ? '_' : letters[i],
                 (flags & 2) != 0 ? "*" : "_");
  }
}

bool DeviceStatus::HasValue() const {
  return true;
}

ui32_t DeviceStatus::ArchiveLength() const {
  return static_cast<ui32_t>(sizeof(ui32_t)) * (AudioChannelCount + 3);
}

bool DeviceStatus::Archive(Ferro::MemIOWriter* Writer) const {
  FERRO_ASSERT_IN(Writer != nullptr, "Writer", "virtual bool Strata::DeviceStatus::Archive(Ferro::MemIOWriter*) const");
  return std::ranges::all_of(m_AudioChannelStatus, [&](ui32_t flags) { return Writer->WriteUi32BE(flags); }) &&
         Writer->WriteUi32BE(ImageBPS) && Writer->WriteUi32BE(FrameSkipCount) &&
         Writer->WriteUi32BE(FrameUnderrunCount);
}

bool DeviceStatus::Unarchive(Ferro::MemIOReader* Reader) {
  FERRO_ASSERT_IN(Reader != nullptr, "Reader", "virtual bool Strata::DeviceStatus::Unarchive(Ferro::MemIOReader*)");
  return std::ranges::all_of(m_AudioChannelStatus, [&](ui32_t& flags) { return Reader->ReadUi32BE(&flags); }) &&
         Reader->ReadUi32BE(&ImageBPS) && Reader->ReadUi32BE(&FrameSkipCount) &&
         Reader->ReadUi32BE(&FrameUnderrunCount);
}

bool DiskFreeInfo::HasValue() const {
  return !Path.empty();
}

ui32_t DiskFreeInfo::ArchiveLength() const {
  return 20 + static_cast<ui32_t>(Path.size());
}

bool DiskFreeInfo::Archive(Ferro::MemIOWriter* Writer) const {
  FERRO_ASSERT_IN(Writer != nullptr, "Writer", "virtual bool Strata::DiskFreeInfo::Archive(Ferro::MemIOWriter*) const");
  return Writer->WriteString(Path) && Writer->WriteUi64BE(VolumeSize) && Writer->WriteUi64BE(FreeSize);
}

bool DiskFreeInfo::Unarchive(Ferro::MemIOReader* Reader) {
  FERRO_ASSERT_IN(Reader != nullptr, "Reader", "virtual bool Strata::DiskFreeInfo::Unarchive(Ferro::MemIOReader*)");
  return Reader->ReadString(&Path) && Reader->ReadUi64BE(&VolumeSize) && Reader->ReadUi64BE(&FreeSize);
}

// Sizes print as signed numbers; that is what readers of these lines expect.
std::ostream& operator<<(std::ostream& stream, const DiskFreeInfo& info) {
  std::ostringstream text;
  text.copyfmt(stream);
  text << "Path: " << info.Path << std::endl
       << "VolumeSize: " << std::to_string(static_cast<i64_t>(info.VolumeSize)) << std::endl
       << "FreeSize: " << std::to_string(static_cast<i64_t>(info.FreeSize)) << std::endl;
  return stream << text.str();
}

bool RPCInitInfo::HasValue() const {
  return true;
}

ui32_t RPCInitInfo::ArchiveLength() const {
  return 5;
}

bool RPCInitInfo::Archive(Ferro::MemIOWriter* Writer) const {
  FERRO_ASSERT_IN(Writer != nullptr, "Writer", "virtual bool Strata::RPCInitInfo::Archive(Ferro::MemIOWriter*) const");
  return Writer->WriteUi8(WantNotify ? 1 : 0) && Writer->WriteUi32BE(UpdateFrequency);
}

bool RPCInitInfo::Unarchive(Ferro::MemIOReader* Reader) {
  FERRO_ASSERT_IN(Reader != nullptr, "Reader", "virtual bool Strata::RPCInitInfo::Unarchive(Ferro::MemIOReader*)");
  ui8_t want_notify = 0;
  if (!Reader->ReadUi8(&want_notify)) return false;
  WantNotify = want_notify == 1;
  return ReadEnum(*Reader, UpdateFrequency);
}

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
