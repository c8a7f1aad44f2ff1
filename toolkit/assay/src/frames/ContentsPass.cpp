// SPDX-License-Identifier: BSD-3-Clause
#include "ContentsPass.h"

#include "FilePass.h"
#include "KeptResults.h"
#include "PassMeter.h"

#include <Ferro/ILogSink.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <filesystem>
#include <new>
#include <thread>

namespace Assay {
namespace {

using Clock = std::chrono::steady_clock;

// Results are written this often while files are read: a check that is killed loses no more.
constexpr std::chrono::seconds KeepInterval{10};
// A file that was changed as lately may change again within one tick of its time: nothing is kept of it.
constexpr std::chrono::seconds SettledAfter{2};

size_t ThreadCount(const PassRequest& request, size_t files) {
  const size_t asked = request.Threads != 0 ? request.Threads : std::max(1U, std::thread::hardware_concurrency());
  const bool has_more = request.Depths.Has(Depth::Decode);  // one file keeps several threads busy
  return std::max<size_t>(1, std::min<size_t>(asked, has_more ? 1024 : files));
}

bool IsSettled(const FileState& state) {
  const auto now = std::filesystem::file_time_type::clock::now().time_since_epoch();
  return std::chrono::nanoseconds(state.Modified) + SettledAfter < now;
}

class ContentsPass {
 public:
  ContentsPass(const PassRequest& request, std::span<PassFile> files) : m_Request(request) {
    if (!request.KeptResults.empty()) m_State = m_Kept.Read(request.KeptResults);
    ui64_t bytes = 0;
    for (PassFile& file : files) {
      if (TakeKept(file)) continue;
      bytes += file.Size;
      m_Files.push_back(&file);
    }
    std::ranges::stable_sort(m_Files, [](const PassFile* a, const PassFile* b) { return a->Size > b->Size; });
    m_Threads = ThreadCount(request, m_Files.size());
    m_Meter.emplace(request.OnProgress, m_Files.size(), bytes);
    m_Queue.emplace(m_Threads);
  }

  KeptState Run() {
    {
      std::vector<std::jthread> workers;
      ++m_Reading;
      StartOthers(workers);
      Work();
    }
    const std::lock_guard lock(m_KeptMutex);
    Keep();
    return m_State;
  }

 private:
  [[nodiscard]] bool TakeKept(PassFile& file) {
    const DepthSet wanted = file.Applicable(m_Request.Depths);
    if (wanted.IsEmpty()) return true;
    if (m_State != KeptState::Used) return false;
    const std::optional<FileState> state = StateOf(file.Path);
    return state && m_Kept.Take(file, *state, wanted);
  }

  // Where the system refuses threads, fewer do all.
  void StartOthers(std::vector<std::jthread>& workers) {
    while (workers.size() + 1 < m_Threads) {
      ++m_Reading;
      try {
        workers.emplace_back([this] { Work(); });
      } catch (const std::exception& error) {  // of the system, or no memory
        --m_Reading;
        Ferro::DefaultLogSink().Warn("Files are read in %zu threads: %s\n", workers.size() + 1, error.what());
        return;
      }
    }
  }

  void Work() {
    for (size_t index = m_Next++; index < m_Files.size(); index = m_Next++) LookAt(*m_Files[index]);
    if (--m_Reading == 0) m_Queue->Close();
    m_Queue->Work();
  }

  void LookAt(PassFile& file) {
    const DepthSet wanted = file.Applicable(m_Request.Depths);
    if (m_Meter->IsCancelled()) return file.LeaveOut(wanted, LeftOutReason::Cancelled);
    try {
      LookAtAndKeep(file);
    } catch (const std::bad_alloc&) {
      file.LeaveOut(wanted, LeftOutReason::NoMemory);
    } catch (const std::exception& error) {
      Ferro::DefaultLogSink().Error("%s: %s\n", file.Path.c_str(), error.what());
      file.LeaveOut(wanted, LeftOutReason::Unreadable);
    }
  }

  void LookAtAndKeep(PassFile& file) {
    const std::optional<FileState> before = StateOf(file.Path);
    ui64_t reported = 0;
    const auto progress = [&](ui64_t passed) {
      const ui64_t bytes = std::min(passed, file.Size) - reported;
      reported += bytes;
      return m_Meter->Add(file.Path, bytes);
    };
    FilePass(file, m_Request.Depths, m_Request.Keys, *m_Queue, progress).Run();
    if (file.Missing.IsEmpty() || file.Reason != LeftOutReason::Cancelled) {
      m_Meter->Add(file.Path, file.Size - reported);
      m_Meter->AddFile(file.Path);
    }
    if (before && !file.LookedAt.IsEmpty()) Put(file, *before);
  }

  void Put(const PassFile& file, const FileState& before) {
    if (m_Request.KeptResults.empty() || !IsSettled(before) || StateOf(file.Path) != before) return;
    const std::lock_guard lock(m_KeptMutex);
    m_Kept.Put(file, before);
    m_HasNew = true;
    if (Clock::now() - m_KeptAt > KeepInterval) Keep();
  }

  // Under m_KeptMutex.
  void Keep() {
    if (!m_HasNew) return;
    m_KeptAt = Clock::now();
    m_HasNew = false;
    const Result_t result = m_Kept.Write(m_Request.KeptResults);
    if (result.Success()) return;
    Ferro::DefaultLogSink().Warn("%s: results are not kept: %s\n", m_Request.KeptResults.c_str(), result.Label());
    m_State = KeptState::Unwritten;
  }

  const PassRequest& m_Request;
  std::vector<PassFile*> m_Files;  // the largest first
  size_t m_Threads = 1;
  std::optional<PassMeter> m_Meter;
  std::optional<DecodeQueue> m_Queue;
  std::atomic<size_t> m_Next = 0;
  std::atomic<size_t> m_Reading = 0;  // threads that may take a file yet

  std::mutex m_KeptMutex;
  KeptResults m_Kept;  // guarded by m_KeptMutex while threads run, as all below
  KeptState m_State = KeptState::None;
  bool m_HasNew = false;
  Clock::time_point m_KeptAt = Clock::now();
};

}  // namespace

KeptState PassOver(const PassRequest& request, std::span<PassFile> files) {
  return ContentsPass(request, files).Run();
}

}  // namespace Assay
