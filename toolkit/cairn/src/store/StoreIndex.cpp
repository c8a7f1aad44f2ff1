// SPDX-License-Identifier: BSD-3-Clause
#include "StoreIndex.h"

#include <algorithm>
#include <string_view>
#include <tuple>
#include <utility>

namespace Cairn {

namespace {

// The application's number tells an index from other SQLite files. A version is read by itself alone.
constexpr i64_t ApplicationID = 0x43415354;
constexpr i64_t SchemaVersion = 2;

// A file's stamp and content are what its inspection told; its digest is null until it is computed. A package's packing
// lists are identifiers in hexadecimal, one a line; its findings stand in their order by rowid. Rows of one folder go with
// it.
constexpr const char* Schema = R"(
CREATE TABLE folders (path TEXT PRIMARY KEY, present INTEGER NOT NULL, revision INTEGER NOT NULL) WITHOUT ROWID;
CREATE TABLE files (
  folder TEXT NOT NULL, path TEXT NOT NULL, size INTEGER NOT NULL, modified INTEGER NOT NULL, readable INTEGER NOT NULL,
  type INTEGER NOT NULL, id BLOB, digest BLOB, PRIMARY KEY (folder, path)) WITHOUT ROWID;
CREATE TABLE packages (
  folder TEXT NOT NULL, root TEXT NOT NULL, map_id BLOB, packing_lists TEXT NOT NULL,
  PRIMARY KEY (folder, root)) WITHOUT ROWID;
CREATE TABLE findings (
  folder TEXT NOT NULL, root TEXT NOT NULL, problem INTEGER NOT NULL, path TEXT NOT NULL, asset BLOB);
CREATE INDEX findings_by_root ON findings (folder, root);
CREATE TABLE assets (
  id BLOB NOT NULL, path TEXT NOT NULL, root TEXT NOT NULL, folder TEXT NOT NULL, listed_size INTEGER,
  listed_digest BLOB, problems INTEGER NOT NULL);
CREATE INDEX assets_by_id ON assets (id);
CREATE INDEX assets_by_root ON assets (folder, root);
PRAGMA application_id = 0x43415354;
PRAGMA user_version = 2;
)";

// What stands in an asset's row, then what its file and its folder say today.
constexpr std::string_view AssetRows =
    "SELECT a.id, a.path, a.root, a.listed_size IS NOT NULL, a.listed_size, a.listed_digest, a.problems, "
    "f.path IS NOT NULL AND d.present, f.size, f.readable, f.type, f.id, f.digest FROM assets a "
    "JOIN folders d ON d.path = a.folder LEFT JOIN files f ON f.folder = a.folder AND f.path = a.path ";

std::string AssetQuery(std::string_view rest) {
  return std::string(AssetRows).append(rest);
}

// Kinds of files that name themselves: without a name they are broken.
bool HasOwnID(FileType_t type) {
  switch (type) {
    case FT_CPL:
    case FT_PKL:
    case FT_SHOW:
    case FT_RPL:
    case FT_TI_SUBTITLE:
    case FT_DCST:
    case FT_QUIRE_MPEG2_VES:
    case FT_QUIRE_JP2K_J2C:
    case FT_QUIRE_JP2K_J2C_S:
    case FT_QUIRE_PCM:
    case FT_QUIRE_TIMED_TEXT:
    case FT_QUIRE_DCDATA:
    case FT_QUIRE_ATMOS:
      return true;
    default:
      return false;
  }
}

ui32_t FileProblems(Statement& row, AssetRecord& record) {
  const bool present = row.Number() != 0;
  record.Info.FileSize = static_cast<fsize_t>(row.Number());
  const bool readable = row.Number() != 0;
  record.Info.FileType = static_cast<FileType_t>(row.Number());
  const UUID own = record.FileID = row.Identifier<UUID>();
  const SHA1 digest = row.Identifier<SHA1>();
  if (!present && !record.Info.RealFilename.empty()) return AP_MISSING_FILE;
  if (!present) return 0;

  ui32_t problems = 0;
  if (!readable || (HasOwnID(record.Info.FileType) && !own.HasValue())) problems |= AP_UNREADABLE;
  // The Id of a timed-text document is not its asset's (ST 428-7).
  if (own.HasValue() && own != record.Info.ID && record.Info.FileType != FT_DCST) problems |= AP_WRONG_ID;
  if (digest.HasValue() && record.Info.Digest.HasValue()) {
    record.DigestVerified = digest == record.Info.Digest;
    if (!record.DigestVerified) problems |= AP_DIGEST_MISMATCH;
  }
  return problems;
}

AssetRecord ReadAsset(Statement& row) {
  AssetRecord record;
  record.Info.ID = row.Identifier<UUID>();
  record.Info.RealFilename = row.Text();
  record.Package = row.Text();
  record.HasListedSize = row.Number() != 0;
  record.ListedSize = static_cast<fsize_t>(row.Number());
  record.Info.Digest = row.Identifier<SHA1>();
  record.Problems = static_cast<ui32_t>(row.Number());
  record.Problems |= FileProblems(row, record);
  return record;
}

std::string JoinLines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  return text;
}

