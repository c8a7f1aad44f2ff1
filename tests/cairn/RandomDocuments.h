// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/AssetMap.h>
#include <Cairn/CompositionPlaylist.h>
#include <Cairn/DCSubtitle.h>
#include <Cairn/PackingList.h>

#include <random>

namespace CairnTest {

/// Makes document models of all shapes from a seed; the same seed gives the same documents. Every model can be written
/// in the format it carries, and is as it would be read back.
class RandomDocuments {
 public:
  explicit RandomDocuments(unsigned seed) : m_Random(seed) {}

  Cairn::CompositionPlaylist Composition();
  Cairn::PackingList PackingList();
  Cairn::AssetMap AssetMap();
  Cairn::VolumeIndex VolumeIndex();
  Cairn::DCSubtitle Subtitle();

 private:
  // From 0 to `most`.
  size_t UpTo(size_t most) { return std::uniform_int_distribution<size_t>(0, most)(m_Random); }
  bool Chance(size_t one_in) { return UpTo(one_in - 1) == 0; }
  Cairn::DCPFormat_t Format() { return Chance(2) ? Cairn::DFT_Interop : Cairn::DFT_DCI_SMPTE; }
  Cairn::ui32_t Number();
  std::string Text();         // any characters
  std::string TrimmedText();  // not empty, no blanks at its ends
  std::string Word();
  std::string OptionalText() { return Chance(2) ? Text() : std::string(); }
  std::string Language();
  std::string Date();
  Cairn::UUID ID();
  Cairn::UUID OptionalID() { return Chance(2) ? ID() : Cairn::UUID(); }
  Cairn::SHA1 Digest();
  QUIRE::Rational Rate();
  QUIRE::Rational Ratio(bool is_interop);

  void FillAsset(Cairn::GenericAsset& asset, bool is_track_file);
  Cairn::PictureAsset Picture(bool is_interop);
  Cairn::TimedTextAsset TimedText(bool is_interop, bool is_main);
  Cairn::MarkerAsset Markers();
  Cairn::CompositionMetadata Metadata();
  Cairn::Reel Reel(bool is_interop);

  std::mt19937 m_Random;
};

}  // namespace CairnTest
