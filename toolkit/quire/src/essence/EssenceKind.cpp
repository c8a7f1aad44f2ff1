// SPDX-License-Identifier: BSD-3-Clause
#include "EssenceKind.h"

namespace QUIRE {

// Labels and keys by kind (ST 429-3, -4, -5, -14, -18); names, time code and sizes as track files in the field have them.
constinit const EssenceKind JP2KKind = {MDD_JPEG2000Essence,
                                        MDD_JPEG_2000WrappingFrame,
                                        MDD_PictureDataDef,
                                        "Picture Track",
                                        "File Package: frame wrapping of JPEG 2000 codestreams",
                                        true,
                                        true,
                                        true,
                                        16384};
constinit const EssenceKind StereoscopicJP2KKind = {
    MDD_JPEG2000Essence,
    MDD_JPEG_2000WrappingFrame,
    MDD_PictureDataDef,
    "Picture Track",
    "File Package: frame wrapping of stereoscopic JPEG 2000 codestreams",
    true,
    true,
    true,
    16384};
constinit const EssenceKind MPEG2Kind = {MDD_MPEG2Essence,
                                         MDD_MPEG2_VESWrappingFrame,
                                         MDD_PictureDataDef,
                                         "Picture Track",
                                         "File Package: frame wrapping of MPEG-2 video elementary stream",
                                         true,
                                         true,
                                         true,
                                         16384};
constinit const EssenceKind PCMKind = {MDD_WAVEssence,
                                       MDD_WAVWrappingFrame,
                                       MDD_SoundDataDef,
                                       "Sound Track",
                                       "File Package: frame wrapping of wave audio",
                                       false,
                                       true,
                                       true,
                                       16384};
constinit const EssenceKind DCDataKind = {MDD_DCDataEssence,
                                          MDD_DCDataWrappingFrame,
                                          MDD_DataDataDef,
                                          "Data Track",
                                          "File Package: frame wrapping of auxiliary data",
                                          false,
                                          true,
                                          true,
                                          16384};
constinit const EssenceKind AtmosKind = {MDD_IADataEssence,
                                         MDD_IADataWrappingFrame,
                                         MDD_DataDataDef,
                                         "Data Track",
                                         "File Package: frame wrapping of immersive audio data",
                                         false,
                                         true,
                                         true,
                                         16384};
constinit const EssenceKind TimedTextKind = {MDD_TimedTextEssence,
                                             MDD_TimedTextWrapping,
                                             MDD_DataDataDef,
                                             "Timed Text Track",
                                             "File Package: clip wrapping of timed text",
                                             true,
                                             false,
                                             false,
                                             16518};

}  // namespace QUIRE