std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines;
  for (size_t start = 0; start < text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

// The statements of an update, prepared once for many rows.
class Writing {
 public:
  explicit Writing(const Database& database) : m_Database(database) {}

  // A digest computed under another folder stays known for as long as the file is the same.
  void PutFile(const std::string& folder, const std::string& path, const ScannedFile& file) {
    m_PutFile.Bind(folder)
        .Bind(path)
        .Bind(static_cast<i64_t>(file.Stamp.Size))
        .Bind(file.Stamp.ModifiedNs)
        .Bind(i64_t{file.Readable})
        .Bind(i64_t{file.Content.Type})
        .Bind(file.Content.ID)
        .Run();
  }

  void RemoveFile(const std::string& folder, const std::string& path) { m_RemoveFile.Bind(folder).Bind(path).Run(); }

  void PutAsset(const std::string& folder, const AssetRecord& asset) {
    m_PutAsset.Bind(std::span<const ui8_t>(asset.Info.ID.Bytes()))
        .Bind(asset.Info.RealFilename)
        .Bind(asset.Package)
        .Bind(folder);
    if (asset.HasListedSize)
      m_PutAsset.Bind(static_cast<i64_t>(asset.ListedSize));
    else
      m_PutAsset.BindNull();
    m_PutAsset.Bind(asset.Info.Digest).Bind(i64_t{asset.Problems}).Run();
  }

  void PutPackage(const std::string& folder, const PackageReading& reading) {
    std::vector<std::string> lists;
    for (const UUID& id : reading.Package.PackingLists) lists.push_back(id.EncodeString());
    m_PutPackage.Bind(folder)
        .Bind(reading.Package.Folder)
        .Bind(reading.Package.AssetMapID)
        .Bind(JoinLines(lists))
        .Run();
    for (const PackageFinding& finding : reading.Package.Findings)
      m_PutFinding.Bind(folder)
          .Bind(reading.Package.Folder)
          .Bind(i64_t{finding.Problem})
          .Bind(finding.Path)
          .Bind(finding.AssetID)
          .Run();
    for (const AssetRecord& asset : reading.Assets) PutAsset(folder, asset);
  }

  void RemovePackage(const std::string& folder, const std::string& root) {
    m_RemoveAssets.Bind(folder).Bind(root).Run();
    m_RemoveFindings.Bind(folder).Bind(root).Run();
    m_RemovePackage.Bind(folder).Bind(root).Run();
  }

 private:
  const Database& m_Database;
  Statement m_PutFile{m_Database,
                      "INSERT OR REPLACE INTO files VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, (SELECT max(digest) FROM files "
                      "WHERE folder IN (SELECT path FROM folders) AND path = ?2 AND size = ?3 AND modified = ?4))"};
  Statement m_RemoveFile{m_Database, "DELETE FROM files WHERE folder = ? AND path = ?"};
  Statement m_PutAsset{m_Database, "INSERT INTO assets VALUES (?, ?, ?, ?, ?, ?, ?)"};
  Statement m_PutPackage{m_Database, "INSERT INTO packages VALUES (?, ?, ?, ?)"};
  Statement m_PutFinding{m_Database, "INSERT INTO findings VALUES (?, ?, ?, ?, ?)"};
  Statement m_RemoveFindings{m_Database, "DELETE FROM findings WHERE folder = ? AND root = ?"};
  Statement m_RemoveAssets{m_Database, "DELETE FROM assets WHERE folder = ? AND root = ?"};
  Statement m_RemovePackage{m_Database, "DELETE FROM packages WHERE folder = ? AND root = ?"};
};

}  // namespace

StoreIndex::StoreIndex(const std::string& filename, ui32_t busy_timeout_ms) : m_Database(filename, busy_timeout_ms) {
  bool is_created = false;
  {
    const Transaction one_state(m_Database, Transaction::Reading);
    is_created = IsCreated();
  }
  if (!is_created) {
    Transaction transaction(m_Database, Transaction::Writing);
    if (!IsCreated()) m_Database.Execute(Schema);  // no other process was quicker
    transaction.Commit();
  }
  if (!filename.empty()) m_Database.UseWriteAheadLog();
}

