// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FieldCodec.h"

#include <QUIRE/MXF/InterchangeObject.h>

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <type_traits>
#include <utility>

namespace QUIRE::MXF {

/// How fields of one C++ type are read, written and shown, whatever set they belong to.
struct FieldType {
  bool Optional;
  bool (*Read)(void* field, std::span<const ui8_t> bytes);
  bool (*Write)(const void* field, std::vector<ui8_t>& out);
  void (*Print)(const void* field, ValuePrinter& printer);
};

/// One property of a set: the dictionary entry that gives its label and tag, and its field in the object.
struct Property {
  MDD_t Entry;
  const FieldType* Type;
  const void* (*FieldOf)(const InterchangeObject& object);

  [[nodiscard]] bool IsOptional() const { return Type->Optional; }
  /// Takes the value; false, the field being unspecified, when the bytes are not of the property's type.
  bool Read(InterchangeObject& object, std::span<const ui8_t> bytes) const {
    return Type->Read(const_cast<void*>(FieldOf(object)), bytes);
  }
  /// Appends the value; false when the object has none.
  bool Write(const InterchangeObject& object, std::vector<ui8_t>& out) const {
    return Type->Write(FieldOf(object), out);
  }
  void Print(const InterchangeObject& object, ValuePrinter& printer) const { Type->Print(FieldOf(object), printer); }
};

/// A set: its dictionary entry and its properties, those of its base classes included, in the order we write them.
struct SetDefinition {
  MDD_t Entry;
  std::span<const Property> Properties;
  std::unique_ptr<InterchangeObject> (*Create)();
  size_t ObjectSize;  ///< bytes of an object without what its fields hold elsewhere
};

/// The definition of the set with this key, whatever its registry version; null for sets that we have no class for.
[[nodiscard]] const SetDefinition* FindSetDefinition(const UL& key);
/// All sets that we have a class for.
[[nodiscard]] std::span<const SetDefinition* const> AllSetDefinitions();

// What follows makes the entries of the tables. To keep them cheap to compile, a field costs one function that finds it
// in its object; everything else is shared by the fields of one type.

template <class T>
struct MemberTraits;
template <class C, class T>
struct MemberTraits<T C::*> {
  using Class = C;
  using Type = T;
};

/// A field of type T that always has a value.
template <class T, class Codec = FieldCodec<T>>
struct FieldAccess {
  static bool Read(void* field, std::span<const ui8_t> bytes) {
    T value{};
    if (!Codec::Read(bytes, value)) return false;
    *static_cast<T*>(field) = std::move(value);
    return true;
  }
  static bool Write(const void* field, std::vector<ui8_t>& out) {
    Codec::Write(*static_cast<const T*>(field), out);
    return true;
  }
  static void Print(const void* field, ValuePrinter& printer) { Codec::Print(*static_cast<const T*>(field), printer); }
  static constexpr FieldType Type{false, Read, Write, Print};
};

template <class T, class Codec>
struct FieldAccess<std::optional<T>, Codec> {
  using Value =
      FieldAccess<T, std::conditional_t<std::is_same_v<Codec, FieldCodec<std::optional<T>>>, FieldCodec<T>, Codec>>;
  static bool Read(void* field, std::span<const ui8_t> bytes) {
    auto& optional = *static_cast<std::optional<T>*>(field);
    T value{};
    if (!Value::Read(&value, bytes)) return false;
    optional = std::move(value);
    return true;
  }
  static bool Write(const void* field, std::vector<ui8_t>& out) {
    const auto& optional = *static_cast<const std::optional<T>*>(field);
    return optional && Value::Write(&*optional, out);
  }
  static void Print(const void* field, ValuePrinter& printer) {
    const auto& optional = *static_cast<const std::optional<T>*>(field);
    if (optional) Value::Print(&*optional, printer);
  }
  static constexpr FieldType Type{true, Read, Write, Print};
};

/// A list that is absent when it is empty.
template <class T>
struct ListAccess : FieldAccess<T> {
  using FieldAccess<T>::Read;
  static bool Write(const void* field, std::vector<ui8_t>& out) {
    return !static_cast<const T*>(field)->empty() && FieldAccess<T>::Write(field, out);
  }
  static void Print(const void* field, ValuePrinter& printer) {
    if (!static_cast<const T*>(field)->empty()) FieldAccess<T>::Print(field, printer);
  }
  static constexpr FieldType Type{true, Read, Write, Print};
};

template <class Set, auto Member>
const void* FieldOf(const InterchangeObject& object) {
  return &(static_cast<const Set&>(object).*Member);
}

/// A property held by a field; optional when the field is. `Set` is given where the field is inherited from a class that
/// is no set itself.
template <auto Member, class Codec = FieldCodec<typename MemberTraits<decltype(Member)>::Type>,
          class Set = typename MemberTraits<decltype(Member)>::Class>
consteval Property Field(MDD_t entry) {
  return {entry, &FieldAccess<typename MemberTraits<decltype(Member)>::Type, Codec>::Type, FieldOf<Set, Member>};
}

/// An optional property held by a list, absent when the list is empty.
template <auto Member>
consteval Property OptionalList(MDD_t entry) {
  using Traits = MemberTraits<decltype(Member)>;
  return {entry, &ListAccess<typename Traits::Type>::Type, FieldOf<typename Traits::Class, Member>};
}

template <size_t N>
using PropertyTable = std::array<Property, N>;

template <size_t... N>
consteval auto Join(const PropertyTable<N>&... tables) {
  PropertyTable<(N + ...)> joined{};
  size_t next = 0;
  const auto append = [&](const auto& table) {
    for (const Property& property : table) joined[next++] = property;
  };
  (append(tables), ...);
  return joined;
}

template <class Set>
std::unique_ptr<InterchangeObject> CreateSet() {
  return std::make_unique<Set>();
}

template <class Set>
consteval SetDefinition DefineSet(MDD_t entry, std::span<const Property> properties) {
  return {entry, properties, CreateSet<Set>, sizeof(Set)};
}

/// What every set begins with (ST 377-1, A.1).
inline constexpr auto InterchangeObjectProperties = std::to_array<Property>({
    Field<&InterchangeObject::InstanceUID>(MDD_InterchangeObject_InstanceUID),
    Field<&InterchangeObject::GenerationUID>(MDD_InterchangeObject_GenerationUID),
});

}  // namespace QUIRE::MXF
