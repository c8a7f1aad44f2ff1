// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/AssetStore.h>

#include "DigestVerification.h"
#include "FolderUpdate.h"
#include "StoreIndex.h"

#include <Ferro/LogSink.h>
#include <Ferro/Path.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

namespace Cairn {

namespace {

Result_t canonical_path(const std::string& path, std::string& out) {
  char resolved[PATH_MAX];
  if (realpath(path.c_str(), resolved) == nullptr)
    return errno == EACCES ? Ferro::RESULT_NO_PERM : Ferro::RESULT_NOT_FOUND;
  out = resolved;
  return Ferro::RESULT_OK;
}

bool is_inside(const std::string& path, const std::string& folder) {
  return (path + '/').starts_with(folder + '/');
}

constexpr ui32_t MaxThreads = 64;

ui32_t threads_or_default(ui32_t threads) {
  return threads != 0 ? std::min(threads, MaxThreads) : std::clamp(std::thread::hardware_concurrency(), 1U, 8U);
}

}  // namespace

class AssetStore::Impl {
 public:
  Impl(const std::string& index_file, std::chrono::milliseconds patience) : m_Index(index_file, patience) {}

  /// Asks the index something, one thread at a time.
  template <class Question>
  auto Ask(Question question) const {
    const std::lock_guard lock(m_Mutex);
    return question(m_Index);
  }

  /// Brings the index up to date with a folder. All that takes time is done without the index: nobody waits for it.
  /// @param may_add  false: a folder that another process has forgotten stays forgotten.
  Result_t Update(const std::string& folder, bool may_add, const OnScan& progress) {
    for (;;) {
      const StoreIndex::FolderState known = Ask([&](const StoreIndex& index) { return index.Folder(folder); });
      if (known.Revision == 0 && !may_add) return Ferro::RESULT_OK;
      FileStamps found;
      OpenFailures unopened;
      if (const Result_t result = Scan(folder, found, unopened); result.Failure()) return result;
      const bool is_registered = folder == StoreIndex::RegisteredFiles;
      std::optional<FolderUpdate> update =
          is_registered ? CompareFiles(found, known.Files, progress) : CompareFolder(found, known.Files, progress);
      if (!update) return Ferro::RESULT_CANCELLED;
      unopened.merge(update->Unopened);

      const std::lock_guard lock(m_Mutex);
      m_Unopened[folder] = std::move(unopened);
      if (known.Present && update->Empty()) return Ferro::RESULT_OK;
      Transaction transaction(m_Index.Connection(), Transaction::Writing);
      if (m_Index.Revision(folder) != known.Revision) continue;  // another process was here: see what is left to do
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
      for (AssetRecord& record : records)
        if ((record.Problems & AP_UNREADABLE) != 0) record.OpenFailure = OpenFailureKnown(record.Info.RealFilename);
      return records;
    });
  }

