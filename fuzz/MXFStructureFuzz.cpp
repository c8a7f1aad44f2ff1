// SPDX-License-Identifier: BSD-3-Clause
#include "QuietLog.h"

#include <QUIRE/MXF/Dump.h>
#include <QUIRE/MXF/FileStructure.h>

#include <cstdlib>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

using namespace QUIRE;
using namespace QUIRE::MXF;

namespace {

// The input as a file in memory, written anew for each run.
class MemoryFile {
 public:
  MemoryFile() : m_Descriptor(memfd_create("fuzz", 0)), m_Name("/proc/self/fd/" + std::to_string(m_Descriptor)) {}
  bool Fill(const ui8_t* data, size_t size) const {
    return ftruncate(m_Descriptor, 0) == 0 && pwrite(m_Descriptor, data, size, 0) == static_cast<ssize_t>(size);
  }
  const std::string& Name() const { return m_Name; }

 private:
  int m_Descriptor;
  std::string m_Name;
};

}  // namespace

// Whatever the file, its index holds no more edit units than the file has bytes.
extern "C" int LLVMFuzzerTestOneInput(const ui8_t* data, size_t size) {
  static QuietLog quiet;
  static const MemoryFile memory;
  Ferro::FileReader file;
  if (!memory.Fill(data, size) || file.OpenRead(memory.Name()).Failure()) abort();
  std::string text;
  if (DumpFile(file, DumpForm::Text, text).Failure()) return 0;
  FileStructure structure;
  if (structure.ReadHeader(file).Failure()) abort();
  if (structure.ReadPartitions(file).Failure()) return 0;
  std::vector<EssenceRun> runs;
  if (structure.ReadEssenceRuns(file, 1, runs).Failure()) return 0;
  IndexTable index;
  if (structure.ReadOrRebuildIndex(file, runs, 1, 1, index).Failure()) return 0;
  if (index.EditUnitByteCount() == 0 && index.Duration() > size) abort();
  return 0;
}