i64_t StoreIndex::Ask(const char* sql) const {
  Statement row(m_Database, sql);
  row.Step();
  return row.Number();
}

bool StoreIndex::IsCreated() const {
  const i64_t application = Ask("PRAGMA application_id");
  const i64_t version = Ask("PRAGMA user_version");
  if (application == ApplicationID && version == SchemaVersion) return true;
  if (application == ApplicationID)
    throw m_Database.Failure(SF_OTHER_VERSION, "it is an asset index of another version");
  if (application != 0 || version != 0 || Ask("SELECT count(*) FROM sqlite_master") != 0)
    throw m_Database.Failure(SF_NOT_AN_INDEX, "it is no asset index");
  return false;
}

std::vector<std::string> StoreIndex::Folders() const {
  std::vector<std::string> folders;
  Statement rows(m_Database, "SELECT path FROM folders WHERE path <> '' ORDER BY path");
  while (rows.Step()) folders.push_back(rows.Text());
  return folders;
}

i64_t StoreIndex::Revision(const std::string& folder) const {
  Statement row(m_Database, "SELECT revision FROM folders WHERE path = ?");
  return row.Bind(folder).Step() ? row.Number() : 0;
}

StoreIndex::FolderState StoreIndex::Folder(const std::string& folder) const {
  const Transaction transaction(m_Database, Transaction::Reading);
  FolderState state;
  Statement row(m_Database, "SELECT revision, present FROM folders WHERE path = ?");
  if (!row.Bind(folder).Step()) return state;
  state.Revision = row.Number();
  state.Present = row.Number() != 0;

  Statement rows(m_Database,
                 "SELECT path, size, modified, readable, type, id FROM files WHERE folder = ? ORDER BY path");
  rows.Bind(folder);
  while (rows.Step()) {
    std::string path = rows.Text();
    ScannedFile file;
    file.Stamp.Size = static_cast<fsize_t>(rows.Number());
    file.Stamp.ModifiedNs = rows.Number();
    file.Readable = rows.Number() != 0;
    file.Content.Type = static_cast<FileType_t>(rows.Number());
    file.Content.ID = rows.Identifier<UUID>();
    state.Files.emplace_hint(state.Files.end(), std::move(path), std::move(file));
  }
  return state;
}

// A revision is never 0, and never one that was before but by the rarest chance.
void StoreIndex::PutFolder(const std::string& folder) {
  Statement(m_Database, "INSERT OR REPLACE INTO folders VALUES (?, 1, random() | 1)").Bind(folder).Run();
}

void StoreIndex::MarkAbsent(const std::string& folder) {
  Statement(m_Database, "UPDATE folders SET present = 0, revision = random() | 1 WHERE path = ? AND present")
      .Bind(folder)
      .Run();
}

bool StoreIndex::RemoveFolder(const std::string& folder) {
  for (const char* sql : {"DELETE FROM assets WHERE folder = ?", "DELETE FROM packages WHERE folder = ?",
                          "DELETE FROM findings WHERE folder = ?", "DELETE FROM files WHERE folder = ?",
                          "DELETE FROM folders WHERE path = ?"})
    Statement(m_Database, sql).Bind(folder).Run();
  return sqlite3_changes(m_Database.Handle()) > 0;
}

void StoreIndex::Apply(const std::string& folder, const FolderUpdate& update) {
  PutFolder(folder);
  Writing writing(m_Database);
  for (const std::string& path : update.Removed) writing.RemoveFile(folder, path);
  for (const auto& [path, file] : update.Changed) writing.PutFile(folder, path, file);
  for (const std::string& root : update.StalePackages) writing.RemovePackage(folder, root);
  for (const PackageReading& package : update.Packages) writing.PutPackage(folder, package);
}

void StoreIndex::PutRegistered(const ScannedFile& file, const AssetRecord& record) {
  const std::string& path = record.Info.RealFilename;
  PutFolder(RegisteredFiles);
  Statement(m_Database, "DELETE FROM assets WHERE folder = ? AND path = ?").Bind(RegisteredFiles).Bind(path).Run();
  Writing writing(m_Database);
  writing.PutFile(RegisteredFiles, path, file);
  writing.PutAsset(RegisteredFiles, record);
}

