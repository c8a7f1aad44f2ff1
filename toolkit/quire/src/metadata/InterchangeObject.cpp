// SPDX-License-Identifier: BSD-3-Clause
#include "SetDefinition.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/InterchangeObject.h>

namespace QUIRE::MXF {
namespace {

constinit const SetDefinition OpaqueDefinition = DefineSet<OpaqueSet>(MDD_InterchangeObject, {});

}  // namespace

InterchangeObject::~InterchangeObject() = default;

UL InterchangeObject::Key() const {
  return DefaultSMPTEDict().ul(Definition().Entry);
}

const char* InterchangeObject::Name() const {
  return DefaultSMPTEDict().Type(Definition().Entry).Name;
}

bool InterchangeObject::Is(MDD_t set) const {
  return Definition().Entry == set;
}

const SetDefinition& OpaqueSet::Definition() const {
  return OpaqueDefinition;
}

UL OpaqueSet::Key() const {
  return SetKey;
}

}  // namespace QUIRE::MXF
