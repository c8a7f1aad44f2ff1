// SPDX-License-Identifier: BSD-3-Clause
#include "EssenceKind.h"

#include <QUIRE/Dictionary.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace QUIRE {

namespace {

// Labels and keys by kind (ST 429-3, -4, -5, -14, -18); names, time code and sizes as track files in the field have them.
constexpr EssenceKind Kinds[] = {
    {
        .Type = ESS_JPEG_2000,
        .Name = "JPEG 2000 pictures",
        .AlsoReads = ESS_JPEG_2000_S,
        .ElementKey = MDD_JPEG2000Essence,
        .ElementTypes = {0x08},
        .ContainerLabel = MDD_JPEG_2000WrappingFrame,
        .DataDefinition = MDD_PictureDataDef,
        .TrackName = "Picture Track",
        .WrappingName = "File Package: frame wrapping of JPEG 2000 codestreams",
        .StartsAtOneHour = true,
    },
    {
        .Type = ESS_JPEG_2000_S,
        .Name = "stereoscopic JPEG 2000 pictures",
        .AlsoReads = ESS_JPEG_2000,
        .ElementKey = MDD_JPEG2000Essence,
        .ElementTypes = {0x08},
        .ElementsPerEditUnit = 2,
        .ContainerLabel = MDD_JPEG_2000WrappingFrame,
        .DataDefinition = MDD_PictureDataDef,
        .TrackName = "Picture Track",
        .WrappingName = "File Package: frame wrapping of stereoscopic JPEG 2000 codestreams",
        .StartsAtOneHour = true,
    },
    {
        .Type = ESS_MPEG2_VES,
        .Name = "MPEG-2 video",
        .ElementKey = MDD_MPEG2Essence,
        .ElementTypes = {0x05, 0x07},
        .ContainerLabel = MDD_MPEG2_VESWrappingFrame,
        .DataDefinition = MDD_PictureDataDef,
        .TrackName = "Picture Track",
        .WrappingName = "File Package: frame wrapping of MPEG-2 video elementary stream",
        .StartsAtOneHour = true,
    },
    {
        .Type = ESS_PCM,
        .Name = "PCM sound",
        .ElementKey = MDD_WAVEssence,
        .ElementTypes = {0x01, 0x03},
        .ContainerLabel = MDD_WAVWrappingFrame,
        .DataDefinition = MDD_SoundDataDef,
        .TrackName = "Sound Track",
        .WrappingName = "File Package: frame wrapping of wave audio",
    },
    {
        .Type = ESS_TIMED_TEXT,
        .Name = "timed text",
        .ElementKey = MDD_TimedTextEssence,
        .ElementTypes = {0x0b},
        .ContainerLabel = MDD_TimedTextWrapping,
        .DataDefinition = MDD_DataDataDef,
        .TrackName = "Timed Text Track",
        .WrappingName = "File Package: clip wrapping of timed text",
        .StartsAtOneHour = true,
        .HasClip = false,
        .TrackNumberFollowsKey = false,
        .HeaderSize = 16518,
    },
    {
        .Type = ESS_DCDATA,
        .Name = "auxiliary data",
        .AlsoReads = ESS_ATMOS,
        .ElementKey = MDD_DCDataEssence,
        .ElementTypes = {0x0d},
        .ContainerLabel = MDD_DCDataWrappingFrame,
        .DataDefinition = MDD_DataDataDef,
        .TrackName = "Data Track",
        .WrappingName = "File Package: frame wrapping of auxiliary data",
    },
    {
        .Type = ESS_ATMOS,
        .Name = "immersive audio",
        .ElementKey = MDD_IADataEssence,
        .ContainerLabel = MDD_IADataWrappingFrame,
        .DataDefinition = MDD_DataDataDef,
        .TrackName = "Data Track",
        .WrappingName = "File Package: frame wrapping of immersive audio data",
    },
};
constexpr EssenceKind OtherKind;

}  // namespace

bool EssenceKind::Reads(EssenceType_t type) const {
  return type == Type || (type == AlsoReads && type != ESS_MXF_OTHER);
}

// Byte 13 is the item, 15 the element type; 14 and 16 count elements.
bool EssenceKind::IsElementKey(const ui8_t* key) const {
  if (ElementKey == MDD_Max) return false;
  const UL own = DefaultSMPTEDict().ul(ElementKey);
  const ui8_t* const wanted = own.Value();
  if (std::memcmp(key, wanted, 7) != 0 || std::memcmp(key + 8, wanted + 8, 4) != 0) return false;
  if (ElementTypes[0] == 0) return true;
  const auto end = std::find(ElementTypes.begin(), ElementTypes.end(), ui8_t{0});
  return key[12] == wanted[12] && std::find(ElementTypes.begin(), end, key[14]) != end;
}

const EssenceKind& KindOf(EssenceType_t type) {
  const auto found =
      std::find_if(std::begin(Kinds), std::end(Kinds), [=](const auto& kind) { return kind.Type == type; });
  return found == std::end(Kinds) ? OtherKind : *found;
}

const char* EssenceTypeName(EssenceType_t type) {
  return KindOf(type).Name;
}

}  // namespace QUIRE
