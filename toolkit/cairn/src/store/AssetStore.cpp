// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/AssetStore.h>

#include "DigestVerification.h"
#include "FolderUpdate.h"
#include "StoreIndex.h"

#include <Ferro/ILogSink.h>
#include <Ferro/Path.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <thread>

namespace Cairn {

namespace {

Result_t CanonicalPath(const std::string& path, std::string& out) {
  char resolved[PATH_MAX];
  if (realpath(path.c_str(), resolved) == nullptr)
    return errno == EACCES ? Ferro::RESULT_NO_PERM : Ferro::RESULT_NOT_FOUND;
  out = resolved;
  return Ferro::RESULT_OK;
}

bool IsInside(const std::string& path, const std::string& folder) {
  return (path + '/').starts_with(folder + '/');
}

constexpr ui32_t MaxThreads = 64;

ui32_t ThreadsOrDefault(ui32_t threads) {
  return threads != 0 ? std::min(threads, MaxThreads) : std::clamp(std::thread::hardware_concurrency(), 1U, 8U);
}

/// The index, and what is known besides it, of an open store.
class Contents {
 public:
  Contents(const std::string& index_file, ui32_t busy_timeout_ms) : m_Index(index_file, busy_timeout_ms) {}

  /// Asks the index something, one thread at a time.
  template <class Question>
  auto Ask(Question question) const {
    const std::lock_guard lock(m_Mutex);
    return question(m_Index);
  }

  /// Brings the index up to date with a folder. All that takes time is done without the index: nobody waits for it.
  /// @param may_add  false: a folder that another process has forgotten stays forgotten.
  Result_t Update(const std::string& folder, bool may_add, AssetStore::OnScan progress) {
    for (;;) {  // again where another process changed the folder's rows meanwhile
      const StoreIndex::FolderState known = Ask([&](const StoreIndex& index) { return index.Folder(folder); });
      if (known.Revision == 0 && !may_add) return Ferro::RESULT_OK;
      FileStamps found;
      UnreadableEntries unreadable;
      if (const Result_t result = Scan(folder, found, unreadable); result.Failure()) return result;
      const bool is_registered = folder == StoreIndex::RegisteredFiles;
      std::optional<FolderUpdate> update =
          is_registered ? CompareFiles(found, known.Files, progress) : CompareFolder(found, known.Files, progress);
      if (!update) return Ferro::RESULT_CANCELLED;
      unreadable.merge(update->Unreadable);

      const std::lock_guard lock(m_Mutex);
      m_Unreadable[folder] = std::move(unreadable);
      for (const auto& [path, file] : update->Changed) m_ReadFailures.erase(path);
      for (const std::string& path : update->Removed) m_ReadFailures.erase(path);
      if (known.Present && update->Empty()) return Ferro::RESULT_OK;
      Transaction transaction(m_Index.Connection(), Transaction::Writing);
      if (m_Index.Revision(folder) != known.Revision) continue;
      m_Index.Apply(folder, *update);
      transaction.Commit();
      return Ferro::RESULT_OK;
    }
  }

  /// The records that a question to the index answers, with what is known of their files besides.
  template <class Question>
  std::vector<AssetRecord> AskRecords(Question question) const {
    return Ask([&](const StoreIndex& index) {
      std::vector<AssetRecord> records = question(index);
      Complete(records);
      return records;
    });
  }

  /// Adds to records what is known besides the index. To be called within Ask.
  void Complete(std::vector<AssetRecord>& records) const {
    for (AssetRecord& record : records) {
      const std::string& path = record.Info.RealFilename;
      if ((record.Problems & AP_UNREADABLE) != 0) record.OpenFailure = OpenFailureKnown(path);
      const auto failure = m_ReadFailures.find(path);
      if (failure == m_ReadFailures.end()) continue;
      record.Problems |= AP_READ_FAILED;
      record.ReadFailure = failure->second;
    }
  }

  std::vector<UnreadableEntry> Unreadable() const {
    const std::lock_guard lock(m_Mutex);
    UnreadableEntries all;  // a registered file may lie in a folder too
    for (const auto& [folder, entries] : m_Unreadable) all.insert(entries.begin(), entries.end());
    std::vector<UnreadableEntry> list;
    for (auto& [path, entry] : all) list.push_back(std::move(entry));
    return list;
  }

