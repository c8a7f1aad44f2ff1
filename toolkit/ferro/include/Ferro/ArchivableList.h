// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/IArchive.h>

#include <list>
#include <utility>

namespace Ferro {

/// A list of archivable elements: a 32-bit big-endian element count, then each element's own form in list order.
///
/// Reading appends: the list is not cleared first. An element is appended after it has been read whole; the first that
/// fails ends the read with false and keeps those before it. A null cursor gives false.
template <class T>
class ArchivableList : public IArchive, public std::list<T> {
 public:
  using std::list<T>::list;
  ArchivableList() = default;

  [[nodiscard]] bool HasValue() const override { return !this->empty(); }

  [[nodiscard]] ui32_t ArchiveLength() const override {
    ui32_t length = sizeof(ui32_t);
    for (const T& element : *this) length += element.ArchiveLength();
    return length;
  }

  [[nodiscard]] bool Archive(MemIOWriter* Writer) const override {
    if (Writer == nullptr || !Writer->WriteUi32BE(static_cast<ui32_t>(this->size()))) return false;
    for (const T& element : *this)
      if (!element.Archive(Writer)) return false;
    return true;
  }

  [[nodiscard]] bool Unarchive(MemIOReader* Reader) override {
    ui32_t count = 0;
    if (Reader == nullptr || !Reader->ReadUi32BE(&count)) return false;
    for (; count > 0; --count) {
      T element;
      if (!element.Unarchive(Reader)) return false;
      this->push_back(std::move(element));
    }
    return true;
  }
};

}  // namespace Ferro
