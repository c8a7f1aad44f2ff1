// SPDX-License-Identifier: BSD-3-Clause
#include "ProfileMeaning.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace Assay {

using QUIRE::JP2K::CodestreamEnd;
using QUIRE::JP2K::CodestreamHeaders;
using QUIRE::JP2K::Marker;
using QUIRE::JP2K::ProfileFinding;
using QUIRE::JP2K::ProfileRule;

namespace {

/// What a rule is as a finding, and how its values are told: %llu is the value.
struct Meaning {
  ProfileRule Rule;
  FindingID ID;
  FindingClass Class;
  const char* Expected;
  const char* Found;
};

constexpr FindingClass Error = FindingClass::Error;
constexpr FindingClass Warning = FindingClass::Warning;

constexpr Meaning Meanings[] = {
    {ProfileRule::Profile, FindingID::J2KProfile, Error, "profile %llu", "profile %llu"},
    {ProfileRule::HighThroughput, FindingID::J2KProfile, Error, "no HTJ2K", "HTJ2K"},
    {ProfileRule::Width, FindingID::J2KProfile, Error, "width up to %llu", "width %llu"},
    {ProfileRule::Height, FindingID::J2KProfile, Error, "height up to %llu", "height %llu"},
    {ProfileRule::Origin, FindingID::J2KProfile, Error, "offset %llu", "offset %llu"},
    {ProfileRule::Tiles, FindingID::J2KProfile, Error, "%llu tile", "%llu tiles"},
    {ProfileRule::Components, FindingID::J2KProfile, Error, "%llu components", "%llu components"},
    {ProfileRule::Depth, FindingID::J2KProfile, Error, "%llu bits unsigned", "%llu bits"},
    {ProfileRule::Subsampling, FindingID::J2KProfile, Error, "no subsampling", "subsampled by %llu"},
    {ProfileRule::Levels, FindingID::J2KLevels, Error, "up to %llu levels", "%llu levels"},
    {ProfileRule::Transform, FindingID::J2KLevels, Error, "transform 9-7", "transform 5-3"},
    {ProfileRule::ComponentTransform, FindingID::J2KLayers, Warning, "component transform", "none"},
    {ProfileRule::CodeBlocks, FindingID::J2KBlocks, Error, "code blocks 32 x 32", ""},
    {ProfileRule::CodeBlockStyle, FindingID::J2KBlocks, Error, "block style %llu", "block style %llu"},
    {ProfileRule::Precincts, FindingID::J2KBlocks, Error, "precincts 128 x 128, then 256 x 256", ""},
    {ProfileRule::Layers, FindingID::J2KLayers, Error, "%llu layer", "%llu layers"},
    {ProfileRule::Progression, FindingID::J2KProgression, Error, "CPRL", ""},
    {ProfileRule::ProgressionChange, FindingID::J2KProgression, Warning, "POC of %llu", "POC of %llu"},
    {ProfileRule::TileParts, FindingID::J2KTileParts, Warning, "%llu tile-parts", "%llu tile-parts"},
    {ProfileRule::TilePartLengths, FindingID::J2KTileParts, Warning, "TLM", "no TLM"},
    {ProfileRule::GuardBits, FindingID::J2KGuardBits, FindingClass::Profile, "%llu guard bits", "%llu guard bits"},
    {ProfileRule::ForbiddenMarker, FindingID::J2KMarker, Warning, "", ""},
    {ProfileRule::TilePartMarker, FindingID::J2KMarker, Warning, "", ""},
    {ProfileRule::End, FindingID::J2KMarker, Error, "EOC at the end", ""},
    {ProfileRule::CodestreamBytes, FindingID::J2KSizeMax, Error, "up to %llu bytes", "%llu bytes"},
    {ProfileRule::ComponentBytes, FindingID::J2KSizeComponent, Warning, "up to %llu bytes", "%llu bytes"},
};

constexpr bool FollowsEnumeration() {
  for (size_t i = 0; i < std::size(Meanings); ++i)
    if (Meanings[i].Rule != static_cast<ProfileRule>(i)) return false;
  return std::size(Meanings) == static_cast<size_t>(ProfileRule::ComponentBytes) + 1;
}
static_assert(FollowsEnumeration());

std::string Formatted(const char* format, ui64_t value) {
  char text[64];
  std::snprintf(text, sizeof text, format, static_cast<unsigned long long>(value));
  return text;
}

std::string MarkerName(ui64_t marker) {
  switch (static_cast<Marker>(marker)) {
    case Marker::COD:
      return "COD";
    case Marker::COC:
      return "COC";
    case Marker::QCD:
      return "QCD";
    case Marker::QCC:
      return "QCC";
    case Marker::POC:
      return "POC";
    case Marker::RGN:
      return "RGN";
    case Marker::PPM:
      return "PPM";
    case Marker::PPT:
      return "PPT";
    case Marker::PLM:
      return "PLM";
    case Marker::CRG:
      return "CRG";
    default:
      return Formatted("marker %04llx", marker);
  }
}

const char* EndName(ui64_t end) {
  switch (static_cast<CodestreamEnd>(end)) {
    case CodestreamEnd::DataAfterEOC:
      return "data after EOC";
    case CodestreamEnd::NoEOC:
      return "no EOC";
    case CodestreamEnd::Cut:
      return "cut off";
    default:
      return "malformed tile-part";
  }
}

std::string FoundText(const ProfileFinding& finding, const char* format) {
  constexpr std::array orders = {"LRCP", "RLCP", "RPCL", "PCRL", "CPRL"};
  constexpr ui64_t signed_depth = 128;  // as ProfileFinding tells signed components
  switch (finding.Rule) {
    case ProfileRule::Depth:
      return finding.Found > signed_depth ? Formatted("%llu bits signed", finding.Found - signed_depth)
                                          : Formatted(format, finding.Found);
    case ProfileRule::CodeBlocks:
      return "code blocks " + std::to_string(finding.Found >> 16) + " x " + std::to_string(finding.Found & 0xffff);
    case ProfileRule::Precincts:
      return "precincts " + std::to_string(1U << (finding.Found & 15)) + " x " +
             std::to_string(1U << (finding.Found >> 4 & 15));
    case ProfileRule::Progression:
      return finding.Found < orders.size() ? orders[finding.Found] : Formatted("order %llu", finding.Found);
    case ProfileRule::ForbiddenMarker:
      return MarkerName(finding.Found);
    case ProfileRule::TilePartMarker:
      return MarkerName(finding.Found) + " in a tile-part";
    case ProfileRule::End:
      return EndName(finding.Found);
    default:
      return Formatted(format, finding.Found);
  }
}

}  // namespace