  std::vector<std::string> Folders() const {
    return Ask([](const StoreIndex& index) { return index.Folders(); });
  }

  void MarkAbsent(const std::string& folder) {
    Change([&] { m_Index.MarkAbsent(folder); });
  }

  bool Forget(const std::string& folder) {
    bool found = false;
    Change([&] {
      found = m_Index.RemoveFolder(folder);
      m_Unreadable.erase(folder);
    });
    return found;
  }

  bool ForgetRegistered(const UUID& id) {
    bool found = false;
    Change([&] { found = m_Index.RemoveRegistered(id); });
    return found;
  }

  Result_t Register(const std::string& filename, const SHA1& digest, AssetInfo& out) {
    std::string path;
    if (const Result_t result = CanonicalPath(filename, path); result.Failure()) return result;
    ScannedFile file;
    if (!StampFile(path, file.Stamp)) return Ferro::RESULT_NOT_FOUND;
    if (const Result_t result = InspectFile(path, file.Content); result.Failure()) return result;
    if (!file.Content.ID.HasValue()) return RESULT_CN_VALUE;

    AssetRecord record;
    record.Info.ID = file.Content.ID;
    record.Info.Digest = digest;
    record.Info.RealFilename = path;
    record.Info.FileSize = file.Stamp.Size;
    record.Info.FileType = file.Content.Type;
    record.Package = Ferro::PathDirname(path);

    Change([&] { m_Index.PutRegistered(file, record); });
    out = record.Info;
    return Ferro::RESULT_OK;
  }

  /// Takes down what came of reading a file.
  void KeepDigest(const DigestJob& job) {
    if (job.Failure.empty())
      return Change([&] {
        m_Index.PutDigest(job.Path, job.Stamp, job.Computed);
        m_ReadFailures.erase(job.Path);
      });
    const std::lock_guard lock(m_Mutex);
    m_ReadFailures.insert_or_assign(job.Path, job.Failure);
  }

 private:
  template <class Operation>
  void Change(Operation operation) {
    const std::lock_guard lock(m_Mutex);
    Transaction transaction(m_Index.Connection(), Transaction::Writing);
    operation();
    transaction.Commit();
  }

  // Called with m_Mutex held.
  std::string OpenFailureKnown(const std::string& path) const {
    for (const auto& [folder, entries] : m_Unreadable)
      if (const auto entry = entries.find(path); entry != entries.end()) return entry->second.Reason;
    return {};
  }

  Result_t Scan(const std::string& folder, FileStamps& found, UnreadableEntries& unreadable) const {
    if (folder != StoreIndex::RegisteredFiles) return ScanFolder(folder, found, unreadable);
    FileStamp stamp;
    for (const std::string& path : Ask([](const StoreIndex& index) { return index.RegisteredPaths(); }))
      if (StampFile(path, stamp)) found.emplace(path, stamp);
    return Ferro::RESULT_OK;
  }

  mutable std::mutex m_Mutex;
  StoreIndex m_Index;                                     // guarded by m_Mutex
  std::map<std::string, UnreadableEntries> m_Unreadable;  // by folder; guarded by m_Mutex
  std::map<std::string, std::string> m_ReadFailures;      // why files could not be read, by path; guarded by m_Mutex
};

}  // namespace

class AssetStore::Impl {
 public:
  /// What VerifyDigests does, but for failures of the index.
  Result_t Verify(AssetStore& store, const UUIDList& ids, ui32_t threads, OnVerify progress, ui32_t interval_ms) const {
    if (const Result_t result = store.Refresh(); result.Failure()) return result;
    const VerificationPlan plan(ids);
    std::vector<DigestJob> jobs = plan.Jobs(store.Assets());
    Result_t kept = Ferro::RESULT_OK;
    const auto keep = [&](const DigestJob& job) {
      kept = Run([&] {
        Open->KeepDigest(job);
        return Ferro::RESULT_OK;
      });
      return kept.Success();
    };
    const Result_t computed = ComputeDigests(jobs, ThreadsOrDefault(threads), interval_ms, keep, progress);
    if (kept.Failure() || computed.Failure()) return kept.Failure() ? kept : computed;
    return plan.AreVerified(store.Assets()) ? Ferro::RESULT_OK : Ferro::RESULT_FALSE;
  }

