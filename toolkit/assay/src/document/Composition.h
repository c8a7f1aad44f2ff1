// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "DocumentFile.h"
#include "Package.h"

namespace Assay {

/// What an asset of a reel is for.
enum class AssetRole : ui8_t { Picture, Sound, Subtitle, Caption, AuxData, Markers, Metadata, Other };

/// An asset of a reel, as the composition has it. What cannot be read has no value.
struct ReelAsset {
  const Node* Element = nullptr;
  AssetRole Role = AssetRole::Other;
  bool IsStereoscopic = false;
  std::optional<UUID> ID;
  std::optional<QUIRE::Rational> EditRate;
  std::optional<ui64_t> Intrinsic;
  std::optional<ui64_t> Entry;     ///< as written
  std::optional<ui64_t> Duration;  ///< what is played: as written, else the rest of the file
  std::optional<UUID> KeyID;
  std::string Hash;
  std::string Language;

  [[nodiscard]] bool IsText() const { return Role == AssetRole::Subtitle || Role == AssetRole::Caption; }
  [[nodiscard]] bool IsFile() const {
    return Role != AssetRole::Markers && Role != AssetRole::Metadata && Role != AssetRole::Other;
  }
};

struct Reel {
  const Node* Element = nullptr;
  ui32_t Number = 0;  ///< from 1
  std::optional<UUID> ID;
  std::vector<ReelAsset> Assets;

  /// The first asset of that role; null where there is none.
  [[nodiscard]] const ReelAsset* Find(AssetRole role) const;
  [[nodiscard]] size_t Count(AssetRole role) const;
};

struct Composition {
  const DocumentFile* Document = nullptr;
  std::optional<UUID> ID;
  std::string Title;
  std::vector<Assay::Reel> Reels;

  [[nodiscard]] bool IsInterop() const { return Document->IsInterop(); }
  [[nodiscard]] const Node& Root() const { return *Document->Root(); }
  [[nodiscard]] bool Has(AssetRole role) const;
  [[nodiscard]] bool IsStereoscopic() const;
  /// The picture of the first reel; null where there is none.
  [[nodiscard]] const ReelAsset* Picture() const;
  [[nodiscard]] FindingPlace At(const Node* node, const Assay::Reel* reel = nullptr,
                                const ReelAsset* asset = nullptr) const;
};

/// Reads a composition from its document, which has a root.
[[nodiscard]] Composition ReadComposition(const DocumentFile& document);

/// Whether two rates are the same, reduced or not.
[[nodiscard]] bool AreEqual(const QUIRE::Rational& first, const QUIRE::Rational& second);

/// What a composition is looked at with.
struct CompositionContext {
  const Assay::Package* Package = nullptr;
  i64_t Now = 0;                                 ///< seconds since 1970-01-01T00:00:00Z
  const std::set<std::string>* Known = nullptr;  ///< identifiers of all files that are at hand
};

/// cpl-*, reel-*, marker-*, meta-*, title-*, as far as documents tell.
void FindInComposition(const Composition& composition, const CompositionContext& context, FindingList& findings);

// What makes it up.
void FindInReels(const Composition& composition, const CompositionContext& context, FindingList& findings);
void FindInMarkers(const Composition& composition, FindingList& findings);
void FindInMetadata(const Composition& composition, FindingList& findings);
void FindInTitle(const Composition& composition, const CompositionContext& context, FindingList& findings);

}  // namespace Assay