ProfileMeaning MeaningOf(const ProfileFinding& finding, const CodestreamHeaders& headers) {
  const Meaning& meaning = Meanings[static_cast<size_t>(finding.Rule)];
  ProfileMeaning told{meaning.ID, meaning.Class, Formatted(meaning.Expected, finding.Allowed),
                      FoundText(finding, meaning.Found)};
  switch (finding.Rule) {
    case ProfileRule::Levels:
      if (finding.Component > 0 && finding.Allowed == headers.Coding.Levels)
        told.Expected = Formatted("%llu levels of all components", finding.Allowed);
      else if (finding.Found < finding.Allowed)
        told.Expected = Formatted("1 to %llu levels", finding.Allowed);
      break;
    case ProfileRule::ProgressionChange:
      if (finding.Allowed == 0) told = {FindingID::J2KMarker, Warning, "", "POC"};
      if (finding.Allowed != 0 && finding.Found == finding.Allowed) told.Found = "POC of another order";
      if (finding.Found == 0) told.Found = "no POC";
      break;
    case ProfileRule::TilePartLengths:
      if (finding.Found > 0) told = {FindingID::J2KMarker, Error, "lengths as in TLM", "other lengths"};
      break;
    default:
      break;
  }
  return told;
}

}  // namespace Assay
