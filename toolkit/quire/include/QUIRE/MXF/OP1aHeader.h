// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/MXF/Metadata.h>
#include <QUIRE/MXF/Partition.h>
#include <QUIRE/MXF/Primer.h>
#include <QUIRE/Result.h>

#include <Ferro/FileReader.h>

#include <list>
#include <map>
#include <memory>
#include <span>
#include <vector>

namespace QUIRE::MXF {

/// Which tags of index segments the primer lists after those of the sets.
enum class IndexTags { None, ConstantSize, VariableSize };

/// A file's header metadata: the header partition pack, the primer and the sets (ST 377-1, 9). It owns the sets; pointers
/// that it hands out stay valid until it is destroyed or read anew. No lock: one thread at a time, or several that only look.
class QUIRE_API OP1aHeader {
 public:
  /// Longer header metadata are refused.
  static constexpr ui64_t MaxMetadataBytes = 16 * 1024 * 1024;
  /// Header metadata whose sets would take more bytes of memory are refused: room for some ten thousand.
  static constexpr size_t MaxSetMemory = 8 * 1024 * 1024;

  OP1aHeader();
  ~OP1aHeader();
  OP1aHeader(OP1aHeader&&) noexcept;
  OP1aHeader& operator=(OP1aHeader&&) noexcept;

  /// The partition pack that the metadata belong to.
  Partition HeaderPartition;
  MXF::Primer Primer;

  /// Reads the header partition pack, after a run-in of at most 65535 bytes, and its metadata; two reads for an ordinary file.
  /// @return RESULT_OK; RESULT_FORMAT with one log line when the file is not MXF or its metadata are malformed; what the
  /// reader returns.
  [[nodiscard]] Result_t InitFromFile(const Ferro::FileReader& file);
  /// Reads the metadata of the partition whose pack was read already; for metadata repeated in a later partition.
  [[nodiscard]] Result_t InitFromPartition(const Ferro::FileReader& file, const Partition& partition);
  /// Reads primer and sets from `metadata`, which lie at `offset` in the file; HeaderPartition stays as it is.
  [[nodiscard]] Result_t InitFromBuffer(std::span<const ui8_t> metadata, ui64_t offset);

  /// Finds a set by its instance identifier. `object` receives it, or null; it may be null itself.
  /// @return RESULT_OK or RESULT_NOT_FOUND.
  [[nodiscard]] Result_t GetMDObjectByID(const UUID& id, InterchangeObject** object = nullptr) const;
  /// Finds the first set, in stored order, whose key is `type` whatever its registry version.
  /// @return RESULT_OK or RESULT_NOT_FOUND, `object` then being null.
  [[nodiscard]] Result_t GetMDObjectByType(const UL& type, InterchangeObject** object = nullptr) const;
  [[nodiscard]] Result_t GetMDObjectByType(const ui8_t* type, InterchangeObject** object = nullptr) const;
  [[nodiscard]] Result_t GetMDObjectByType(MDD_t type, InterchangeObject** object = nullptr) const;
  /// Appends all sets of a type, in stored order.
  /// @return RESULT_OK; RESULT_NOT_FOUND when there is none.
  [[nodiscard]] Result_t GetMDObjectsByType(const UL& type, std::list<InterchangeObject*>& objects) const;
  [[nodiscard]] Result_t GetMDObjectsByType(MDD_t type, std::list<InterchangeObject*>& objects) const;

  /// The set that a reference names, when there is one and it is a T (or derived from it); else null.
  template <class T>
  [[nodiscard]] T* Resolve(const UUID& reference) const {
    InterchangeObject* object = nullptr;
    return GetMDObjectByID(reference, &object).Success() ? dynamic_cast<T*>(object) : nullptr;
  }
  /// The first set in stored order that is a T (or derived from it); else null.
  template <class T>
  [[nodiscard]] T* First() const {
    for (const auto& object : m_Objects)
      if (auto* found = dynamic_cast<T*>(object.get())) return found;
    return nullptr;
  }
  /// All sets in stored order.
  [[nodiscard]] std::span<const std::unique_ptr<InterchangeObject>> Objects() const { return m_Objects; }

  /// The file package: the source package that an EssenceContainerData links, else the only one; null when there is none.
  [[nodiscard]] SourcePackage* FilePackage() const;
  /// The essence descriptor of the file package (of several, the one linked to its essence track), else the only file
  /// descriptor among the sets; null when there is none.
  [[nodiscard]] FileDescriptor* EssenceDescriptor() const;

  /// Takes over a set, to be stored after those already there; one without InstanceUID gets a random one.
  template <class T>
  T& Add(std::unique_ptr<T> object) {
    T& added = *object;
    AddObject(std::move(object));
    return added;
  }

  /// Bytes of primer and sets as WriteMetadata would write them without fill.
  /// @return RESULT_OK; RESULT_TOOLARGE when an item exceeds 65535 bytes or the primer is full.
  [[nodiscard]] Result_t MetadataLength(IndexTags tags, ui64_t& length);
  /// Appends primer, sets in stored order, and fill up to `header_byte_count`; 0: no fill. Tags that are new to the primer
  /// are listed in order of first use. HeaderPartition is not written and not changed.
  /// @return RESULT_OK; RESULT_TOOLARGE as above or when the metadata do not fit `header_byte_count` with the gap empty
  /// or at least SmallestFill. `out` is unchanged on failure.
  [[nodiscard]] Result_t WriteMetadata(IndexTags tags, ui64_t header_byte_count, std::vector<ui8_t>& out);

 private:
  void AddObject(std::unique_ptr<InterchangeObject> object);
  void Own(std::unique_ptr<InterchangeObject> object);
  [[nodiscard]] Result_t WriteSets(IndexTags tags, std::vector<ui8_t>& sets);

  std::vector<std::unique_ptr<InterchangeObject>> m_Objects;
  std::map<UUID, InterchangeObject*> m_ByID;  // of sets with one identifier, the first
};

}  // namespace QUIRE::MXF
