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

namespace Tool {

// What a show's documents say, composition by composition, whether or not it can be played. The engine tells what plays;
// this tells what was asked for, also where assets are missing.

enum class AssetKind { Picture, Sound, OnScreenText, OffScreenText, AuxData };

/// "picture", "sound", "subtitle", "closed caption", "auxiliary data".
[[nodiscard]] const char* AssetKindName(AssetKind kind);

struct OutlineAsset {
  AssetKind Kind = AssetKind::Picture;
  Cairn::GenericAsset Asset;  ///< as the composition has it
  std::string Language;
  std::string DataType;                     ///< auxiliary data: the coding's label, as written
  std::optional<Cairn::AssetRecord> Found;  ///< no value: no store has it
};

struct OutlineReel {
  Cairn::UUID ID;
  Ferro::ui32_t Duration = 0;        ///< edit units of the picture
  std::vector<OutlineAsset> Assets;  ///< picture, sound, on-screen text, off-screen texts, auxiliary data
  Cairn::MarkerAsset Markers;        ///< the composition's own

  /// The first asset of a kind; null where there is none.
  [[nodiscard]] const OutlineAsset* First(AssetKind kind) const;
};

/// Why a composition has no reels, or not all.
enum class CompositionProblem {
  None,
  Missing,      ///< no store has it
  FileMissing,  ///< a package lists it, and its file is not there
  CannotBeRead,
  HasNoReels,
  TooLong,  ///< its edit units cannot be counted
};

struct OutlineComposition {
  Cairn::UUID ID;
  std::string Title;  ///< the show's annotation of it where it cannot be read
  std::string Kind;   ///< of the content: "feature"; empty when not known
  std::string Path;   ///< of the document; empty when it could not be found
  CompositionProblem Problem = CompositionProblem::None;
  std::string Reason;                       ///< why it cannot be read, as DocumentFault
  std::optional<Cairn::AssetRecord> Found;  ///< no value: no store has it
  Cairn::DCPFormat_t Format = Cairn::DFT_NONE;
  bool Stereoscopic = false;
  QUIRE::Rational EditRate;    ///< of the first reel's picture; as the show says where that cannot be read
  Ferro::ui32_t Start = 0;     ///< edit units from the start of the show
  Ferro::ui32_t Duration = 0;  ///< edit units; as the show says where the composition cannot be read
  std::vector<OutlineReel> Reels;
};

/// Seconds of the composition; at 24 edit units in a second where its rate is not known.
[[nodiscard]] double SecondsOf(const OutlineComposition& composition);

/// A show playlist, and what of the show it makes up.
struct OutlineShow {
  Cairn::UUID ID;
  std::string Title;
  std::string Path;
  unsigned Depth = 0;          ///< 0: it is in no other one
  Ferro::ui32_t Start = 0;     ///< edit units from the start of the show
  Ferro::ui32_t Duration = 0;  ///< edit units
  size_t FirstComposition = 0;
  size_t CompositionCount = 0;
};

/// What can be wrong with the show playlists themselves.
enum class OutlineProblemKind { CannotBeRead, ContainsItself, TooLong };

struct OutlineProblem {
  OutlineProblemKind Kind = OutlineProblemKind::CannotBeRead;
  std::string Path;    ///< of the show playlist
  std::string Reason;  ///< why it cannot be read, as DocumentFault
  Cairn::UUID ID;      ///< of the composition from which on the show cannot be counted
};

struct OutlineMarker {
  std::string Label;
  std::string Scope;
  Ferro::ui32_t Position = 0;  ///< edit units from the start of the show
  size_t Composition = 0;      ///< that holds the position, or starts there; Compositions().size() at the end
};

/// A show, its nested show playlists expanded.
class ShowOutline {
 public:
  explicit ShowOutline(const Inputs& inputs);

  [[nodiscard]] const std::vector<OutlineComposition>& Compositions() const { return m_Compositions; }
  /// In the order in which they start; a show playlist stands before those that it contains.
  [[nodiscard]] const std::vector<OutlineShow>& Shows() const { return m_Shows; }
  [[nodiscard]] const std::vector<OutlineMarker>& Markers() const { return m_Markers; }
  [[nodiscard]] const std::vector<OutlineProblem>& Problems() const { return m_Problems; }
  /// The URIs of nested show playlists that no store has.
  [[nodiscard]] const std::vector<std::string>& MissingShows() const { return m_MissingShows; }
  /// Where the assets were looked for.
  [[nodiscard]] const Cairn::AssetStore& Store() const { return m_Inputs.Store(); }
  /// Edit units.
  [[nodiscard]] Ferro::ui32_t Duration() const { return m_Duration; }

 private:
  /// What a show says of a composition.
  struct ShowEntry;

  void AddShow(const Candidate& show, std::vector<std::string>& paths);
  void AddNested(const std::string& uri, std::vector<std::string>& paths);
  /// Adds a composition: from the document at `path`, or as the show has it when that is empty.
  void AddComposition(const Cairn::UUID& id, const std::string& path, const ShowEntry* entry);
  void AddReel(const Cairn::Reel& reel, OutlineComposition& composition) const;
  [[nodiscard]] OutlineAsset Resolve(AssetKind kind, const Cairn::GenericAsset& asset,
                                     const std::string& language) const;

  const Inputs& m_Inputs;
  std::vector<OutlineComposition> m_Compositions;
  std::vector<OutlineShow> m_Shows;
  std::vector<OutlineMarker> m_Markers;
  std::vector<OutlineProblem> m_Problems;
  std::vector<std::string> m_MissingShows;
  Ferro::ui32_t m_Duration = 0;
  unsigned m_ShowCount = 0;
};

}  // namespace Tool
