// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Result.h>
#include <Cairn/Types.h>

#include <sqlite3.h>

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace Cairn {

/// Thrown where SQLite refuses something; caught at the store's operations, which log it.
struct DatabaseError {
  std::string Text;
};

/// One connection to an SQLite database.
class Database {
 public:
  explicit Database(const std::string& filename);

  void Execute(const char* sql);
  [[nodiscard]] sqlite3* Handle() const { return m_Handle.get(); }

 private:
  struct Closer {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
  };
  std::unique_ptr<sqlite3, Closer> m_Handle;
};

/// A prepared statement: bind its parameters in order, step through its rows, read its columns in order.
class Statement {
 public:
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
  std::unique_ptr<sqlite3_stmt, Finalizer> m_Handle;
  int m_Parameter = 1;
  int m_Column = 0;
};

/// Begins a transaction and rolls it back unless it is committed.
class Transaction {
 public:
  /// A writing transaction waits for other processes' to end.
  explicit Transaction(Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void Commit();

 private:
  Database& m_Database;
  bool m_Open = true;
};

}  // namespace Cairn