bool StoreIndex::RemoveRegistered(const UUID& id) {
  const std::span<const ui8_t> bytes(id.Bytes());
  Statement(m_Database,
            "DELETE FROM files WHERE folder = ?1 AND path IN (SELECT path FROM assets WHERE folder = ?1 AND id = ?2)")
      .Bind(RegisteredFiles)
      .Bind(bytes)
      .Run();
  Statement(m_Database, "DELETE FROM assets WHERE folder = ? AND id = ?").Bind(RegisteredFiles).Bind(bytes).Run();
  return sqlite3_changes(m_Database.Handle()) > 0;
}

std::vector<std::string> StoreIndex::RegisteredPaths() const {
  std::vector<std::string> paths;
  Statement rows(m_Database, "SELECT path FROM assets WHERE folder = ?");
  rows.Bind(RegisteredFiles);
  while (rows.Step()) paths.push_back(rows.Text());
  return paths;
}

void StoreIndex::PutDigest(const std::string& path, const FileStamp& stamp, const SHA1& digest) {
  Statement(m_Database,
            "UPDATE files SET digest = ? WHERE folder IN (SELECT path FROM folders) AND path = ? AND size = ? "
            "AND modified = ?")
      .Bind(digest)
      .Bind(path)
      .Bind(static_cast<i64_t>(stamp.Size))
      .Bind(stamp.ModifiedNs)
      .Run();
}

std::vector<AssetRecord> StoreIndex::Assets() const {
  std::vector<AssetRecord> records;
  Statement rows(m_Database, AssetQuery("ORDER BY a.root, a.path, a.id").c_str());
  while (rows.Step()) records.push_back(ReadAsset(rows));
  return records;
}

std::vector<AssetRecord> StoreIndex::FindFile(const std::string& path) const {
  std::vector<AssetRecord> records;
  Statement rows(m_Database, AssetQuery("WHERE a.path = ? ORDER BY a.root, a.id").c_str());
  rows.Bind(path);
  while (rows.Step()) records.push_back(ReadAsset(rows));
  return records;
}

std::vector<PackageRecord> StoreIndex::Packages() const {
  std::vector<PackageRecord> packages;
  const Transaction one_state(m_Database, Transaction::Reading);
  Statement rows(m_Database,
                 "SELECT folder, root, map_id, packing_lists FROM packages p "
                 "WHERE map_id IS NOT NULL OR packing_lists <> '' OR "
                 "EXISTS (SELECT 1 FROM findings f WHERE f.folder = p.folder AND f.root = p.root) ORDER BY root");
  Statement findings(m_Database,
                     "SELECT problem, path, asset FROM findings WHERE folder = ? AND root = ? ORDER BY rowid");
  while (rows.Step()) {
    PackageRecord package;
    const std::string folder = rows.Text();
    package.Folder = rows.Text();
    package.AssetMapID = rows.Identifier<UUID>();
    for (const std::string& line : SplitLines(rows.Text()))
      if (const auto id = UUID::FromHex(line)) package.PackingLists.push_back(*id);
    findings.Bind(folder).Bind(package.Folder);
    while (findings.Step()) {
      PackageFinding& finding = package.Findings.emplace_back();
      finding.Problem = static_cast<PackageProblem_t>(findings.Number());
      finding.Path = findings.Text();
      finding.AssetID = findings.Identifier<UUID>();
    }
    findings.Reset();
    packages.push_back(std::move(package));
  }
  return packages;
}

UUIDList StoreIndex::AssetIDs() const {
  UUIDList ids;
  Statement rows(m_Database, "SELECT DISTINCT id FROM assets ORDER BY id");
  while (rows.Step()) ids.push_back(rows.Identifier<UUID>());
  return ids;
}

AssetFinder::AssetFinder(const StoreIndex& index)
    : m_Transaction(index.Connection(), Transaction::Reading),
      m_Rows(index.Connection(), AssetQuery("WHERE a.id = ? ORDER BY a.root, a.path").c_str()) {}

std::vector<AssetRecord> AssetFinder::Find(const UUID& id) {
  std::vector<AssetRecord> records;
  m_Rows.Bind(std::span<const ui8_t>(id.Bytes()));
  while (m_Rows.Step()) records.push_back(ReadAsset(m_Rows));
  m_Rows.Reset();
  return records;
}

void SortBestFirst(std::vector<AssetRecord>& records) {
  std::stable_sort(records.begin(), records.end(), [](const AssetRecord& a, const AssetRecord& b) {
    return std::tuple(a.Problems & FatalAssetProblems, a.Problems, !a.HasListedSize) <
           std::tuple(b.Problems & FatalAssetProblems, b.Problems, !b.HasListedSize);
  });
}

}  // namespace Cairn
