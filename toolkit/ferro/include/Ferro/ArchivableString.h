// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/IArchive.h>

#include <string>
#include <utility>

namespace Ferro {

/// A string with an archive form: a 32-bit big-endian byte count, then the bytes. A null cursor gives false.
class FERRO_API ArchivableString : public IArchive, public std::string {
 public:
  ArchivableString() = default;
  ArchivableString(const char* text) : std::string(text) {}             // NOLINT: a string in all but the archive form
  ArchivableString(std::string text) : std::string(std::move(text)) {}  // NOLINT: likewise

  [[nodiscard]] bool HasValue() const override;
  [[nodiscard]] ui32_t ArchiveLength() const override;
  [[nodiscard]] bool Archive(MemIOWriter* Writer) const override;
  [[nodiscard]] bool Unarchive(MemIOReader* Reader) override;
};

}  // namespace Ferro
