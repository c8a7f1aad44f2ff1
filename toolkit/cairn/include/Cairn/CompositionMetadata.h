// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/CompositionAssets.h>
#include <Cairn/Types.h>

#include <QUIRE/Rational.h>

#include <list>
#include <string>
#include <utility>

namespace Cairn {

/// A version of a composition's content (ST 429-7, 6.9).
struct ContentVersion {
  std::string ID;  ///< any URI, often a urn:uuid:
  std::string LabelText;

  friend bool operator==(const ContentVersion&, const ContentVersion&) = default;
};

/// One group of a composition's extension metadata.
struct ExtensionMetadata {
  std::string Scope;
  std::string Name;
  std::list<std::pair<std::string, std::string>> PropertyList;  ///< name, value

  friend bool operator==(const ExtensionMetadata&, const ExtensionMetadata&) = default;
};

/// Width and height in pixels; 0 when unknown.
struct PictureArea {
  ui32_t Width = 0;
  ui32_t Height = 0;

  friend bool operator==(const PictureArea&, const PictureArea&) = default;
};

/// Composition metadata (ST 429-16:2014). Its identifier names no file; without one the composition has no metadata.
/// Empty texts are absent elements.
struct CompositionMetadata : GenericAsset {
  std::string FullContentTitle;
  std::string FullContentTitleLanguage;  ///< tag; empty: the standard's default, "en"
  std::string ReleaseTerritory;
  std::string ReleaseTerritoryScope;  ///< empty: the standard's default
  bool HasVersionNumber = false;
  ui32_t VersionNumber = 1;
  std::string VersionStatus;  ///< "final", "temp", "pre"; empty: "final"
  std::string Chain;
  std::string Distributor;
  std::string Facility;
  std::list<ContentVersion> AlternateContentVersionList;
  std::string Luminance;       ///< decimal text
  std::string LuminanceUnits;  ///< "foot-lambert" or "candela-per-square-metre"
  std::string MainSoundConfiguration;
  QUIRE::Rational MainSoundSampleRate;  ///< hertz
  PictureArea MainPictureStoredArea;
  PictureArea MainPictureActiveArea;
  std::list<std::string> MainSubtitleLanguageList;
  std::list<ExtensionMetadata> ExtensionMetadataList;

  friend bool operator==(const CompositionMetadata&, const CompositionMetadata&) = default;
};

}  // namespace Cairn
