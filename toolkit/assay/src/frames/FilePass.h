// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "DecodeQueue.h"
#include "FileScan.h"
#include "FrameExaminer.h"
#include "FrameOpener.h"
#include "Occurrences.h"
#include "PassFile.h"

#include <memory>

namespace Assay {

class TrackReader;

/// The one pass over a file: what goes by is digested, each frame is opened, examined and handed in for decoding. One
/// thread; the frames' memory is that of one frame, however many there are.
class FilePass {
 public:
  /// @param keys      may be null
  /// @param progress  receives the bytes of the file that are done; false ends the pass
  FilePass(PassFile& file, const DepthSet& depths, const Sigil::KeyRing* keys, DecodeQueue& decoding,
           FileScan::OnBytes progress);
  ~FilePass();

  /// Fills in what came of it. What was found until the pass was ended is kept.
  void Run();

 private:
  enum class Step { GoOn, End };

  void LookAtFrames();
  void OpenFrames(TrackReader& reader);
  [[nodiscard]] bool TakeKey(TrackReader& reader);
  [[nodiscard]] Step LookAtFrame(TrackReader& reader, ui32_t edit_unit, QUIRE::Eye eye);
  [[nodiscard]] Step Lose(ui32_t edit_unit, const std::string& expected, const std::string& found);
  [[nodiscard]] Step Fail(Result_t result);
  void Deliver(ui32_t edit_unit, QUIRE::Eye eye, std::span<const ui8_t> clear);
  void NoteDenied(ui32_t edit_unit, Result_t result);
  void EndFrames();
  void AddUndecodable();
  void EndDigest();

  PassFile& m_File;
  const DepthSet m_Wanted;
  const Sigil::KeyRing* m_Keys;
  DecodeQueue& m_Queue;
  FileScan m_Scan;
  FrameOpener m_Opener;
  std::unique_ptr<IFrameExaminer> m_Examiner;  // null: nobody looks at the frames
  FileDecoding m_Decoding;
  Occurrences m_Found;  // of what keeps frames from being examined
  ui32_t m_LostInRow = 0;
  bool m_HasGaps = false;                      // some frame was not examined
  std::optional<LeftOutReason> m_Ended;        // why there is no going on with the file
  std::optional<LeftOutReason> m_FramesEnded;  // why there is none with its frames
};

}  // namespace Assay
