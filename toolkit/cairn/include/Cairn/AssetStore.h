// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/AssetRecord.h>
#include <Cairn/Export.h>
#include <Cairn/IAssetLookup.h>
#include <Cairn/StoreFailure.h>

#include <Ferro/FunctionRef.h>
#include <Ferro/mem_ptr.h>

#include <string>
#include <vector>

namespace Cairn {

/// How far a verification has come.
struct VerifyProgress {
  ui64_t BytesDone = 0;
  ui64_t BytesTotal = 0;
  ui32_t FilesDone = 0;
  ui32_t FilesTotal = 0;
  double BytesPerSecond = 0;  ///< over the whole verification so far
};

/// How far the scan of a folder has come.
struct ScanProgress {
  ui32_t FilesDone = 0;
  ui32_t FilesTotal = 0;  ///< those that did not change, which take no time, included
};

/// The stock asset lookup: folders of packages and loose files, indexed in SQLite.
///
/// Packages are found by their asset maps, at any depth below the folders given; a folder with a packing list alone, and
/// files of no package, serve too. What a file is, is found by looking inside. All folders answer together, so that a
/// supplemental package in one place finds its original in another. Nothing in a folder is ever changed.
///
/// The index lies in memory, or in a file that survives restarts: a file whose size and time are as they were, and that
/// may still be read, is not opened again. Several processes may use one index file at once; each change is one transaction, so that a process
/// that dies leaves the index as it was before or after.
///
/// Where memory runs out, operations return RESULT_ALLOC, and those that return no result answer nothing.
///
/// Any thread may call the const operations at any time once Open has returned; the others belong to one thread at a
/// time. No operation of another process or thread that takes time keeps a const operation waiting.
class CAIRN_API AssetStore : public IAssetLookup {
 public:
  AssetStore();
  ~AssetStore() override;
  AssetStore(const AssetStore&) = delete;
  AssetStore& operator=(const AssetStore&) = delete;

  /// Asked by the calling thread before each file; false cancels. It must not call operations that are not const.
  using OnScan = Ferro::FunctionRef<bool(const ScanProgress&)>;

  /// Called by one thread at a time; false cancels.
  using OnVerify = Ferro::FunctionRef<bool(const VerifyProgress&)>;

  /// Opens the index; one that is open already is closed first. Without a name the index lies in memory.
  /// @param busy_timeout_ms  how long each operation waits for another process that keeps the index locked.
  /// @return RESULT_OK; RESULT_CN_STORE, logged, for a file that is no index of this version or cannot be opened:
  ///         LastFailure tells which.
  [[nodiscard]] Result_t Open(const std::string& index_file = "", ui32_t busy_timeout_ms = 30'000);

  /// The latest failure of the index, of Open or of any operation since: why one answered RESULT_CN_STORE, or nothing
  /// though there was something. Operations that succeed leave it, Open and ClearFailure put it back to SF_NONE. Any
  /// thread may ask, at any time; a failure that another thread met is told as well.
  [[nodiscard]] StoreFailure LastFailure() const;
  void ClearFailure();

  /// Adds a folder, or looks for changes in it when it was added before.
  /// @return RESULT_OK; RESULT_INIT before Open; RESULT_NOT_FOUND, RESULT_NO_PERM, RESULT_NOTAFILE (no folder);
  ///         RESULT_CANCELLED, the index then being as it was; RESULT_CN_STORE.
  [[nodiscard]] Result_t AddFolder(const std::string& folder, OnScan progress = {});
  /// Looks for changes in all folders, and in the files registered. A folder that is not there now is logged and keeps
  /// its assets, which are then missing. Cancelled, it leaves the folders not yet scanned as they were.
  [[nodiscard]] Result_t Refresh(OnScan progress = {});
  /// Forgets a folder with its assets. RESULT_NOT_FOUND for one that was not added.
  [[nodiscard]] Result_t Forget(const std::string& folder);
  [[nodiscard]] std::vector<std::string> Folders() const;

  // The six below answer nothing before Open and where the index fails, which is logged: LastFailure tells it apart.

  /// Every asset, in order of package and path; one that lies in several places has a record for each.
  [[nodiscard]] std::vector<AssetRecord> Assets() const;
  /// Every place of one asset, the one that lookups answer first.
  [[nodiscard]] std::vector<AssetRecord> FindAsset(const UUID& id) const;
  /// What the packages say of one file: a record for each asset that it is, none for a file that is no asset.
  [[nodiscard]] std::vector<AssetRecord> FindFile(const std::string& filename) const;
  [[nodiscard]] std::vector<PackageRecord> Packages() const;
  /// What this object's latest scan of each folder could not read, in order of path: files, folders, and symbolic links
  /// that lead nowhere. Not kept in the index. A file system's own lost+found is none of it.
  [[nodiscard]] std::vector<UnreadableEntry> Unreadable() const;

  /// Looks for changes, then computes the digests of files with a listed digest. What is found of each file is kept in
  /// the index at once, so that a verification that was cancelled goes on where it was.
  /// @param ids       which assets; all when empty. Files verified before and not changed since are not read again.
  /// @param threads   how many files are read at once, 64 at most; 0 chooses by the processor.
  /// A file that cannot be read has AP_READ_FAILED in its records from then on, until it changes or is read.
  /// @param progress  called every `interval_ms` or so and at the end, from the threads that read, by one of them at a
  ///                  time; false from it cancels. It must not throw, nor call operations of this store that are not
  ///                  const.
  /// @param interval_ms  0: after each piece that was read.
  /// @return RESULT_OK when every listed digest is the file's; RESULT_FALSE when some is not, some file is missing or
  ///         some asset not known; RESULT_CANCELLED; RESULT_ALLOC, with some files not read; RESULT_CN_STORE.
  [[nodiscard]] Result_t VerifyDigests(const UUIDList& ids, ui32_t threads = 0, OnVerify progress = {},
                                       ui32_t interval_ms = 100);

  [[nodiscard]] Result_t GetAssetIDList(UUIDList& out) const override;
  /// Adds one file as a loose asset, wherever it lies; `digest` may be without value.
  /// @return RESULT_OK; RESULT_CN_VALUE for a file without an identifier of its own; RESULT_CN_STORE; otherwise as
  ///         Ferro::FileReader.
  [[nodiscard]] Result_t RegisterAsset(const std::string& path, const SHA1& digest, AssetInfo& out) override;
  /// Forgets the files that were registered as this asset; files of folders stay. RESULT_NOT_FOUND where there is none.
  [[nodiscard]] Result_t ForgetAsset(const UUID& id);
  /// With `flag` true only assets without fatal problems are answered, RESULT_NOT_FOUND for others. Of several places
  /// of an asset the one with the least problems is answered, and of equal ones one that a packing list names.
  [[nodiscard]] Result_t GetInfoForAssetID(const UUID& id, AssetInfo& out, bool flag) const override;
  [[nodiscard]] Result_t GetInfoForAssetIDList(const UUIDList& ids, AssetInfoList& out, bool flag) const override;

 private:
  class Impl;
  Ferro::mem_ptr<Impl> m_Impl;
};

}  // namespace Cairn
