// SPDX-License-Identifier: BSD-3-Clause
#include "DigestVerification.h"

#include <Ferro/ILogSink.h>
#include <Ferro/SHA1Digest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <map>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

namespace Cairn {

namespace {

using Clock = std::chrono::steady_clock;

/// Adds up what the threads have done and reports it.
class ProgressReport {
 public:
  ProgressReport(const std::vector<DigestJob>& jobs, ui32_t interval_ms, AssetStore::OnVerify callback)
      : m_Callback(callback), m_Interval(interval_ms) {
    m_Progress.FilesTotal = static_cast<ui32_t>(jobs.size());
    for (const DigestJob& job : jobs) m_Progress.BytesTotal += job.Size;
  }

  /// False when the work is to end.
  bool Add(ui64_t bytes, ui32_t files) {
    const std::lock_guard lock(m_Mutex);
    m_Progress.BytesDone += bytes;
    m_Progress.FilesDone += files;
    const Clock::time_point now = Clock::now();
    const bool is_last = m_Progress.FilesDone == m_Progress.FilesTotal;
    if (m_Cancelled || !m_Callback || (now - m_Reported < m_Interval && !is_last)) return !m_Cancelled;
    m_Reported = now;
    const double seconds = std::chrono::duration<double>(now - m_Started).count();
    m_Progress.BytesPerSecond = seconds > 0 ? double(m_Progress.BytesDone) / seconds : 0;
    m_Cancelled = !m_Callback(m_Progress);
    return !m_Cancelled;
  }

  void Finish(const DigestJob& job, Ferro::FunctionRef<bool(const DigestJob&)> finished) {
    const std::lock_guard lock(m_Mutex);
    if (!finished(job)) m_Cancelled = true;
  }

  bool Cancelled() {
    const std::lock_guard lock(m_Mutex);
    return m_Cancelled;
  }

 private:
  const AssetStore::OnVerify m_Callback;
  const std::chrono::milliseconds m_Interval;
  const Clock::time_point m_Started = Clock::now();

  std::mutex m_Mutex;
  Clock::time_point m_Reported;  // guarded by m_Mutex, as all below
  VerifyProgress m_Progress;
  bool m_Cancelled = false;
};

// The system's reason where there is one.
std::string FailureText(const std::string& path, Result_t result) {
  std::string text = OpenFailureOf(path);
  if (text.empty()) text = result.Label();
  if (text.ends_with('.')) text.pop_back();
  return text;
}

void Compute(DigestJob& job, ProgressReport& report, Ferro::FunctionRef<bool(const DigestJob&)> finished) {
  fsize_t reported = 0;
  const auto piece = [&](fsize_t done) {
    const fsize_t bytes = done - reported;
    reported = done;
    return report.Add(bytes, 0);
  };
  Result_t result = Ferro::RESULT_NOT_FOUND;
  if (StampFile(job.Path, job.Stamp)) result = Ferro::DigestFile(job.Path, job.Computed, piece);
  if (result == Ferro::RESULT_CANCELLED) return;
  if (result.Failure()) {
    job.Failure = FailureText(job.Path, result);
    Ferro::DefaultLogSink().Error("%s: %s\n", job.Path.c_str(), result.Label());
  }
  report.Finish(job, finished);
  report.Add(0, 1);
}

// Starts one thread less than `count`, since the caller works too. Where the system refuses more, fewer do all.
template <class Work>
void StartSome(size_t count, const Work& work, std::vector<std::jthread>& workers) {
  try {
    workers.reserve(count);
    while (workers.size() + 1 < count) workers.emplace_back(work);
  } catch (const std::system_error& error) {
    Ferro::DefaultLogSink().Warn("Digests are computed in %zu threads: %s\n", workers.size() + 1, error.what());
  }
}

}  // namespace

std::vector<DigestJob> VerificationPlan::Jobs(const std::vector<AssetRecord>& assets) const {
  std::map<std::string, DigestJob> jobs;
  for (const AssetRecord& asset : assets) {
    const bool is_there = !asset.Info.RealFilename.empty() && (asset.Problems & AP_MISSING_FILE) == 0;
    const bool is_known = asset.DigestVerified || (asset.Problems & AP_DIGEST_MISMATCH) != 0;
    if (Concerns(asset) && is_there && !is_known)
      jobs.try_emplace(asset.Info.RealFilename, DigestJob{asset.Info.RealFilename, asset.Info.FileSize, {}, {}, {}});
  }
  std::vector<DigestJob> list;
  for (auto& [path, job] : jobs) list.push_back(std::move(job));
  return list;
}

bool VerificationPlan::AreVerified(const std::vector<AssetRecord>& assets) const {
  std::set<UUID> unknown = m_Wanted;
  for (const AssetRecord& asset : assets) {
    if (Concerns(asset) && !asset.DigestVerified) return false;
    unknown.erase(asset.Info.ID);
  }
  return unknown.empty();
}

bool VerificationPlan::Concerns(const AssetRecord& asset) const {
  return asset.Info.Digest.HasValue() && (m_Wanted.empty() || m_Wanted.contains(asset.Info.ID));
}

Result_t ComputeDigests(std::vector<DigestJob>& jobs, ui32_t threads, ui32_t interval_ms,
                        Ferro::FunctionRef<bool(const DigestJob&)> finished, AssetStore::OnVerify progress) {
  ProgressReport report(jobs, interval_ms, progress);
  std::atomic<size_t> next = 0;
  std::atomic<bool> out_of_memory = false;
  const auto work = [&] {
    try {
      for (size_t index = next++; index < jobs.size() && !report.Cancelled(); index = next++)
        Compute(jobs[index], report, finished);
    } catch (const std::bad_alloc&) {
      out_of_memory = true;
    }
  };
  {
    std::vector<std::jthread> workers;
    StartSome(std::min<size_t>(threads, jobs.size()), work, workers);
    work();
  }
  if (out_of_memory) return Ferro::RESULT_ALLOC;
  return report.Cancelled() ? Ferro::RESULT_CANCELLED : Ferro::RESULT_OK;
}

}  // namespace Cairn