  /// Runs an operation of the open store; a failure of the index, and want of memory, is kept and becomes a result.
  template <class Operation>
  Result_t Run(Operation operation) const {
    if (Open == nullptr) return Ferro::RESULT_INIT;
    return Guard(operation);
  }

  /// Likewise for an operation that answers a value, which is empty where there is none.
  template <class Answer, class Operation>
  Answer Ask(Operation operation) const {
    Answer answer;
    static_cast<void>(Run([&] {
      answer = operation();
      return Ferro::RESULT_OK;
    }));
    return answer;
  }

  template <class Operation>
  Result_t Guard(Operation operation) const {
    try {
      return operation();
    } catch (const DatabaseError& error) {
      const StoreFailure& failure = error.Failure;
      Ferro::DefaultLogSink().Error("Asset index %s: %s\n", failure.File.empty() ? "in memory" : failure.File.c_str(),
                                    failure.Reason.c_str());
      SetFailure(failure);
      return RESULT_CN_STORE;
    } catch (const std::bad_alloc&) {
      Ferro::DefaultLogSink().Error("Asset index: %s\n", Ferro::RESULT_ALLOC.Label());
      SetFailure({SF_OTHER, {}, {}});
      return Ferro::RESULT_ALLOC;
    }
  }

  StoreFailure Failure() const {
    const std::lock_guard lock(m_Mutex);
    return m_Failure;
  }

  void SetFailure(const StoreFailure& failure) const {
    const std::lock_guard lock(m_Mutex);
    m_Failure = failure;
  }

  std::unique_ptr<Contents> Open;

