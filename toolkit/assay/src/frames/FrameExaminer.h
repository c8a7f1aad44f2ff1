// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "file/TrackFile.h"

#include <Assay/Figures.h>
#include <Assay/Finding.h>

#include <memory>
#include <span>

namespace Assay {

/// One frame in clear.
struct FrameView {
  ui32_t EditUnit = 0;  ///< within the file
  bool IsRightEye = false;
  std::span<const ui8_t> Bytes;  ///< the essence element's value; valid during the call
};

/// Looks at the frames of one track file. One thread calls it, in the order of edit units, the left eye before the right.
class IFrameExaminer {
 public:
  IFrameExaminer() = default;
  IFrameExaminer(const IFrameExaminer&) = delete;
  IFrameExaminer& operator=(const IFrameExaminer&) = delete;
  virtual ~IFrameExaminer() = default;

  virtual void Examine(const FrameView& frame) = 0;
  /// Called once after the last frame that could be read: says what was found, in places of the file (TrackFile::At).
  /// @param is_whole  false: some frames were not examined, so that nothing may be said of all of them.
  virtual void Finish(FindingList& findings, FileFigures& figures, bool is_whole) = 0;
};

// One examiner for each kind. The file must outlive it.
[[nodiscard]] std::unique_ptr<IFrameExaminer> NewPictureExaminer(const TrackFile& file);
[[nodiscard]] std::unique_ptr<IFrameExaminer> NewSoundExaminer(const TrackFile& file);
[[nodiscard]] std::unique_ptr<IFrameExaminer> NewImmersiveExaminer(const TrackFile& file);

}  // namespace Assay
