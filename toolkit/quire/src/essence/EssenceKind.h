// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/MDD.h>
#include <QUIRE/Types.h>

namespace QUIRE {

/// In what the track files of the kinds differ, apart from their descriptors.
struct EssenceKind {
  MDD_t ElementKey;
  MDD_t ContainerLabel;
  MDD_t DataDefinition;
  const char* TrackName;
  const char* WrappingName;    // the file package's name
  bool StartsAtOneHour;        // of the file package's time code
  bool HasClip;                // the essence tracks hold source clips; otherwise descriptive segments
  bool TrackNumberFollowsKey;  // bytes 13 to 16 of the element key; otherwise 0
  ui32_t HeaderSize;           // usual end of the header partition
};

extern constinit const EssenceKind JP2KKind;
extern constinit const EssenceKind StereoscopicJP2KKind;
extern constinit const EssenceKind MPEG2Kind;
extern constinit const EssenceKind PCMKind;
extern constinit const EssenceKind DCDataKind;
extern constinit const EssenceKind AtmosKind;
extern constinit const EssenceKind TimedTextKind;

}  // namespace QUIRE
