// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>
#include <Strata/Types.h>

#include <Cairn/FileType.h>
#include <Ferro/IArchive.h>
#include <QUIRE/Rational.h>

#include <cstdio>
#include <string>

namespace Strata {

/// One composition of the timeline, and how its essence is coded.
///
/// Archive form, in order: ID 16 bytes, Title string, EditRate 8 bytes, then CurrentReel, TotalReels, Duration,
/// ImageFormat, ImageWidth, ImageHeight and SoundFormat, u32 each; 56 bytes and the title's. ArchiveLength states
/// 8 bytes less than that: peers rely on the short count, so a buffer has to be larger than it says.
class STRATA_API CompositionInfo : public Ferro::IArchive {
 public:
  UUID ID;
  std::string Title;
  QUIRE::Rational EditRate;  ///< edit units per second
  ui32_t CurrentReel = 0;    ///< the reel that plays, counted from 1 within the composition
  ui32_t TotalReels = 0;
  ui32_t Duration = 0;                                ///< edit units
  Cairn::FileType_t ImageFormat = Cairn::FT_UNKNOWN;  ///< kind of picture track file
  ui32_t ImageWidth = 0;                              ///< stored pixels
  ui32_t ImageHeight = 0;                             ///< stored pixels
  ui32_t SoundFormat = 0;                             ///< number of sound channels; 0 without sound

  /// Prints ten labelled lines; a null stream is standard error.
  void Dump(FILE* stream = nullptr) const;

  /// True when the identifier has a value.
  [[nodiscard]] bool HasValue() const override;
  [[nodiscard]] ui32_t ArchiveLength() const override;
  [[nodiscard]] bool Archive(Ferro::MemIOWriter* Writer) const override;
  [[nodiscard]] bool Unarchive(Ferro::MemIOReader* Reader) override;
};

}  // namespace Strata
