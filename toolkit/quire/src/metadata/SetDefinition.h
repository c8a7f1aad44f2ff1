// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FieldCodec.h"

#include <QUIRE/MXF/InterchangeObject.h>

#include <array>
#include <memory>
#include <optional>
#include <span>

namespace QUIRE::MXF {

/// One property of a set: the dictionary entry that gives its label and tag, and its field in the object.
struct Property {
  MDD_t Entry;
  bool Optional;
  /// Takes the value; false, the field being unspecified, when the bytes are not of the property's type.
  bool (*Read)(InterchangeObject& object, std::span<const ui8_t> bytes);
  /// Appends the value; false when the object has none.
  bool (*Write)(const InterchangeObject& object, std::vector<ui8_t>& out);
  void (*Print)(const InterchangeObject& object, ValuePrinter& printer);
};

/// A set: its dictionary entry and its properties, those of its base classes included, in the order we write them.
struct SetDefinition {
  MDD_t Entry;
  std::span<const Property> Properties;
  std::unique_ptr<InterchangeObject> (*Create)();
};

/// The definition of the set with this key, whatever its registry version; null for sets that we have no class for.
[[nodiscard]] const SetDefinition* FindSetDefinition(const UL& key);
/// All sets that we have a class for.
[[nodiscard]] std::span<const SetDefinition* const> AllSetDefinitions();

// What follows makes the entries of the tables.

template <class T>
struct MemberTraits;
template <class C, class T>
struct MemberTraits<T C::*> {
  using Class = C;
  using Type = T;
  using Value = T;
  static constexpr bool Optional = false;
};
template <class C, class T>
struct MemberTraits<std::optional<T> C::*> {
  using Class = C;
  using Type = std::optional<T>;
  using Value = T;
  static constexpr bool Optional = true;
};

template <auto Member, class Codec, bool OmitEmpty>
struct FieldAccess {
  using Traits = MemberTraits<decltype(Member)>;
  static auto& Of(InterchangeObject& object) { return static_cast<typename Traits::Class&>(object).*Member; }
  static const auto& Of(const InterchangeObject& object) {
    return static_cast<const typename Traits::Class&>(object).*Member;
  }
  static bool IsAbsent(const InterchangeObject& object) {
    if constexpr (Traits::Optional) return !Of(object).has_value();
    if constexpr (OmitEmpty) return Of(object).empty();
    return false;
  }
  static const auto& ValueOf(const InterchangeObject& object) {
    if constexpr (Traits::Optional)
      return *Of(object);
    else
      return Of(object);
  }
  static bool Read(InterchangeObject& object, std::span<const ui8_t> bytes) {
    typename Traits::Value value{};
    if (!Codec::Read(bytes, value)) return false;
    Of(object) = std::move(value);
    return true;
  }
  static bool Write(const InterchangeObject& object, std::vector<ui8_t>& out) {
    if (IsAbsent(object)) return false;
    Codec::Write(ValueOf(object), out);
    return true;
  }
  static void Print(const InterchangeObject& object, ValuePrinter& printer) {
    if (!IsAbsent(object)) Codec::Print(ValueOf(object), printer);
  }
};

/// A property held by a field; optional when the field is.
template <auto Member, class Codec = FieldCodec<typename MemberTraits<decltype(Member)>::Value>>
consteval Property Field(MDD_t entry) {
  using Access = FieldAccess<Member, Codec, false>;
  return {entry, MemberTraits<decltype(Member)>::Optional, &Access::Read, &Access::Write, &Access::Print};
}

/// An optional property held by a list, absent when the list is empty.
template <auto Member>
consteval Property OptionalList(MDD_t entry) {
  using Access = FieldAccess<Member, FieldCodec<typename MemberTraits<decltype(Member)>::Value>, true>;
  return {entry, true, &Access::Read, &Access::Write, &Access::Print};
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

/// What every set begins with (ST 377-1, A.1).
inline constexpr auto InterchangeObjectProperties = std::to_array<Property>({
    Field<&InterchangeObject::InstanceUID>(MDD_InterchangeObject_InstanceUID),
    Field<&InterchangeObject::GenerationUID>(MDD_InterchangeObject_GenerationUID),
});

}  // namespace QUIRE::MXF
