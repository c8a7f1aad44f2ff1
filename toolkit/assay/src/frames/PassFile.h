// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "file/TrackFile.h"

#include <Assay/Contents.h>
#include <Assay/Figures.h>
#include <Assay/Finding.h>

#include <optional>
#include <string>

namespace Assay {

/// A file whose contents are looked at, and what came of it. A plain value.
struct PassFile {
  std::string Package;               ///< folder; empty where the store has it
  std::string Document;              ///< from the package's folder on; a whole path where Package is empty
  std::string Path;                  ///< what to open
  const TrackFile* Track = nullptr;  ///< null: none, or none that a reader opens; nothing but a digest is to be had
  ui64_t Size = 0;                   ///< bytes

  DepthSet LookedAt;  ///< to the end; of Frames, Hash and Decode
  DepthSet Missing;   ///< what of them was asked for, makes sense, and was not looked at to the end
  LeftOutReason Reason = LeftOutReason::Cancelled;  ///< of Missing
  SHA1 Digest;                                      ///< of the whole file; no value where it was not computed
  FindingList Findings;  ///< of frames and decoding, in places of the file; a Cause counts within this list
  std::optional<FileFigures> Figures;

  [[nodiscard]] bool IsText() const { return Track != nullptr && Track->As<QUIRE::TimedText::TimedTextDescriptor>(); }
  [[nodiscard]] bool IsPicture() const {
    return Track != nullptr &&
           (Track->As<QUIRE::JP2K::PictureDescriptor>() || Track->As<QUIRE::MPEG2::VideoDescriptor>());
  }
  /// What of a check's depths there is to be looked at in it: Decode of JPEG 2000 alone.
  [[nodiscard]] DepthSet Applicable(const DepthSet& depths) const;
  void LeaveOut(const DepthSet& depths, LeftOutReason reason);
};

}  // namespace Assay
