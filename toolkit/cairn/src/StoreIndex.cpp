// SPDX-License-Identifier: BSD-3-Clause
#include "StoreIndex.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace Cairn {

namespace {

constexpr i64_t SchemaVersion = 1;

// A file's stamp and content are what one look inside told; its digest is null until it is computed. A package's
// findings and packing lists are line-separated texts. Rows of one folder go with it.
constexpr const char* Schema = R"(
CREATE TABLE folders (path TEXT PRIMARY KEY, present INTEGER NOT NULL) WITHOUT ROWID;
CREATE TABLE files (
  path TEXT PRIMARY KEY, folder TEXT NOT NULL, size INTEGER NOT NULL, modified INTEGER NOT NULL,
  type INTEGER NOT NULL, id BLOB, digest BLOB) WITHOUT ROWID;
CREATE INDEX files_by_folder ON files (folder);
CREATE TABLE packages (
  root TEXT PRIMARY KEY, folder TEXT NOT NULL, map_id BLOB, packing_lists TEXT NOT NULL,
  findings TEXT NOT NULL) WITHOUT ROWID;
CREATE TABLE assets (
  id BLOB NOT NULL, path TEXT NOT NULL, root TEXT NOT NULL, folder TEXT NOT NULL, listed_size INTEGER,
  listed_digest BLOB, problems INTEGER NOT NULL);
CREATE INDEX assets_by_id ON assets (id);
CREATE INDEX assets_by_root ON assets (root);
PRAGMA user_version = 1;
)";

// What stands in an asset's row, then what its file and its folder say today.
constexpr std::string_view AssetRows =
    "SELECT a.id, a.path, a.root, a.listed_size IS NOT NULL, a.listed_size, a.listed_digest, a.problems, "
    "f.path IS NOT NULL AND d.present, f.size, f.type, f.digest IS NOT NULL, f.digest FROM assets a "
    "JOIN folders d ON d.path = a.folder LEFT JOIN files f ON f.path = a.path ";

std::string asset_query(std::string_view rest) {
  return std::string(AssetRows).append(rest);
}

AssetRecord read_asset(Statement& row) {
  AssetRecord record;
  record.Info.ID = row.Identifier<UUID>();
  record.Info.RealFilename = row.Text();
  record.Package = row.Text();
  record.HasListedSize = row.Number() != 0;
  record.ListedSize = static_cast<fsize_t>(row.Number());
  record.Info.Digest = row.Identifier<SHA1>();
  record.Problems = static_cast<ui32_t>(row.Number());
  const bool present = row.Number() != 0;
  record.Info.FileSize = static_cast<fsize_t>(row.Number());
  record.Info.FileType = static_cast<FileType_t>(row.Number());
  const bool computed = row.Number() != 0;
  const SHA1 digest = row.Identifier<SHA1>();

  if (!present && !record.Info.RealFilename.empty()) record.Problems |= AP_MISSING_FILE;
  if (computed && record.Info.Digest.HasValue()) {
    record.DigestVerified = digest == record.Info.Digest;
    if (!record.DigestVerified) record.Problems |= AP_DIGEST_MISMATCH;
  }
  return record;
}

std::string join_lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  return text;
}

