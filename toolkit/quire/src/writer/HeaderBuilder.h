// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "crypto/IdentifierSource.h"
#include "essence/EssenceKind.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/OP1aHeader.h>
#include <QUIRE/Rational.h>
#include <QUIRE/WriterInfo.h>

#include <functional>
#include <memory>

namespace QUIRE {

inline constexpr ui32_t EssenceBodySID = 1;
inline constexpr ui32_t EssenceIndexSID = 129;

/// What the header metadata of a track file are built from. The same plan gives the same metadata.
struct HeaderPlan {
  const EssenceKind* Kind = nullptr;
  WriterInfo Info;
  Rational EditRate;
  MXF::Timestamp Date;
  Ferro::UUID Seed;
};

/// Adds sets to a header and gives each its identifier, in the order of adding.
class SetFactory {
 public:
  SetFactory(MXF::OP1aHeader& header, const Ferro::UUID& seed) : m_Header(header), m_Identifiers(seed, "header") {}

  template <class T>
  T& Add() {
    auto set = std::make_unique<T>();
    set->InstanceUID = m_Identifiers.Next();
    return m_Header.Add(std::move(set));
  }
  /// Adds a set that belongs to an essence descriptor.
  template <class T>
  T& AddSubDescriptor(MXF::FileDescriptor& owner) {
    T& set = Add<T>();
    owner.SubDescriptors.push_back(set.InstanceUID);
    return set;
  }
  /// An identifier for something that is not a set.
  [[nodiscard]] Ferro::UUID NextIdentifier() { return m_Identifiers.Next(); }

 private:
  MXF::OP1aHeader& m_Header;
  IdentifierSource m_Identifiers;
};

/// Adds the essence descriptor, then its sub-descriptors, and returns the descriptor. What all kinds have in common
/// (linked track, container label, duration) is filled in afterwards, and the sample rate where it was left 0/0.
using DescriptorMaker = std::function<MXF::FileDescriptor&(SetFactory&)>;

/// The dictionary of a label set.
[[nodiscard]] const Dictionary& DictionaryFor(LabelSet_t label_set);
/// The two essence container labels of preface and partition packs (ST 429-3; ST 429-6, 12.1).
[[nodiscard]] std::vector<UL> ContainerLabels(const HeaderPlan& plan);

/// Builds the header metadata, each set directly after its owner, for `duration` edit units. Partition pack and primer
/// are left to the caller.
[[nodiscard]] MXF::OP1aHeader BuildHeader(const HeaderPlan& plan, ui32_t duration, const DescriptorMaker& descriptor);

}  // namespace QUIRE
