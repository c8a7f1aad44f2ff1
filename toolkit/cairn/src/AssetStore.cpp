// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/AssetStore.h>

#include "DigestVerification.h"
#include "StoreIndex.h"

#include <Ferro/LogSink.h>
#include <Ferro/Path.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <map>
#include <mutex>
#include <set>
#include <thread>

namespace Cairn {

namespace {

// A folder's files as they are now: those that are as they were keep what was known of them, the others are looked into.
struct FolderChanges {
  ScannedFiles Files;                // all there are now
  std::vector<std::string> Changed;  // new or changed
  std::vector<std::string> Removed;
  bool Rearranged = false;  // asset maps or packing lists came, went or changed
};

bool arranges(FileType_t type) {
  return type == FT_ASSETMAP || type == FT_PKL;
}

FolderChanges find_changes(const FileStamps& found, const ScannedFiles& known) {
  FolderChanges changes;
  for (const auto& [path, stamp] : found) {
    const auto before = known.find(path);
    if (before != known.end() && before->second.Stamp == stamp) {
      changes.Files.emplace_hint(changes.Files.end(), path, before->second);
      continue;
    }
    ScannedFile file{stamp, {}};
    if (const Result_t result = InspectFile(path, file.Content); result.Failure())
      Ferro::DefaultLogSink().Warn("%s: %s\n", path.c_str(), result.Label());
    changes.Rearranged |=
        arranges(file.Content.Type) || (before != known.end() && arranges(before->second.Content.Type));
    changes.Changed.push_back(path);
    changes.Files.emplace_hint(changes.Files.end(), path, file);
  }
  for (const auto& [path, file] : known) {
    if (found.contains(path)) continue;
    changes.Rearranged |= arranges(file.Content.Type);
    changes.Removed.push_back(path);
  }
  return changes;
}

std::map<std::string, ScannedFiles> by_package(const ScannedFiles& files, const std::vector<std::string>& roots) {
  std::map<std::string, ScannedFiles> packages;
  for (const auto& [path, file] : files) packages[RootOf(path, roots)].emplace(path, file);
  return packages;
}

/// Stands for the folder of files that were registered one by one.
constexpr const char* RegisteredFiles = "";

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

ui32_t threads_or_default(ui32_t threads) {
  return threads != 0 ? threads : std::clamp(std::thread::hardware_concurrency(), 1U, 8U);
}

}  // namespace

class AssetStore::Impl {
 public:
  explicit Impl(const std::string& index_file) : m_Index(index_file) {}

  Result_t Update(const std::string& folder) {
    FileStamps found;
    const Result_t result = ScanFolder(folder, found);
    if (result.Failure()) return result;
    ScannedFiles known;
    {
      const std::lock_guard lock(m_Mutex);
      known = m_Index.Files(folder);
    }
    const FolderChanges changes = find_changes(found, known);
    const std::lock_guard lock(m_Mutex);
    Transaction transaction(m_Index.Connection());
    m_Index.PutFolder(folder, true);
    Apply(folder, changes);
    transaction.Commit();
    return Ferro::RESULT_OK;
  }

  void MarkAbsent(const std::string& folder) {
    const std::lock_guard lock(m_Mutex);
    Transaction transaction(m_Index.Connection());
    m_Index.PutFolder(folder, false);
    transaction.Commit();
  }

  bool Forget(const std::string& folder) {
    const std::lock_guard lock(m_Mutex);
    Transaction transaction(m_Index.Connection());
    const bool found = m_Index.RemoveFolder(folder);
    transaction.Commit();
    return found;
  }

  Result_t Register(const std::string& filename, const SHA1& digest, AssetInfo& out) {
    std::string path;
    if (const Result_t result = canonical_path(filename, path); result.Failure()) return result;
    ScannedFile file;
    if (const Result_t result = InspectFile(path, file.Content); result.Failure()) return result;
    if (!file.Content.ID.HasValue()) return RESULT_CN_VALUE;
    if (!StampFile(path, file.Stamp)) return Ferro::RESULT_NOT_FOUND;

    AssetRecord record;
    record.Info.ID = file.Content.ID;
    record.Info.Digest = digest;
    record.Info.RealFilename = path;
    record.Info.FileSize = file.Stamp.Size;
    record.Info.FileType = file.Content.Type;
    record.Package = Ferro::PathDirname(path);

    const std::lock_guard lock(m_Mutex);
    Transaction transaction(m_Index.Connection());
    m_Index.PutFolder(RegisteredFiles, true);
    m_Index.PutFile(RegisteredFiles, path, file);
    m_Index.RemoveAssets(RegisteredFiles, path);
    m_Index.PutAsset(RegisteredFiles, record);
    transaction.Commit();
    out = record.Info;
    return Ferro::RESULT_OK;
  }

  void KeepDigests(const std::vector<DigestJob>& jobs) {
    const std::lock_guard lock(m_Mutex);
    Transaction transaction(m_Index.Connection());
    for (const DigestJob& job : jobs)
      if (job.Computed.HasValue()) m_Index.PutDigest(job.Path, job.Stamp, job.Computed);
    transaction.Commit();
  }

  /// Asks the index something, one thread at a time.
  template <class Question>
  auto Ask(Question question) const {
    const std::lock_guard lock(m_Mutex);
    return question(m_Index);
  }