std::vector<std::string> split_lines(const std::string& text) {
  std::vector<std::string> lines;
  for (size_t start = 0; start < text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

}  // namespace

StoreIndex::StoreIndex(const std::string& filename) : m_Database(filename.empty() ? ":memory:" : filename) {
  if (!filename.empty()) m_Database.Execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
  Transaction transaction(m_Database);
  Create();
  transaction.Commit();
}

void StoreIndex::Create() {
  Statement version(m_Database, "PRAGMA user_version");
  version.Step();
  const i64_t found = version.Number();
  version.Reset();
  if (found == SchemaVersion) return;
  Statement tables(m_Database, "SELECT count(*) FROM sqlite_master");
  tables.Step();
  const bool empty = tables.Number() == 0;
  tables.Reset();
  if (found != 0 || !empty) throw DatabaseError{"it is no asset index, or one of another version"};
  m_Database.Execute(Schema);
}

std::vector<std::string> StoreIndex::Folders() const {
  std::vector<std::string> folders;
  Statement rows(m_Database, "SELECT path FROM folders WHERE path <> '' ORDER BY path");
  while (rows.Step()) folders.push_back(rows.Text());
  return folders;
}

void StoreIndex::PutFolder(const std::string& folder, bool present) {
  Statement(m_Database, "INSERT OR REPLACE INTO folders VALUES (?, ?)").Bind(folder).Bind(i64_t{present}).Run();
}

bool StoreIndex::RemoveFolder(const std::string& folder) {
  for (const char* sql : {"DELETE FROM assets WHERE folder = ?", "DELETE FROM packages WHERE folder = ?",
                          "DELETE FROM files WHERE folder = ?", "DELETE FROM folders WHERE path = ?"})
    Statement(m_Database, sql).Bind(folder).Run();
  return sqlite3_changes(m_Database.Handle()) > 0;
}

ScannedFiles StoreIndex::Files(const std::string& folder) const {
  ScannedFiles files;
  Statement rows(m_Database, "SELECT path, size, modified, type, id FROM files WHERE folder = ? ORDER BY path");
  rows.Bind(folder);
  while (rows.Step()) {
    std::string path = rows.Text();
    ScannedFile file;
    file.Stamp.Size = static_cast<fsize_t>(rows.Number());
    file.Stamp.ModifiedNs = rows.Number();
    file.Content.Type = static_cast<FileType_t>(rows.Number());
    file.Content.ID = rows.Identifier<UUID>();
    files.emplace_hint(files.end(), std::move(path), std::move(file));
  }
  return files;
}

void StoreIndex::PutFile(const std::string& folder, const std::string& path, const ScannedFile& file) {
  Statement(m_Database, "INSERT OR REPLACE INTO files VALUES (?, ?, ?, ?, ?, ?, NULL)")
      .Bind(path)
      .Bind(folder)
      .Bind(static_cast<i64_t>(file.Stamp.Size))
      .Bind(file.Stamp.ModifiedNs)
      .Bind(i64_t{file.Content.Type})
      .Bind(file.Content.ID)
      .Run();
}

void StoreIndex::RemoveFile(const std::string& path) {
  Statement(m_Database, "DELETE FROM files WHERE path = ?").Bind(path).Run();
}

void StoreIndex::PutDigest(const std::string& path, const FileStamp& stamp, const SHA1& digest) {
  Statement(m_Database, "UPDATE files SET digest = ? WHERE path = ? AND size = ? AND modified = ?")
      .Bind(digest)
      .Bind(path)
      .Bind(static_cast<i64_t>(stamp.Size))
      .Bind(stamp.ModifiedNs)
      .Run();
}

void StoreIndex::PutPackage(const std::string& folder, const PackageReading& reading) {
  std::vector<std::string> lists;
  for (const UUID& id : reading.Package.PackingLists) lists.push_back(id.EncodeString());
  Statement(m_Database, "INSERT OR REPLACE INTO packages VALUES (?, ?, ?, ?, ?)")
      .Bind(reading.Package.Folder)
      .Bind(folder)
      .Bind(reading.Package.AssetMapID)
      .Bind(join_lines(lists))
      .Bind(join_lines(reading.Package.Findings))
      .Run();

  for (const AssetRecord& asset : reading.Assets) PutAsset(folder, asset);
}

void StoreIndex::PutAsset(const std::string& folder, const AssetRecord& asset) {
  Statement insert(m_Database, "INSERT INTO assets VALUES (?, ?, ?, ?, ?, ?, ?)");
  insert.Bind(asset.Info.ID).Bind(asset.Info.RealFilename).Bind(asset.Package).Bind(folder);
  if (asset.HasListedSize)
    insert.Bind(static_cast<i64_t>(asset.ListedSize));
  else
    insert.BindNull();
  insert.Bind(asset.Info.Digest).Bind(i64_t{asset.Problems}).Run();
}

void StoreIndex::RemoveAssets(const std::string& folder, const std::string& path) {
  Statement(m_Database, "DELETE FROM assets WHERE folder = ? AND path = ?").Bind(folder).Bind(path).Run();
}

void StoreIndex::RemovePackage(const std::string& root) {
  Statement(m_Database, "DELETE FROM assets WHERE root = ?").Bind(root).Run();
  Statement(m_Database, "DELETE FROM packages WHERE root = ?").Bind(root).Run();
}

void StoreIndex::RemovePackagesOf(const std::string& folder) {
  Statement(m_Database, "DELETE FROM assets WHERE folder = ?").Bind(folder).Run();
  Statement(m_Database, "DELETE FROM packages WHERE folder = ?").Bind(folder).Run();
}

std::vector<AssetRecord> StoreIndex::Assets() const {
  std::vector<AssetRecord> records;
  Statement rows(m_Database, asset_query("ORDER BY a.root, a.path, a.id").c_str());
  while (rows.Step()) records.push_back(read_asset(rows));
  return records;
}

std::vector<PackageRecord> StoreIndex::Packages() const {
  std::vector<PackageRecord> packages;
  Statement rows(m_Database,
                 "SELECT root, map_id, packing_lists, findings FROM packages "
                 "WHERE map_id IS NOT NULL OR packing_lists <> '' OR findings <> '' ORDER BY root");
  while (rows.Step()) {
    PackageRecord package;
    package.Folder = rows.Text();
    package.AssetMapID = rows.Identifier<UUID>();
    for (const std::string& line : split_lines(rows.Text()))
      if (const auto id = UUID::FromHex(line)) package.PackingLists.push_back(*id);
    package.Findings = split_lines(rows.Text());
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
    : m_Rows(index.Connection(), asset_query("WHERE a.id = ? ORDER BY a.root, a.path").c_str()) {}

std::vector<AssetRecord> AssetFinder::Find(const UUID& id) {
  std::vector<AssetRecord> records;
  m_Rows.Bind(id);
  while (m_Rows.Step()) records.push_back(read_asset(m_Rows));
  m_Rows.Reset();
  std::stable_sort(records.begin(), records.end(), [](const AssetRecord& a, const AssetRecord& b) {
    return std::pair(a.Problems & FatalAssetProblems, a.Problems) <
           std::pair(b.Problems & FatalAssetProblems, b.Problems);
  });
  return records;
}

}  // namespace Cairn
