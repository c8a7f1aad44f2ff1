// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Inputs.h"

#include <Cairn/AssetRecord.h>
#include <Cairn/CompositionAssets.h>
#include <Cairn/DCPFormat.h>
#include <Cairn/FileType.h>
#include <QUIRE/Rational.h>

#include <optional>
#include <string>
#include <vector>

// What a show's documents say, composition by composition, whether or not it can be played. The engine tells what plays;
// this tells what was asked for, also where assets are missing.

enum class AssetKind { Picture, Sound, OnScreenText, OffScreenText, AuxData };

/// "picture", "sound", "subtitle", "closed caption", "auxiliary data".
[[nodiscard]] const char* AssetKindName(AssetKind kind);

struct OutlineAsset {
  AssetKind Kind = AssetKind::Picture;
  Cairn::GenericAsset Asset;  ///< as the composition has it
  std::string Language;
  std::optional<Cairn::AssetRecord> Found;  ///< no value: no store has it
};

struct OutlineReel {
  Cairn::UUID ID;
  Ferro::ui32_t Duration = 0;        ///< edit units of the picture
  std::vector<OutlineAsset> Assets;  ///< picture, sound, on-screen text, off-screen texts, auxiliary data

  /// The first asset of a kind; null where there is none.
  [[nodiscard]] const OutlineAsset* First(AssetKind kind) const;
};

struct OutlineComposition {
  Cairn::UUID ID;
  std::string Title;
  std::string Path;        ///< of the document; empty when it could not be found
  std::string Problem;     ///< why there are no reels; empty when all is well
  bool IsMissing = false;  ///< no store has it
  Cairn::DCPFormat_t Format = Cairn::DFT_NONE;
  bool Stereoscopic = false;
  QUIRE::Rational EditRate;    ///< of the first reel's picture
  Ferro::ui32_t Start = 0;     ///< edit units from the start of the show
  Ferro::ui32_t Duration = 0;  ///< edit units
  std::vector<OutlineReel> Reels;
};

struct OutlineMarker {
  std::string Label;
  std::string Scope;
  Ferro::ui32_t Position = 0;  ///< edit units from the start of the show
};

/// A show, its nested show playlists expanded.
class ShowOutline {
 public:
  explicit ShowOutline(const Inputs& inputs);

  [[nodiscard]] const std::vector<OutlineComposition>& Compositions() const { return m_Compositions; }
  [[nodiscard]] const std::vector<OutlineMarker>& Markers() const { return m_Markers; }
  /// What is wrong with the show playlists themselves, a sentence each.
  [[nodiscard]] const std::vector<std::string>& Problems() const { return m_Problems; }
  /// Edit units.
  [[nodiscard]] Ferro::ui32_t Duration() const { return m_Duration; }

 private:
  void AddShow(const Candidate& show, std::vector<std::string>& paths);
  void AddNested(const std::string& uri, std::vector<std::string>& paths);
  /// Returns the composition's duration, edit units.
  Ferro::ui32_t AddComposition(const Cairn::UUID& id, const std::string& path);
  [[nodiscard]] OutlineAsset Resolve(AssetKind kind, const Cairn::GenericAsset& asset,
                                     const std::string& language) const;

  const Inputs& m_Inputs;
  std::vector<OutlineComposition> m_Compositions;
  std::vector<OutlineMarker> m_Markers;
  std::vector<std::string> m_Problems;
  Ferro::ui32_t m_Duration = 0;
  unsigned m_ShowCount = 0;
};
