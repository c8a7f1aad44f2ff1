// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ShowOutline.h"
#include "TrackFileFacts.h"

#include <Cairn/CompositionPlaylist.h>

#include <optional>
#include <string>

// What compositions and track files are, in the words of the trade, on one line.

namespace Tool {

/// "Flat 2K 1998×1080", "Scope 4K 4096×1716", "96×64"; empty where a number is 0.
[[nodiscard]] std::string PictureFormatText(Ferro::ui32_t width, Ferro::ui32_t height);
/// "5.1", "7.1 DS + HI/VI", "12 channels"; empty where nothing is known.
/// @param configuration  "51/L,R,C,LFE,Ls,Rs", or empty.
[[nodiscard]] std::string SoundFormatText(Ferro::ui32_t channels, const std::string& configuration);

/// "L, R, C, LFE, Ls, Rs"; empty where the configuration does not say.
[[nodiscard]] std::string ChannelNamesText(const std::string& configuration);

/// What a composition is. What is not known is empty or 0, and is not told.
struct CompositionTraits {
  Ferro::ui32_t Width = 0;   ///< pixels of the first picture, as stored
  Ferro::ui32_t Height = 0;  ///< the same
  bool Stereoscopic = false;
  QUIRE::Rational EditRate;
  std::optional<bool> HasSound;
  std::string Sound;             ///< "5.1"
  std::string Language;          ///< of the sound
  std::string SubtitleLanguage;  ///< of the main subtitle
  bool HasSubtitle = false;
  bool HasCaptions = false;
  bool HasImmersiveAudio = false;
  Cairn::DCPFormat_t Format = Cairn::DFT_NONE;
  std::optional<bool> IsVersion;  ///< it takes assets from another package (VF); otherwise it has them all (OV)
  bool Encrypted = false;
  size_t Reels = 0;
};

/// As its document says, without opening other files.
[[nodiscard]] CompositionTraits TraitsOf(const Cairn::CompositionPlaylist& composition);
/// The same, and what its first picture and sound files say.
[[nodiscard]] CompositionTraits TraitsOf(const OutlineComposition& composition);

/// "Flat 2K 1998×1080, 24 fps, 5.1, en, SMPTE, OV, 3 reels".
[[nodiscard]] std::string Describe(const CompositionTraits& traits);
/// "Flat 2K 1998×1080, 24 fps, 0:10"; "5.1, 48 kHz, 24 bit, 0:10". Empty for what cannot be opened.
[[nodiscard]] std::string Describe(const TrackFileFacts& facts);

}  // namespace Tool
