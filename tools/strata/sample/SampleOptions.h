// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/DCPFormat.h>
#include <Ferro/Types.h>

#include <string>

namespace Tool {

/// What a sample show is to be like.
struct SampleOptions {
  std::string Folder;                                 ///< must not exist, or be empty
  Ferro::ui32_t Seconds = 4;                          ///< length of each reel
  Ferro::ui32_t Rate = 24;                            ///< edit units per second, dividing 48000
  Ferro::ui32_t Width = 500;                          ///< pixels, up to 2048
  Ferro::ui32_t Height = 270;                         ///< pixels, up to 1080
  Ferro::ui32_t Channels = 6;                         ///< of sound, an even number
  bool Still = false;                                 ///< one picture for each second: quickly made
  Cairn::DCPFormat_t Flavour = Cairn::DFT_DCI_SMPTE;  ///< or DFT_Interop
  bool Unsigned = false;                              ///< signs only what is encrypted; no key message
  Ferro::ui64_t Seed = 1;                             ///< identifiers, dates and keys follow from it
};

}  // namespace Tool
