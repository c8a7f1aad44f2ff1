// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "xml/FieldWriter.h"

#include <Cairn/CompositionPlaylist.h>

namespace Cairn {

/// Writes one reel. The composition's metadata goes into the first.
void WriteReel(FieldWriter& fields, Ferro::XMLElement& parent, const Reel& reel, const CompositionPlaylist& cpl,
               bool is_first);

/// Writes the fields that all assets have, but key and digest. Entry point and duration of an asset that is not a track
/// file are left out where they say nothing.
void WriteGenericAsset(FieldWriter& fields, Ferro::XMLElement& element, const GenericAsset& asset, bool is_track_file);

void WriteContentVersion(Ferro::XMLElement& parent, const ContentVersion& version);
void WriteCompositionMetadata(FieldWriter& fields, Ferro::XMLElement& parent, const CompositionMetadata& metadata);

}  // namespace Cairn
