// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

// Sound documents of one package in each flavour. Sizes and digests stand for themselves: SamplePackage puts the true ones
// in.

namespace testsupport {

[[nodiscard]] std::string SMPTEAssetMap();
[[nodiscard]] std::string SMPTEVolumeIndex();
[[nodiscard]] std::string SMPTEPackingList();
/// Two reels of 240 edit units at 24 per second, with picture, sound, subtitles, captions, immersive sound, markers and
/// metadata.
[[nodiscard]] std::string SMPTEComposition();
[[nodiscard]] std::string SMPTEStereoscopicComposition();

[[nodiscard]] std::string InteropAssetMap();
[[nodiscard]] std::string InteropVolumeIndex();
[[nodiscard]] std::string InteropPackingList();
[[nodiscard]] std::string InteropComposition();
[[nodiscard]] std::string InteropText();

/// ST 428-7 in the edition of that year: 2007, 2010 or 2014.
[[nodiscard]] std::string SMPTEText(int year);

/// A packing list with the form of a signature; the signature itself is made up.
[[nodiscard]] std::string SignedPackingList();

}  // namespace testsupport
