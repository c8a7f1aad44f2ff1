// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "xml/FieldReader.h"

#include <Cairn/CompositionPlaylist.h>

namespace Cairn {

/// Reads one Reel element and appends it to the composition; composition metadata goes into the composition.
void ReadReel(FieldReader& fields, const Element* element, CompositionPlaylist& cpl);

/// Reads the fields that all assets have. `is_rate_required` false lets EditRate be absent.
void ReadGenericAsset(FieldReader& fields, const Element* element, GenericAsset& asset, bool is_rate_required = true);

void ReadContentVersion(const Element* element, ContentVersion& version);
void ReadCompositionMetadata(FieldReader& fields, const Element* element, CompositionMetadata& metadata);

}  // namespace Cairn