 private:
  // Only packages that a change touches are worked out anew, unless documents changed that say what is a package.
  void Apply(const std::string& folder, const FolderChanges& changes) {
    if (changes.Changed.empty() && changes.Removed.empty()) return;
    for (const std::string& path : changes.Removed) m_Index.RemoveFile(path);
    for (const std::string& path : changes.Changed) m_Index.PutFile(folder, path, changes.Files.at(path));

    const std::vector<std::string> roots = PackageRoots(changes.Files);
    std::set<std::string> touched;
    for (const auto* paths : {&changes.Changed, &changes.Removed})
      for (const std::string& path : *paths) touched.insert(RootOf(path, roots));

    if (changes.Rearranged) m_Index.RemovePackagesOf(folder);
    const auto packages = by_package(changes.Files, roots);
    for (const std::string& root : touched)
      if (!packages.contains(root)) m_Index.RemovePackage(root);
    for (const auto& [root, files] : packages) {
      if (!changes.Rearranged && !touched.contains(root)) continue;
      m_Index.RemovePackage(root);
      m_Index.PutPackage(folder, ReadPackage(root, files));
    }
  }

  mutable std::mutex m_Mutex;
  StoreIndex m_Index;  // guarded by m_Mutex
};

namespace {

Result_t log_failure(const DatabaseError& error) {
  Ferro::DefaultLogSink().Error("Asset index: %s\n", error.Text.c_str());
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

Result_t AssetStore::Open(const std::string& index_file) {
  m_Impl.reset();
  return guarded([&] {
    m_Impl = std::make_unique<Impl>(index_file);
    return Ferro::RESULT_OK;
  });
}

Result_t AssetStore::AddFolder(const std::string& folder) {
  if (m_Impl == nullptr) return Ferro::RESULT_INIT;
  std::string path;
  if (const Result_t result = canonical_path(folder, path); result.Failure()) return result;
  // One file belongs to one folder: the outer one takes the inner ones in.
  for (const std::string& known : Folders()) {
    if (known != path && is_inside(path, known)) return guarded([&] { return m_Impl->Update(known); });
    if (known != path && is_inside(known, path)) static_cast<void>(Forget(known));
  }
  return guarded([&] { return m_Impl->Update(path); });
}

Result_t AssetStore::Refresh() {
  if (m_Impl == nullptr) return Ferro::RESULT_INIT;
  return guarded([&] {
    for (const std::string& folder : Folders())
      if (m_Impl->Update(folder).Failure()) m_Impl->MarkAbsent(folder);
    return Ferro::RESULT_OK;
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
  return guarded_answer<std::vector<std::string>>(
      [&] { return m_Impl->Ask([](const StoreIndex& index) { return index.Folders(); }); });
}

std::vector<AssetRecord> AssetStore::Assets() const {
  if (m_Impl == nullptr) return {};
  return guarded_answer<std::vector<AssetRecord>>(
      [&] { return m_Impl->Ask([](const StoreIndex& index) { return index.Assets(); }); });
}

std::vector<AssetRecord> AssetStore::FindAsset(const UUID& id) const {
  if (m_Impl == nullptr) return {};
  return guarded_answer<std::vector<AssetRecord>>(
      [&] { return m_Impl->Ask([&](const StoreIndex& index) { return AssetFinder(index).Find(id); }); });
}

std::vector<PackageRecord> AssetStore::Packages() const {
  if (m_Impl == nullptr) return {};
  return guarded_answer<std::vector<PackageRecord>>(
      [&] { return m_Impl->Ask([](const StoreIndex& index) { return index.Packages(); }); });
}

Result_t AssetStore::VerifyDigests(const UUIDList& ids, ui32_t threads,
                                   const std::function<bool(const VerifyProgress&)>& progress) {
  if (m_Impl == nullptr) return Ferro::RESULT_INIT;
  const std::set<UUID> wanted(ids.begin(), ids.end());
  const auto is_wanted = [&](const AssetRecord& record) {
    return record.Info.Digest.HasValue() && (wanted.empty() || wanted.contains(record.Info.ID));
  };
  std::map<std::string, DigestJob> jobs_by_path;
  for (const AssetRecord& record : Assets()) {
    const ui32_t unread = record.Problems & (AP_MISSING_FILE | AP_DIGEST_MISMATCH);
    if (!is_wanted(record) || record.DigestVerified || unread != 0 || record.Info.RealFilename.empty()) continue;
    jobs_by_path.try_emplace(record.Info.RealFilename,
                             DigestJob{record.Info.RealFilename, record.Info.FileSize, record.Info.Digest, {}, {}});
  }
  std::vector<DigestJob> jobs;
  for (auto& [path, job] : jobs_by_path) jobs.push_back(std::move(job));

  const Result_t computed = ComputeDigests(jobs, threads_or_default(threads), progress);
  const Result_t kept = guarded([&] {
    m_Impl->KeepDigests(jobs);
    return Ferro::RESULT_OK;
  });
  if (kept.Failure()) return kept;
  if (computed.Failure()) return computed;
  for (const AssetRecord& record : Assets())
    if (is_wanted(record) && !record.DigestVerified) return Ferro::RESULT_FALSE;
  return Ferro::RESULT_OK;
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
