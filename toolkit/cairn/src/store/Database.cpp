// SPDX-License-Identifier: BSD-3-Clause
#include "Database.h"

#include <sys/stat.h>

#include <algorithm>
#include <climits>

namespace Cairn {

namespace {

// Extended result codes have the primary one in their lowest byte.
StoreFailure_t KindOf(int code) {
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return SF_LOCKED;
    case SQLITE_FULL:
      return SF_FULL;
    case SQLITE_CORRUPT:
      return SF_CORRUPT;
    case SQLITE_NOTADB:
      return SF_NOT_A_DATABASE;
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return SF_READ_ONLY;
    case SQLITE_CANTOPEN:
      return SF_CANNOT_OPEN;
    case SQLITE_TOOBIG:
      return SF_TOO_LARGE;
    case SQLITE_IOERR:
      return SF_IO;
    default:
      return SF_OTHER;
  }
}

}  // namespace

Database::Database(const std::string& filename, ui32_t busy_timeout_ms) : m_File(filename) {
  CheckFileSize();
  sqlite3* handle = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;
  const int code = sqlite3_open_v2(filename.empty() ? ":memory:" : filename.c_str(), &handle, flags, nullptr);
  m_Handle.reset(handle);
  if (code != SQLITE_OK) throw Failure(code, sqlite3_errstr(code));
  sqlite3_busy_timeout(handle, static_cast<int>(std::min<ui32_t>(busy_timeout_ms, INT_MAX)));
  Harden();
}

// Of a large file even the first query may read all: it is refused before it is opened.
void Database::CheckFileSize() const {
  for (const char* suffix : {"", "-wal"}) {
    struct stat status = {};
    if (!m_File.empty() && stat((m_File + suffix).c_str(), &status) == 0 && status.st_size > MaxFileSize)
      throw Failure(SF_TOO_LARGE, "it is larger than 256 MiB");
  }
}

// A schema from outside could have code run while it is read: triggers, views, functions with effects.
void Database::Harden() const {
  sqlite3_limit(Handle(), SQLITE_LIMIT_LENGTH, MaxValueSize);
  sqlite3_db_config(Handle(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(Handle(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(Handle(), SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_db_config(Handle(), SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
}

DatabaseError Database::Failure(StoreFailure_t kind, const char* reason) const {
  return {{kind, m_File, reason}};
}

DatabaseError Database::Failure(int code, const char* reason) const {
  return Failure(KindOf(code), reason);
}

void Database::Execute(const char* sql) const {
  const int code = sqlite3_exec(Handle(), sql, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) throw Failure(code, sqlite3_errmsg(Handle()));
}

void Database::UseWriteAheadLog() const {
  sqlite3_exec(Handle(), "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL", nullptr, nullptr, nullptr);
}

Statement::Statement(const Database& database, const char* sql) : m_Database(database) {
  sqlite3_stmt* handle = nullptr;
  const int code = sqlite3_prepare_v2(database.Handle(), sql, -1, &handle, nullptr);
  m_Handle.reset(handle);
  Check(code);
}

Statement& Statement::Bind(std::string_view text) {
  Check(sqlite3_bind_text64(m_Handle.get(), m_Parameter++, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
  return *this;
}

Statement& Statement::Bind(i64_t number) {
  Check(sqlite3_bind_int64(m_Handle.get(), m_Parameter++, number));
  return *this;
}

Statement& Statement::Bind(std::span<const ui8_t> bytes) {
  Check(sqlite3_bind_blob64(m_Handle.get(), m_Parameter++, bytes.data(), bytes.size(), SQLITE_TRANSIENT));
  return *this;
}

Statement& Statement::BindNull() {
  Check(sqlite3_bind_null(m_Handle.get(), m_Parameter++));
  return *this;
}

bool Statement::Step() {
  m_Column = 0;
  const int code = sqlite3_step(m_Handle.get());
  if (code != SQLITE_ROW && code != SQLITE_DONE) Check(code);
  return code == SQLITE_ROW;
}

void Statement::Run() {
  while (Step()) {
  }
  Reset();
}

void Statement::Reset() {
  sqlite3_reset(m_Handle.get());
  m_Parameter = 1;
}

std::string Statement::Text() {
  const int column = m_Column++;
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(m_Handle.get(), column));
  const int length = sqlite3_column_bytes(m_Handle.get(), column);
  return text == nullptr ? std::string() : std::string(text, static_cast<size_t>(length));
}

i64_t Statement::Number() {
  return sqlite3_column_int64(m_Handle.get(), m_Column++);
}

void Statement::Check(int code) const {
  if (code != SQLITE_OK) throw m_Database.Failure(code, sqlite3_errmsg(m_Database.Handle()));
}

Transaction::Transaction(const Database& database, Kind_t kind) : m_Database(database) {
  m_Database.Execute(kind == Writing ? "BEGIN IMMEDIATE" : "BEGIN");
}

Transaction::~Transaction() {
  if (m_Open) sqlite3_exec(m_Database.Handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::Commit() {
  m_Database.Execute("COMMIT");
  m_Open = false;
}

}  // namespace Cairn
