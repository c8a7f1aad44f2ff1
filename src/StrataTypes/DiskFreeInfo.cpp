// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/DiskFreeInfo.h>

#include <Ferro/Assert.h>

#include <ostream>
#include <sstream>

namespace Strata {

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

}  // namespace Strata
