// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FieldReader.h"

#include <Cairn/CompositionPlaylist.h>

#include <xercesc/dom/DOMElement.hpp>

namespace Cairn {

/// Reads one Reel element and appends it to the composition; composition metadata goes into the composition.
void ReadReel(FieldReader& fields, const xercesc::DOMElement* element, CompositionPlaylist& cpl);

/// Reads the fields that all assets have. `is_rate_required` false lets EditRate be absent.
void ReadGenericAsset(FieldReader& fields, const xercesc::DOMElement* element, GenericAsset& asset,
                      bool is_rate_required = true);

void ReadContentVersion(const xercesc::DOMElement* element, ContentVersion& version);
void ReadCompositionMetadata(FieldReader& fields, const xercesc::DOMElement* element, CompositionMetadata& metadata);

}  // namespace Cairn
