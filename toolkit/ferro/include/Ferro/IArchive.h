// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/MemIO.h>
#include <Ferro/Types.h>

namespace Ferro {

/// A value with a binary form for protocols and files. The order of the virtual operations is fixed.
class FERRO_API IArchive {
 public:
  virtual ~IArchive();
  /// True when the object holds something to transmit.
  [[nodiscard]] virtual bool HasValue() const = 0;
  /// Bytes that the archive form takes. Some records state less than they write; each says so.
  [[nodiscard]] virtual ui32_t ArchiveLength() const = 0;
  /// Writes the fields in order. False when one does not fit: what was written before it stays.
  [[nodiscard]] virtual bool Archive(MemIOWriter* Writer) const = 0;
  /// Reads the fields in order. False when one is not there: what was read before it stays.
  [[nodiscard]] virtual bool Unarchive(MemIOReader* Reader) = 0;

 protected:
  IArchive() = default;
  IArchive(const IArchive&) = default;
  IArchive& operator=(const IArchive&) = default;
};

}  // namespace Ferro
