// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/MDD.h>
#include <QUIRE/MXF/DataTypes.h>
#include <QUIRE/Types.h>
#include <QUIRE/UL.h>

#include <optional>
#include <vector>

namespace QUIRE::MXF {

struct Property;
struct SetDefinition;

/// An item of a set as the file held it. Known properties live in the object's fields; their item keeps bytes only where
/// the file's coding differs from the one we would write, so that an unchanged field is written back as it was.
struct StoredItem {
  ui16_t Tag = 0;
  const Property* Known = nullptr;  ///< null: a property that we have no field for; Found is its value
  bool Verbatim = false;            ///< Found is written as long as the field still has the coding Canonical
  std::vector<ui8_t> Found;
  std::vector<ui8_t> Canonical;
};

/// A header metadata set (ST 377-1, 9 and Annex A). Its fields are public and carry the names of the standard; optional
/// properties are std::optional, or lists that are absent when empty. A null reference is sixteen zero bytes.
/// Objects of an OP1aHeader are owned by it. A plain value otherwise: no thread rule of its own.
class QUIRE_API InterchangeObject {
 public:
  virtual ~InterchangeObject();

  /// Identifies the set within its file; what references name. Not to be changed once a header owns the object.
  UUID InstanceUID;
  std::optional<UUID> GenerationUID;

  /// The declarative table behind the set; for the library's own use.
  [[nodiscard]] virtual const SetDefinition& Definition() const = 0;
  /// The set's key.
  [[nodiscard]] virtual UL Key() const;
  /// The set's name, "WaveAudioDescriptor".
  [[nodiscard]] const char* Name() const;
  /// True when the set is exactly of this class (no base classes; use dynamic_cast for those).
  [[nodiscard]] bool Is(MDD_t set) const;

  /// The items as they were read, in stored order; empty for an object that was not read. For the library's own use.
  std::vector<StoredItem> Items;
  /// True for an object that was read: a required property without an item was left out by the file, and is written only
  /// once it has another value than in a new object. For the library's own use.
  bool WasRead = false;

 protected:
  InterchangeObject() = default;
  InterchangeObject(const InterchangeObject&) = default;
  InterchangeObject& operator=(const InterchangeObject&) = default;
};

/// A KLV of the header metadata that we have no class for; written back as it was.
class QUIRE_API OpaqueSet final : public InterchangeObject {
 public:
  UL SetKey;
  std::vector<ui8_t> Value;

  [[nodiscard]] const SetDefinition& Definition() const override;
  [[nodiscard]] UL Key() const override;
};

}  // namespace QUIRE::MXF