  std::vector<UnopenedEntry> Unopened() const {
    const std::lock_guard lock(m_Mutex);
    OpenFailures all;  // a registered file may lie in a folder too
    for (const auto& [folder, failures] : m_Unopened) all.insert(failures.begin(), failures.end());
    std::vector<UnopenedEntry> entries;
    for (const auto& [path, reason] : all) entries.push_back({path, reason});
    return entries;
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
      m_Unopened.erase(folder);
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
    if (const Result_t result = canonical_path(filename, path); result.Failure()) return result;
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

  void KeepDigest(const DigestJob& job) {
    Change([&] { m_Index.PutDigest(job.Path, job.Stamp, job.Computed); });
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
    for (const auto& [folder, failures] : m_Unopened)
      if (const auto failure = failures.find(path); failure != failures.end()) return failure->second;
    return {};
  }

  Result_t Scan(const std::string& folder, FileStamps& found, OpenFailures& unopened) const {
    if (folder != StoreIndex::RegisteredFiles) return ScanFolder(folder, found, unopened);
    FileStamp stamp;
    for (const std::string& path : Ask([](const StoreIndex& index) { return index.RegisteredPaths(); }))
      if (StampFile(path, stamp)) found.emplace(path, stamp);
    return Ferro::RESULT_OK;
  }

  mutable std::mutex m_Mutex;
  StoreIndex m_Index;                              // guarded by m_Mutex
  std::map<std::string, OpenFailures> m_Unopened;  // by folder; guarded by m_Mutex
};

namespace {

Result_t log_failure(const DatabaseError& error) {
  Ferro::DefaultLogSink().Error("Asset index %s\n", error.Text.c_str());
  return RESULT_CN_STORE;
}

/// Runs a store operation; a failure of the index becomes a result.
template <class Operation>
Result_t guarded(Operation operation) {
  try {
    return operation();
  } catch (const DatabaseError& error) {
    return log_failure(error);
  }
}

/// Likewise for an operation that answers a value, which is then empty.
template <class Answer, class Operation>
Answer guarded_answer(Operation operation) {
  try {
    return operation();
  } catch (const DatabaseError& error) {
    static_cast<void>(log_failure(error));
    return Answer{};
  }
}

}  // namespace

AssetStore::AssetStore() = default;
AssetStore::~AssetStore() = default;

Result_t AssetStore::Open(const std::string& index_file, std::chrono::milliseconds patience) {
  m_Impl.reset();
  return guarded([&] {
    m_Impl = std::make_unique<Impl>(index_file, patience);
    return Ferro::RESULT_OK;
  });
}

Result_t AssetStore::AddFolder(const std::string& folder, const OnScan& progress) {
  if (m_Impl == nullptr) return Ferro::RESULT_INIT;
  std::string path;
  if (const Result_t result = canonical_path(folder, path); result.Failure()) return result;
  // One file belongs to one folder: the outer one takes the inner ones in.
  return guarded([&] {
    std::vector<std::string> inner;
    for (const std::string& known : m_Impl->Folders()) {
      if (known != path && is_inside(path, known)) return m_Impl->Update(known, true, progress);
      if (known != path && is_inside(known, path)) inner.push_back(known);
    }
    const Result_t result = m_Impl->Update(path, true, progress);
    if (result.Failure()) return result;
    for (const std::string& known : inner) m_Impl->Forget(known);
    return result;
  });
}

Result_t AssetStore::Refresh(const OnScan& progress) {
  if (m_Impl == nullptr) return Ferro::RESULT_INIT;
  return guarded([&] {
    for (const std::string& folder : m_Impl->Folders())
      if (const Result_t result = m_Impl->Update(folder, false, progress); result.Failure()) {
        if (result == Ferro::RESULT_CANCELLED) return result;
        Ferro::DefaultLogSink().Warn("%s: its assets are missing: %s\n", folder.c_str(), result.Label());
        m_Impl->MarkAbsent(folder);
      }
    return m_Impl->Update(StoreIndex::RegisteredFiles, false, progress);
  });
}

Result_t AssetStore::Forget(const std::string& folder) {
  if (m_Impl == nullptr) return Ferro::RESULT_INIT;
  std::string path;
  if (canonical_path(folder, path).Failure()) path = folder;  // a folder that is gone can be forgotten too
  return guarded([&] { return m_Impl->Forget(path) ? Ferro::RESULT_OK : Ferro::RESULT_NOT_FOUND; });
}

std::vector<std::string> AssetStore::Folders() const {
  if (m_Impl == nullptr) return {};
  return guarded_answer<std::vector<std::string>>([&] { return m_Impl->Folders(); });
}

std::vector<AssetRecord> AssetStore::Assets() const {
  if (m_Impl == nullptr) return {};
  return guarded_answer<std::vector<AssetRecord>>(
      [&] { return m_Impl->AskRecords([](const StoreIndex& index) { return index.Assets(); }); });
}

std::vector<AssetRecord> AssetStore::FindAsset(const UUID& id) const {
  if (m_Impl == nullptr) return {};
  return guarded_answer<std::vector<AssetRecord>>(
      [&] { return m_Impl->AskRecords([&](const StoreIndex& index) { return AssetFinder(index).Find(id); }); });
}

std::vector<PackageRecord> AssetStore::Packages() const {
  if (m_Impl == nullptr) return {};
  return guarded_answer<std::vector<PackageRecord>>(
      [&] { return m_Impl->Ask([](const StoreIndex& index) { return index.Packages(); }); });
}

std::vector<UnopenedEntry> AssetStore::Unopened() const {
  return m_Impl == nullptr ? std::vector<UnopenedEntry>() : m_Impl->Unopened();
}

Result_t AssetStore::VerifyDigests(const UUIDList& ids, ui32_t threads,
                                   const std::function<bool(const VerifyProgress&)>& progress) {
  if (m_Impl == nullptr) return Ferro::RESULT_INIT;
  if (const Result_t result = Refresh(); result.Failure()) return result;
  const VerificationPlan plan(ids);
  std::vector<DigestJob> jobs = plan.Jobs(Assets());
  Result_t kept = Ferro::RESULT_OK;
  const auto keep = [&](const DigestJob& job) {
    kept = guarded([&] {
      m_Impl->KeepDigest(job);
      return Ferro::RESULT_OK;
    });
    return kept.Success();
  };
  const Result_t computed = ComputeDigests(jobs, threads_or_default(threads), keep, progress);
  if (kept.Failure() || computed.Failure()) return kept.Failure() ? kept : computed;
  return plan.AreVerified(Assets()) ? Ferro::RESULT_OK : Ferro::RESULT_FALSE;
}

Result_t AssetStore::GetAssetIDList(UUIDList& out) const {
  if (m_Impl == nullptr) return Ferro::RESULT_INIT;
  return guarded([&] {
    const UUIDList ids = m_Impl->Ask([](const StoreIndex& index) { return index.AssetIDs(); });
    out.insert(out.end(), ids.begin(), ids.end());
    return Ferro::RESULT_OK;
  });
}

Result_t AssetStore::RegisterAsset(const std::string& path, const SHA1& digest, AssetInfo& out) {
  if (m_Impl == nullptr) return Ferro::RESULT_INIT;
  return guarded([&] { return m_Impl->Register(path, digest, out); });
}

Result_t AssetStore::ForgetAsset(const UUID& id) {
  if (m_Impl == nullptr) return Ferro::RESULT_INIT;
  return guarded([&] { return m_Impl->ForgetRegistered(id) ? Ferro::RESULT_OK : Ferro::RESULT_NOT_FOUND; });
}

Result_t AssetStore::GetInfoForAssetID(const UUID& id, AssetInfo& out, bool flag) const {
  AssetInfoList found;
  const Result_t result = GetInfoForAssetIDList({id}, found, flag);
  if (result == Ferro::RESULT_FALSE) return Ferro::RESULT_NOT_FOUND;
  if (result.Success()) out = found.front();
  return result;
}

Result_t AssetStore::GetInfoForAssetIDList(const UUIDList& ids, AssetInfoList& out, bool flag) const {
  if (m_Impl == nullptr) return Ferro::RESULT_INIT;
  const ui32_t barred = flag ? FatalAssetProblems : 0;
  return guarded([&] {
    return m_Impl->Ask([&](const StoreIndex& index) {
      Result_t result = Ferro::RESULT_OK;
      AssetFinder finder(index);
      for (const UUID& id : ids) {
        const std::vector<AssetRecord> places = finder.Find(id);
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
