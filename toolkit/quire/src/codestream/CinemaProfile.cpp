// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/CinemaProfile.h>

#include <Ferro/Assert.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace QUIRE::JP2K {

namespace {

constexpr ui64_t SignedDepth = 128;
constexpr ui8_t SmallPrecinct = 0x77;  // 128 x 128
constexpr ui8_t LargePrecinct = 0x88;  // 256 x 256

struct Profile {
  ui16_t Rsiz;
  ui32_t MaxWidth;
  ui32_t MaxHeight;
  ui8_t MinLevels;
  ui8_t MaxLevels;
  ui32_t TileParts;
  ui8_t GuardBits;
  size_t ProgressionChanges;
};
constexpr Profile TwoK = {3, 2048, 1080, 0, 5, 3, 1, 0};
constexpr Profile FourK = {4, 4096, 2160, 1, 6, 6, 2, 2};

const Profile& ProfileOf(const ImageAndTileSize& size) {
  if (size.Rsiz == TwoK.Rsiz) return TwoK;
  if (size.Rsiz == FourK.Rsiz) return FourK;
  return size.Xsiz <= TwoK.MaxWidth && size.Ysiz <= TwoK.MaxHeight ? TwoK : FourK;
}

using Findings = std::vector<ProfileFinding>;

// Adds a finding unless what was found is what is allowed.
void Equal(Findings& findings, ProfileRule rule, ui64_t found, ui64_t allowed, ui16_t component = 0) {
  if (found != allowed) findings.push_back({rule, found, allowed, component});
}

void AtMost(Findings& findings, ProfileRule rule, ui64_t found, ui64_t allowed, ui16_t component = 0) {
  if (found > allowed) findings.push_back({rule, found, allowed, component});
}

void CheckSize(Findings& findings, const ImageAndTileSize& size, const Profile& profile) {
  AtMost(findings, ProfileRule::Width, size.Xsiz - size.XOsiz, profile.MaxWidth);
  AtMost(findings, ProfileRule::Height, size.Ysiz - size.YOsiz, profile.MaxHeight);
  AtMost(findings, ProfileRule::Origin, std::max({size.XOsiz, size.YOsiz, size.XTOsiz, size.YTOsiz}), 0);
  const auto tiles = [](ui32_t end, ui32_t start, ui32_t step) { return (ui64_t{end} - start + step - 1) / step; };
  const ui64_t across = tiles(size.Xsiz, size.XTOsiz, size.XTsiz);
  const ui64_t down = tiles(size.Ysiz, size.YTOsiz, size.YTsiz);
  AtMost(findings, ProfileRule::Tiles, across * down, 1);
}

void CheckComponents(Findings& findings, const ImageAndTileSize& size) {
  Equal(findings, ProfileRule::Components, size.Csiz, 3);
  constexpr ui8_t twelve_bits = 11;
  for (ui16_t i = 0; i < size.Csiz; ++i) {
    const ui8_t depth = size.PictureComponentSizing[i].Ssiz;
    if (depth != twelve_bits) findings.push_back({ProfileRule::Depth, ui64_t{depth} + 1, 12, i});
  }
  for (ui16_t i = 0; i < size.Csiz; ++i) {
    const ComponentSizing& component = size.PictureComponentSizing[i];
    AtMost(findings, ProfileRule::Subsampling, std::max(component.XRsiz, component.YRsiz), 1, i);
  }
}

// The rules that a COC can break for its component as COD does for all.
void CheckStyle(Findings& findings, const CodingStyle& style, const Profile& profile, ui16_t component) {
  if (style.Levels < profile.MinLevels || style.Levels > profile.MaxLevels)
    findings.push_back({ProfileRule::Levels, style.Levels, profile.MaxLevels, component});
  Equal(findings, ProfileRule::Transform, static_cast<ui8_t>(style.Transform),
        static_cast<ui8_t>(WaveletTransform::Irreversible97), component);
  const auto both_sides = [](ui64_t width, ui64_t height) { return width << 16 | height; };
  Equal(findings, ProfileRule::CodeBlocks, both_sides(style.CodeBlockWidth, style.CodeBlockHeight), both_sides(32, 32),
        component);
  Equal(findings, ProfileRule::CodeBlockStyle, style.CodeBlockStyle, 0, component);

  constexpr ui8_t largest = 0xff;  // what holds where none are given
  const ui8_t lowest = style.Precincts.empty() ? largest : style.Precincts.front();
  Equal(findings, ProfileRule::Precincts, lowest, SmallPrecinct, component);
  for (size_t i = 1; i < style.Precincts.size(); ++i) {
    if (style.Precincts[i] == LargePrecinct) continue;
    findings.push_back({ProfileRule::Precincts, style.Precincts[i], LargePrecinct, component});
    break;
  }
}

void CheckCoding(Findings& findings, const CodestreamHeaders& headers, const Profile& profile) {
  CheckStyle(findings, headers.Coding, profile, 0);
  for (const auto& coding : headers.CodingOf) {
    CheckStyle(findings, coding.Value, profile, coding.Component);
    if (coding.Value.Levels >= profile.MinLevels && coding.Value.Levels <= profile.MaxLevels)
      Equal(findings, ProfileRule::Levels, coding.Value.Levels, headers.Coding.Levels, coding.Component);
  }
  Equal(findings, ProfileRule::ComponentTransform, headers.Coding.UsesComponentTransform ? 1 : 0, 1);
  Equal(findings, ProfileRule::Layers, headers.Coding.Layers, 1);
  Equal(findings, ProfileRule::Progression, static_cast<ui8_t>(headers.Coding.Progression),
        static_cast<ui8_t>(ProgressionOrder::CPRL));
  Equal(findings, ProfileRule::GuardBits, headers.Quant.GuardBits, profile.GuardBits);
  for (const auto& quant : headers.QuantOf)
    Equal(findings, ProfileRule::GuardBits, quant.Value.GuardBits, profile.GuardBits, quant.Component);
}

// For 4K: resolutions up to the last but one, then the last, component by component.
void CheckProgressionChanges(Findings& findings, const CodestreamHeaders& headers, const Profile& profile) {
  const auto& changes = headers.ProgressionChanges;
  const ui8_t levels = headers.Coding.Levels;
  const auto expected = [&](ui8_t first, ui8_t end) {
    return ProgressionChange{first, 0, 1, end, 3, ProgressionOrder::CPRL};
  };
  bool proper = changes.size() == profile.ProgressionChanges;
  if (proper && !changes.empty()) {
    proper = changes[0] == expected(0, levels) && changes[1] == expected(levels, static_cast<ui8_t>(levels + 1));
  }
  if (!proper) findings.push_back({ProfileRule::ProgressionChange, changes.size(), profile.ProgressionChanges, 0});
}

void CheckTileParts(Findings& findings, const CodestreamHeaders& headers, const Profile& profile) {
  const bool is_whole = headers.End == CodestreamEnd::Proper || headers.End == CodestreamEnd::DataAfterEOC;
  if (is_whole) Equal(findings, ProfileRule::TileParts, headers.TileParts.size(), profile.TileParts);
  const auto& lengths = headers.TilePartLengths;
  const auto same = [](const TilePart& part, ui32_t length) { return part.Length == length; };
  const bool agree =
      !is_whole || std::equal(headers.TileParts.begin(), headers.TileParts.end(), lengths.begin(), lengths.end(), same);
  if (lengths.empty() || !agree)
    findings.push_back({ProfileRule::TilePartLengths, lengths.size(), headers.TileParts.size(), 0});
}

void CheckMarkers(Findings& findings, const CodestreamHeaders& headers) {
  using enum Marker;
  constexpr std::array forbidden = {RGN, PPM, PPT, PLM, CRG};
  constexpr std::array main_only = {COD, COC, QCD, QCC, POC};
  const auto is_in = [](const auto& list, Marker marker) {
    return std::find(list.begin(), list.end(), marker) != list.end();
  };
  const auto check = [&](const std::vector<Marker>& found, const auto& list, ProfileRule rule) {
    for (const Marker marker : found)
      if (is_in(list, marker)) findings.push_back({rule, static_cast<ui16_t>(marker), 0, 0});
  };
  check(headers.MainMarkers, forbidden, ProfileRule::ForbiddenMarker);
  check(headers.TilePartMarkers, forbidden, ProfileRule::ForbiddenMarker);
  check(headers.TilePartMarkers, main_only, ProfileRule::TilePartMarker);
}

void CheckBytes(Findings& findings, const CodestreamHeaders& headers, const SizeLimits& limits) {
  if (limits.Codestream == 0) return;
  AtMost(findings, ProfileRule::CodestreamBytes, headers.Length, limits.Codestream);
  ui16_t component = 0;
  for (const JP2K::ComponentBytes& bytes : BytesOfComponents(headers))
    AtMost(findings, ProfileRule::ComponentBytes, bytes.Lower, limits.Component, component++);
}

// What EncodeString says: %llu is what was found, then what is allowed.
struct Words {
  ProfileRule Rule;
  const char* Format;
  bool OfComponent = false;
};

constexpr Words Texts[] = {
    {ProfileRule::Profile, "profile (Rsiz) %llu, not %llu"},
    {ProfileRule::HighThroughput, "high-throughput JPEG 2000 (HTJ2K)"},
    {ProfileRule::Width, "width %llu, more than %llu"},
    {ProfileRule::Height, "height %llu, more than %llu"},
    {ProfileRule::Origin, "offset %llu of image or tiles, not %llu"},
    {ProfileRule::Tiles, "%llu tiles, not %llu"},
    {ProfileRule::Components, "%llu components, not %llu"},
    {ProfileRule::Depth, "%llu bits, not %llu", true},
    {ProfileRule::Subsampling, "subsampled by %llu", true},
    {ProfileRule::Levels, "%llu wavelet levels, not %llu", true},
    {ProfileRule::Transform, "another wavelet transform than 9-7", true},
    {ProfileRule::ComponentTransform, "no component transform"},
    {ProfileRule::CodeBlocks, "code-blocks other than 32 x 32", true},
    {ProfileRule::CodeBlockStyle, "code-block style %llu, not %llu", true},
    {ProfileRule::Precincts, "precincts other than 128 and 256", true},
    {ProfileRule::Layers, "%llu quality layers, not %llu"},
    {ProfileRule::Progression, "another progression than CPRL"},
    {ProfileRule::ProgressionChange, "progression order changes other than those of the profile"},
    {ProfileRule::TileParts, "%llu tile-parts, not %llu"},
    {ProfileRule::TilePartLengths, "tile-part lengths (TLM) missing or wrong"},
    {ProfileRule::GuardBits, "%llu guard bits, not %llu", true},
    {ProfileRule::ForbiddenMarker, "marker %04llx, which has no place in a cinema codestream"},
    {ProfileRule::TilePartMarker, "marker %04llx in a tile-part header"},
    {ProfileRule::End, "cut off, or the end-of-codestream marker is not its end"},
    {ProfileRule::CodestreamBytes, "%llu bytes, more than %llu"},
    {ProfileRule::ComponentBytes, "%llu bytes, more than %llu", true},
};

constexpr bool FollowsEnumeration() {
  for (size_t i = 0; i < std::size(Texts); ++i)
    if (Texts[i].Rule != static_cast<ProfileRule>(i)) return false;
  return std::size(Texts) == static_cast<size_t>(ProfileRule::ComponentBytes) + 1;
}
static_assert(FollowsEnumeration());

}  // namespace

