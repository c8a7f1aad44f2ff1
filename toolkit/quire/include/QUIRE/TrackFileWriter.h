// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Crypto.h>
#include <QUIRE/Export.h>
#include <QUIRE/Result.h>
#include <QUIRE/WriterInfo.h>
#include <QUIRE/WriterOptions.h>

#include <Ferro/mem_ptr.h>

#include <string>

namespace QUIRE {

class h__Writer;
struct EssenceKind;

/// What the writers of all kinds have in common. Only the kinds themselves are created.
///
/// The file stands under its name when Finalize has succeeded, complete; until then, and when the writer is destroyed
/// before, there is nothing but a temporary file, which is removed. Files have the layout of ST 429-3, as SMPTE or as
/// Interop packages have it, according to WriterInfo::LabelSetType. One thread at a time.
///
/// Results of the kinds' OpenWrite: RESULT_OK; RESULT_STATE when a file is open already; RESULT_PARAM, with a line in the
/// log, for facts that contradict each other or are missing (asset UUID, label set, edit rate; for encrypted essence
/// context and key identifiers); RESULT_TOOLARGE when the header metadata cannot hold them; the failures of
/// Ferro::FileWriter::OpenWrite; RESULT_WRITEFAIL.
///
/// Results of WriteFrame and its like: RESULT_OK; RESULT_INIT when no file is open; RESULT_CRYPT_CTX and RESULT_HMAC_CTX
/// when the writer information calls for a context that is not given; RESULT_PARAM when one is given that it does not
/// call for; RESULT_LARGE_PTO when a frame's plaintext offset exceeds its size; RESULT_CRYPT_INIT; RESULT_TOOLARGE beyond
/// 2^32 - 1 edit units. These leave the file as it was. After RESULT_WRITEFAIL the file is given up: all that follows
/// is RESULT_STATE.
///
/// Where memory runs out, all of them return RESULT_ALLOC; a file that was changed by then is given up.
class QUIRE_API TrackFileWriter {
 public:
  TrackFileWriter(const TrackFileWriter&) = delete;
  TrackFileWriter& operator=(const TrackFileWriter&) = delete;

  [[nodiscard]] bool IsOpen() const { return !m_Writer.empty(); }
  /// Edit units written so far.
  [[nodiscard]] ui32_t EditUnitCount() const;
  /// Completes the file with footer, index and random index pack; it then stands under its name and the writer is ready
  /// for another.
  /// @return RESULT_OK; RESULT_INIT when no file is open; RESULT_STATE after a failed write; RESULT_WRITEFAIL. After a
  /// failure there is no file.
  [[nodiscard]] Result_t Finalize();
  /// Gives up what was written; nothing happens when no file is open.
  void Abandon();
  /// Why the last call that failed did so, as the log tells it behind the file's name, in English: "cannot write
  /// 16 bytes at offset 5: No space left on device". Empty when nothing failed since OpenWrite was called last, or the
  /// result says it all.
  [[nodiscard]] std::string FailureReason() const;

 protected:
  TrackFileWriter();
  ~TrackFileWriter();

  /// Finalize for a file whose duration is not the number of its edit units.
  [[nodiscard]] Result_t FinalizeWith(ui32_t duration);

  Ferro::mem_ptr<h__Writer> m_Writer;  // set while a file is open
  std::string m_FailureReason;         // of the last file; while one is open, its writer knows
};

}  // namespace QUIRE
