// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "../support/TrackFileMaker.h"

#include "text/TextUse.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace testsupport {

/// A sound text with its font and a picture, and its use in a reel of ten seconds, to be changed at one place.
class SampleText {
 public:
  enum class Kind { SMPTE, Interop };

  explicit SampleText(Kind kind = Kind::SMPTE);

  /// Replaces the first `from` of the document, or all.
  SampleText& Edit(const std::string& from, const std::string& to);
  SampleText& EditAll(const std::string& from, const std::string& to);
  /// The same of the composition's asset, and of its picture.
  SampleText& EditAsset(const std::string& from, const std::string& to);
  /// Replaces all texts and pictures of the document.
  SampleText& Subtitles(const std::string& subtitles);
  /// Makes it a closed caption.
  SampleText& AsCaption();

  Kind Flavour;
  std::string Xml;
  std::string Asset;                 ///< elements of the reel
  std::optional<Bytes> Font, Image;  ///< no value: there is none
  std::optional<TrackFileKey> Key;
  Assay::UUID FileID;      ///< of the track file
  Assay::UUID ResourceID;  ///< of the document, by the track file's header
  QUIRE::Rational FileRate = {24, 1};
  std::function<void(const std::string& path)> Damage;  ///< what happens to the track file after its header was read
};

/// How the samples are looked at.
struct TextCheck {
  Assay::Depth Depth = Assay::Depth::Frames;
  const Sigil::KeyRing* Keys = nullptr;
  std::string Title = "SoundFilm_FTR-1_F_EN-FR_US-13_51_2K_ST_20240301_FAC_SMPTE_OV";
  bool IsInterop = false;  ///< the composition
};

/// What is found in a composition with one of the samples in each reel.
[[nodiscard]] Assay::FindingList FindIn(const std::vector<SampleText>& reels, const TextCheck& check);
/// The same in one reel of a composition of its flavour, as names.
[[nodiscard]] std::vector<std::string> NamesIn(const SampleText& text, Assay::Depth depth = Assay::Depth::Frames);

}  // namespace testsupport
