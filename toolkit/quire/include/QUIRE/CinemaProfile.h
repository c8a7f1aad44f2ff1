// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/JP2KHeaders.h>
#include <QUIRE/Rational.h>
#include <QUIRE/Types.h>

#include <string>
#include <vector>

namespace QUIRE::JP2K {

// The D-Cinema profiles of JPEG 2000 (ISO/IEC 15444-1, A.10; DCI DCSS 1.4, 4.3.3; guard bits: RDD 52).

/// What a codestream for D-Cinema is measured against. Findings say what was found and what is allowed; how grave one is,
/// the caller decides: servers differ in what they play.
enum class ProfileRule : ui8_t {
  Profile,             ///< Rsiz 3 (2K) or 4 (4K)
  HighThroughput,      ///< no high-throughput blocks (ISO/IEC 15444-15)
  Width,               ///< at most 2048 or 4096
  Height,              ///< at most 1080 or 2160
  Origin,              ///< image and tiles begin at 0
  Tiles,               ///< one
  Components,          ///< three
  Depth,               ///< 12 bits, unsigned; Found: bits, those of a signed component with 128 added
  Subsampling,         ///< none
  Levels,              ///< at most 5 for 2K, 1 to 6 for 4K, the same for all components
  Transform,           ///< 9-7 irreversible
  ComponentTransform,  ///< on, as all cinema encoders have it
  CodeBlocks,          ///< 32 x 32; Found: width in the high, height in the low 16 bits
  CodeBlockStyle,      ///< 0
  Precincts,           ///< 128 x 128 for the lowest resolution, 256 x 256 above
  Layers,              ///< one
  Progression,         ///< component, position, resolution, layer (CPRL)
  ProgressionChange,   ///< none for 2K; for 4K two entries: lower resolutions, then the highest
  TileParts,           ///< 3 for 2K, 6 for 4K
  TilePartLengths,     ///< TLM present, and the lengths as they are
  GuardBits,           ///< 1 for 2K, 2 for 4K; often otherwise
  ForbiddenMarker,     ///< no RGN, PPM, PPT, PLM, CRG; Found: the marker
  TilePartMarker,      ///< no COD, COC, QCD, QCC, POC in tile-part headers; Found: the marker
  End,                 ///< EOC last; Found: the CodestreamEnd
  CodestreamBytes,     ///< 250 Mbit/s
  ComponentBytes,      ///< 200 Mbit/s, of 4K without the highest resolution
};

struct ProfileFinding {
  ProfileRule Rule = ProfileRule::Profile;
  ui64_t Found = 0;
  ui64_t Allowed = 0;    ///< the one value, or the largest
  ui16_t Component = 0;  ///< of Depth, Subsampling, ComponentBytes and what a COC or QCC says; else 0

  /// For people, in English: "1302096 bytes, more than 1302083".
  [[nodiscard]] QUIRE_API std::string EncodeString() const;
  friend bool operator==(const ProfileFinding&, const ProfileFinding&) = default;
};

inline constexpr ui64_t CodestreamBitRate = 250'000'000;  ///< bits a second of all components
inline constexpr ui64_t ComponentBitRate = 200'000'000;   ///< bits a second of one

/// The largest sizes in bytes; 0 without a rate above 0.
struct SizeLimits {
  ui64_t Codestream = 0;  ///< SOC to EOC
  ui64_t Component = 0;   ///< tile-parts with their headers
};

/// @param images_per_second  codestreams a second: twice the edit rate for stereoscopic pictures.
[[nodiscard]] QUIRE_API SizeLimits SizeLimitsAt(const Rational& images_per_second);

/// Compares a codestream with the profile that its Rsiz names, or, where that is neither, with the one its size asks for.
/// @param images_per_second  as SizeLimitsAt has it; without a value the sizes in bytes are not looked at.
/// @return one finding for each rule that does not hold, and each component where it is about components; in the order of
/// ProfileRule. Empty: the codestream is of the profile.
[[nodiscard]] QUIRE_API std::vector<ProfileFinding> CheckCinemaProfile(const CodestreamHeaders& headers,
                                                                       const Rational& images_per_second);

}  // namespace QUIRE::JP2K
