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

/// The ratio in a ScreenAspectRatio: of two whole numbers, or a decimal. No value for another form, for 0 and for numbers
/// beyond a million.
[[nodiscard]] std::optional<QUIRE::Rational> AspectOf(const Node* node);
/// "24 1"
[[nodiscard]] std::string EditRateText(const QUIRE::Rational& rate);
/// Whether two rates are the same, reduced or not.
[[nodiscard]] bool AreEqual(const QUIRE::Rational& first, const QUIRE::Rational& second);

/// A reel lasts as long as its picture, or what else of it has a length first. Seconds; 0 where nothing has one.
[[nodiscard]] double SecondsOf(const Reel& reel);

/// What a picture's file tells of it.
struct PictureFormat {
  ui32_t Width = 0;   ///< pixels, as stored
  ui32_t Height = 0;  ///< the same
  QUIRE::Rational EditRate;
  bool IsStereoscopic = false;

  [[nodiscard]] bool Is4K() const { return Width > 2048 || Height > 1080; }
  friend bool operator==(const PictureFormat&, const PictureFormat&) = default;
};

/// What a composition is looked at with.
struct CompositionContext {
  const Assay::Package* Package = nullptr;
  i64_t Now = 0;                          ///< seconds since 1970-01-01T00:00:00Z
  const std::set<UUID>* Known = nullptr;  ///< all files that are at hand; null: that cannot be told
  std::optional<PictureFormat> Picture;   ///< of the first picture whose file was opened
  std::optional<bool> HasImmersiveSound;  ///< as files tell; no value where none was opened
};

/// cpl-*, reel-*, marker-*, meta-*, title-*, as far as documents tell.
void FindInComposition(const Composition& composition, const CompositionContext& context, FindingList& findings);

// What makes it up.
void FindInReels(const Composition& composition, const CompositionContext& context, FindingList& findings);
void FindInMarkers(const Composition& composition, FindingList& findings);
void FindInMetadata(const Composition& composition, FindingList& findings);
void FindInTitle(const Composition& composition, const CompositionContext& context, FindingList& findings);

}  // namespace Assay