SizeLimits SizeLimitsAt(const Rational& images_per_second) {
  if (images_per_second.Numerator <= 0 || images_per_second.Denominator <= 0) return {};
  const auto bytes = [&](ui64_t bit_rate) {
    return bit_rate * static_cast<ui64_t>(images_per_second.Denominator) /
           (8 * static_cast<ui64_t>(images_per_second.Numerator));
  };
  return {bytes(CodestreamBitRate), bytes(ComponentBitRate)};
}

std::vector<ProfileFinding> CheckCinemaProfile(const CodestreamHeaders& headers, const Rational& images_per_second) {
  const Profile& profile = ProfileOf(headers.Size);
  Findings findings;
  Equal(findings, ProfileRule::Profile, headers.Size.Rsiz, profile.Rsiz);
  if (headers.HasHighThroughput) findings.push_back({ProfileRule::HighThroughput, 1, 0, 0});
  CheckSize(findings, headers.Size, profile);
  CheckComponents(findings, headers.Size);
  CheckCoding(findings, headers, profile);
  CheckProgressionChanges(findings, headers, profile);
  CheckTileParts(findings, headers, profile);
  CheckMarkers(findings, headers);
  if (headers.End != CodestreamEnd::Proper)
    findings.push_back({ProfileRule::End, static_cast<ui8_t>(headers.End), 0, 0});
  CheckBytes(findings, headers, SizeLimitsAt(images_per_second));
  const auto by_rule = [](const ProfileFinding& a, const ProfileFinding& b) { return a.Rule < b.Rule; };
  std::stable_sort(findings.begin(), findings.end(), by_rule);
  return findings;
}

std::string ProfileFinding::EncodeString() const {
  FERRO_ASSERT(static_cast<size_t>(Rule) < std::size(Texts));
  const Words& words = Texts[static_cast<size_t>(Rule)];
  char text[96];
  if (Rule == ProfileRule::Depth && Found > SignedDepth) {
    std::snprintf(text, sizeof text, "%llu bits signed, not %llu unsigned",
                  static_cast<unsigned long long>(Found - SignedDepth), static_cast<unsigned long long>(Allowed));
  } else {
    std::snprintf(text, sizeof text, words.Format, static_cast<unsigned long long>(Found),
                  static_cast<unsigned long long>(Allowed));
  }
  return (words.OfComponent ? "component " + std::to_string(Component) + ": " : std::string()) + text;
}

}  // namespace QUIRE::JP2K
