// SPDX-License-Identifier: BSD-3-Clause
#include "DecodeQueue.h"

#include <Assay/PictureDecoder.h>

#include <QUIRE/JP2KHeaders.h>

#include <algorithm>
#include <new>
#include <string>

namespace Assay {
namespace {

/// Whether the headers alone tell that a codestream is damaged.
bool IsMalformed(std::span<const ui8_t> codestream) {
  QUIRE::JP2K::CodestreamHeaders headers;
  return ParseHeaders(codestream, headers).Failure() || headers.End != QUIRE::JP2K::CodestreamEnd::Proper;
}

}  // namespace

void DecodeQueue::Submit(FileDecoding& file, ui64_t edit_unit, std::span<const ui8_t> codestream) {
  {
    const std::lock_guard lock(m_Mutex);
    ++file.Pending;
    if (m_Jobs.size() < m_Limit) {
      try {
        m_Jobs.push_back({&file, edit_unit, {codestream.begin(), codestream.end()}});
        m_Changed.notify_one();
        return;
      } catch (const std::bad_alloc&) {  // then at once
      }
    }
  }
  Run(file, edit_unit, codestream);
}

std::optional<DecodeQueue::Job> DecodeQueue::TakeJob() {
  if (m_Jobs.empty()) return std::nullopt;
  std::optional<Job> job(std::move(m_Jobs.front()));
  m_Jobs.pop_front();
  return job;
}

void DecodeQueue::Run(FileDecoding& file, ui64_t edit_unit, std::span<const ui8_t> codestream) {
  bool is_decoded = false;
  bool is_malformed = false;
  bool has_memory = true;
  std::string reason;
  try {
    const Result_t result = TryDecoding(codestream, reason);
    is_decoded = result.Success();
    has_memory = result != Ferro::RESULT_ALLOC;
    is_malformed = !is_decoded && has_memory && IsMalformed(codestream);
  } catch (const std::bad_alloc&) {
    has_memory = false;
  }
  const std::lock_guard lock(m_Mutex);
  --file.Pending;
  if (!has_memory) {
    file.RanOutOfMemory = true;
  } else if (!is_decoded) {
    file.First = file.Failed == 0 ? edit_unit : std::min(file.First, edit_unit);
    ++file.Failed;
    file.Malformed += is_malformed ? 1 : 0;
  }
  m_Changed.notify_all();
}

void DecodeQueue::Finish(FileDecoding& file) {
  std::unique_lock lock(m_Mutex);
  while (file.Pending > 0) {
    if (std::optional<Job> job = TakeJob()) {
      lock.unlock();
      Run(*job->File, job->EditUnit, job->Codestream);
      job.reset();
      lock.lock();
    } else {
      m_Changed.wait(lock);
    }
  }
}

void DecodeQueue::Cancel(FileDecoding& file) {
  {
    const std::lock_guard lock(m_Mutex);
    file.Pending -= std::erase_if(m_Jobs, [&](const Job& job) { return job.File == &file; });
  }
  Finish(file);
}

void DecodeQueue::Work() {
  std::unique_lock lock(m_Mutex);
  for (;;) {
    m_Changed.wait(lock, [this] { return m_IsClosed || !m_Jobs.empty(); });
    std::optional<Job> job = TakeJob();
    if (!job) return;
    lock.unlock();
    Run(*job->File, job->EditUnit, job->Codestream);
    job.reset();
    lock.lock();
  }
}

void DecodeQueue::Close() {
  const std::lock_guard lock(m_Mutex);
  m_IsClosed = true;
  m_Changed.notify_all();
}

}  // namespace Assay