 private:
  mutable std::mutex m_Mutex;
  mutable StoreFailure m_Failure;  // guarded by m_Mutex
};

AssetStore::AssetStore() : m_Impl(new Impl) {}
AssetStore::~AssetStore() = default;

Result_t AssetStore::Open(const std::string& index_file, ui32_t busy_timeout_ms) {
  m_Impl->Open.reset();
  m_Impl->SetFailure({});
  return m_Impl->Guard([&] {
    m_Impl->Open = std::make_unique<Contents>(index_file, busy_timeout_ms);
    return Ferro::RESULT_OK;
  });
}

Result_t AssetStore::AddFolder(const std::string& folder, OnScan progress) {
  // One file belongs to one folder: the outer one takes the inner ones in.
  return m_Impl->Run([&]() -> Result_t {
    std::string path;
    if (const Result_t result = CanonicalPath(folder, path); result.Failure()) return result;
    std::vector<std::string> inner;
    for (const std::string& known : m_Impl->Open->Folders()) {
      if (known != path && IsInside(path, known)) return m_Impl->Open->Update(known, true, progress);
      if (known != path && IsInside(known, path)) inner.push_back(known);
    }
    const Result_t result = m_Impl->Open->Update(path, true, progress);
    if (result.Failure()) return result;
    for (const std::string& known : inner) m_Impl->Open->Forget(known);
    return result;
  });
}

Result_t AssetStore::Refresh(OnScan progress) {
  return m_Impl->Run([&] {
    for (const std::string& folder : m_Impl->Open->Folders())
      if (const Result_t result = m_Impl->Open->Update(folder, false, progress); result.Failure()) {
        if (result == Ferro::RESULT_CANCELLED) return result;
        Ferro::DefaultLogSink().Warn("%s: its assets are missing: %s\n", folder.c_str(), result.Label());
        m_Impl->Open->MarkAbsent(folder);
      }
    return m_Impl->Open->Update(StoreIndex::RegisteredFiles, false, progress);
  });
}

Result_t AssetStore::Forget(const std::string& folder) {
  return m_Impl->Run([&] {
    std::string path;
    if (CanonicalPath(folder, path).Failure()) path = folder;  // a folder that is gone can be forgotten too
    return m_Impl->Open->Forget(path) ? Ferro::RESULT_OK : Ferro::RESULT_NOT_FOUND;
  });
}

std::vector<std::string> AssetStore::Folders() const {
  return m_Impl->Ask<std::vector<std::string>>([&] { return m_Impl->Open->Folders(); });
}

std::vector<AssetRecord> AssetStore::Assets() const {
  return m_Impl->Ask<std::vector<AssetRecord>>(
      [&] { return m_Impl->Open->AskRecords([](const StoreIndex& index) { return index.Assets(); }); });
}

std::vector<AssetRecord> AssetStore::FindAsset(const UUID& id) const {
  std::vector<AssetRecord> places = m_Impl->Ask<std::vector<AssetRecord>>(
      [&] { return m_Impl->Open->AskRecords([&](const StoreIndex& index) { return AssetFinder(index).Find(id); }); });
  SortBestFirst(places);
  return places;
}

std::vector<AssetRecord> AssetStore::FindFile(const std::string& filename) const {
  return m_Impl->Ask<std::vector<AssetRecord>>([&] {
    std::string path;
    if (CanonicalPath(filename, path).Failure()) path = filename;  // a file that is gone has its records too
    return m_Impl->Open->AskRecords([&](const StoreIndex& index) { return index.FindFile(path); });
  });
}

std::vector<PackageRecord> AssetStore::Packages() const {
  return m_Impl->Ask<std::vector<PackageRecord>>(
      [&] { return m_Impl->Open->Ask([](const StoreIndex& index) { return index.Packages(); }); });
}

std::vector<UnreadableEntry> AssetStore::Unreadable() const {
  return m_Impl->Ask<std::vector<UnreadableEntry>>([&] { return m_Impl->Open->Unreadable(); });
}

StoreFailure AssetStore::LastFailure() const {
  return m_Impl->Failure();
}

void AssetStore::ClearFailure() {
  m_Impl->SetFailure({});
}

Result_t AssetStore::VerifyDigests(const UUIDList& ids, ui32_t threads, OnVerify progress, ui32_t interval_ms) {
  return m_Impl->Run([&] { return m_Impl->Verify(*this, ids, threads, progress, interval_ms); });
}

Result_t AssetStore::GetAssetIDList(UUIDList& out) const {
  return m_Impl->Run([&] {
    const UUIDList ids = m_Impl->Open->Ask([](const StoreIndex& index) { return index.AssetIDs(); });
    out.insert(out.end(), ids.begin(), ids.end());
    return Ferro::RESULT_OK;
  });
}

Result_t AssetStore::RegisterAsset(const std::string& path, const SHA1& digest, AssetInfo& out) {
  return m_Impl->Run([&] { return m_Impl->Open->Register(path, digest, out); });
}

Result_t AssetStore::ForgetAsset(const UUID& id) {
  return m_Impl->Run([&] { return m_Impl->Open->ForgetRegistered(id) ? Ferro::RESULT_OK : Ferro::RESULT_NOT_FOUND; });
}

Result_t AssetStore::GetInfoForAssetID(const UUID& id, AssetInfo& out, bool flag) const {
  return m_Impl->Run([&]() -> Result_t {
    AssetInfoList found;
    const Result_t result = GetInfoForAssetIDList({id}, found, flag);
    if (result == Ferro::RESULT_FALSE) return Ferro::RESULT_NOT_FOUND;
    if (result.Success()) out = found.front();
    return result;
  });
}

Result_t AssetStore::GetInfoForAssetIDList(const UUIDList& ids, AssetInfoList& out, bool flag) const {
  const ui32_t barred = flag ? FatalAssetProblems : 0;
  return m_Impl->Run([&] {
    return m_Impl->Open->Ask([&](const StoreIndex& index) {
      Result_t result = Ferro::RESULT_OK;
      AssetFinder finder(index);
      for (const UUID& id : ids) {
        std::vector<AssetRecord> places = finder.Find(id);
        m_Impl->Open->Complete(places);
        SortBestFirst(places);
        if (places.empty() || (places.front().Problems & barred) != 0)
          result = Ferro::RESULT_FALSE;
        else
          out.push_back(places.front().Info);
      }
      return result;
    });
  });
}

}  // namespace Cairn
