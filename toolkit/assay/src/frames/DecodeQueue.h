// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Types.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace Assay {

/// What came of decoding the pictures of one file. Pictures end in any order.
struct FileDecoding {
  ui64_t Failed = 0;     ///< pictures
  ui64_t First = 0;      ///< edit unit of the first that failed
  ui64_t Malformed = 0;  ///< of those that failed, those whose headers alone tell that they are damaged
  bool RanOutOfMemory = false;
  size_t Pending = 0;  ///< jobs that have not ended
};

/// Pictures that wait to be decoded. Whoever has read one hands it in and reads on; threads that have nothing to read decode.
/// Where as many wait as there are threads, the reader decodes himself, so that memory stays bounded. Any thread.
class DecodeQueue {
 public:
  explicit DecodeQueue(size_t threads) : m_Limit(threads > 1 ? threads : 0) {}

  /// Hands in a codestream, which is copied unless it is decoded at once.
  void Submit(FileDecoding& file, ui64_t edit_unit, std::span<const ui8_t> codestream);
  /// Waits until all of a file are decoded, and helps meanwhile.
  void Finish(FileDecoding& file);
  /// Drops those of a file that wait, and waits for those that are at work.
  void Cancel(FileDecoding& file);
  /// Decodes until Close, and until nothing waits.
  void Work();
  void Close();

 private:
  struct Job {
    FileDecoding* File;
    ui64_t EditUnit;
    std::vector<ui8_t> Codestream;
  };

  [[nodiscard]] std::optional<Job> TakeJob();
  void Run(FileDecoding& file, ui64_t edit_unit, std::span<const ui8_t> codestream);

  const size_t m_Limit;
  std::mutex m_Mutex;
  std::condition_variable m_Changed;
  std::deque<Job> m_Jobs;  // guarded by m_Mutex, as all FileDecoding is
  bool m_IsClosed = false;
};

}  // namespace Assay
