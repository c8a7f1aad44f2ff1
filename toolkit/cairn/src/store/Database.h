// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/StoreFailure.h>

#include <sqlite3.h>

#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace Cairn {

/// Thrown where SQLite refuses something; caught at the store's operations, which log it.
struct DatabaseError {
  StoreFailure Failure;
};

/// One connection to an SQLite database. One thread at a time.
class Database {
 public:
  static constexpr i64_t MaxFileSize = 256 * 1024 * 1024;  // bytes; half a million assets
  static constexpr int MaxValueSize = 16 * 1024 * 1024;    // bytes of a text, blob or statement

  /// Opens or creates a database; `filename` empty: in memory.
  /// A file that somebody else made can hold anything: views and triggers are refused, and so is what is larger than
  /// MaxFileSize, or than MaxValueSize in one place.
  /// @param busy_timeout_ms  how long a statement waits for another process that keeps the database locked.
  Database(const std::string& filename, ui32_t busy_timeout_ms);

  void Execute(const char* sql) const;
  /// Lets readers go on while another process writes. Where that cannot be had, because the file system does not allow
  /// it or another process is just doing the same, the database works as it is.
  void UseWriteAheadLog() const;

  /// An error of this database, to be thrown.
  [[nodiscard]] DatabaseError Failure(StoreFailure_t kind, const char* reason) const;
  /// Likewise, for a result code of SQLite.
  [[nodiscard]] DatabaseError Failure(int code, const char* reason) const;
  [[nodiscard]] sqlite3* Handle() const { return m_Handle.get(); }

 private:
  struct Closer {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
  };
  void CheckFileSize() const;
  void Harden() const;

  std::string m_File;  // empty: in memory
  std::unique_ptr<sqlite3, Closer> m_Handle;
};

/// A prepared statement: bind its parameters in order, step through its rows, read its columns in order.
class Statement {
 public:
  /// The database must outlive it.
  Statement(const Database& database, const char* sql);

  Statement& Bind(std::string_view text);
  Statement& Bind(i64_t number);
  Statement& Bind(std::span<const ui8_t> bytes);
  Statement& BindNull();
  /// An identifier; null when it has no value.
  template <ui32_t N>
  Statement& Bind(const Ferro::Identifier<N>& id) {
    return id.HasValue() ? Bind(std::span<const ui8_t>(id.Bytes())) : BindNull();
  }

  /// True when there is a row.
  bool Step();
  /// Runs a statement without rows, which may then be bound anew.
  void Run();
  void Reset();

  [[nodiscard]] std::string Text();
  [[nodiscard]] i64_t Number();
  template <class IdentifierT>
  [[nodiscard]] IdentifierT Identifier() {
    IdentifierT id;
    const int column = m_Column++;
    if (sqlite3_column_bytes(m_Handle.get(), column) == int{IdentifierT::Size})
      id.Set(static_cast<const ui8_t*>(sqlite3_column_blob(m_Handle.get(), column)));
    return id;
  }

 private:
  void Check(int code) const;

  struct Finalizer {
    void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
  };
  const Database& m_Database;
  std::unique_ptr<sqlite3_stmt, Finalizer> m_Handle;
  int m_Parameter = 1;
  int m_Column = 0;
};

/// Begins a transaction and rolls it back unless it is committed.
class Transaction {
 public:
  enum Kind_t {
    Reading,  ///< sees the database as it is at its first statement
    Writing,  ///< waits for other processes' to end
  };
  /// The database must outlive it.
  Transaction(const Database& database, Kind_t kind);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void Commit();

 private:
  const Database& m_Database;
  bool m_Open = true;
};

}  // namespace Cairn
