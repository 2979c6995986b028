// SQLite's handles as objects that close themselves. Result codes pass through as they are.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/linux/LockPatience.h"

struct sqlite3;
struct sqlite3_stmt;

namespace tallowin::platform::linux_host {

/// A prepared statement. Parameters count from 1, columns from 0. Texts and data are bound without
/// a copy: what is bound must live until Reset.
class SqliteStatement {
 public:
  SqliteStatement() = default;

  [[nodiscard]] int Prepare(sqlite3* connection, const char* sql);

  void Bind(int parameter, std::int64_t number);
  void BindText(int parameter, std::string_view text);
  void BindData(int parameter, std::string_view data);

  /// SQLITE_ROW, SQLITE_DONE or an error.
  [[nodiscard]] int Step();
  /// Ends the statement, and with it the lock that it holds on the file.
  void Reset();

  [[nodiscard]] std::int64_t Number(int column) const;
  [[nodiscard]] std::string Bytes(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// An open database file, for one thread.
class SqliteConnection {
 public:
  /// Locks of other processes are waited for as `patience` says.
  explicit SqliteConnection(std::shared_ptr<LockPatience> patience)
      : patience_(std::move(patience)) {}

  /// Reads and writes, or reads only where the file cannot be written. The file must exist.
  [[nodiscard]] int Open(const std::string& path);

  /// Runs statements that give no rows, or whose rows do not matter.
  [[nodiscard]] int Execute(const char* sql);
  /// The first column of the first row. SQLITE_ROW if there is one.
  [[nodiscard]] int QueryText(const char* sql, std::string& text);

  /// Whether closing leaves the write-ahead log as it is instead of merging it into the file.
  void KeepLogOnClose(bool keep);
  /// True if the file was renamed, removed or replaced since it was opened.
  [[nodiscard]] bool Moved() const;
  [[nodiscard]] std::int64_t ChangedRows() const;
  /// By this connection, since it was opened.
  [[nodiscard]] std::int64_t AllChangedRows() const;
  [[nodiscard]] std::int64_t LastInsertedRow() const;
  [[nodiscard]] sqlite3* Handle() const { return connection_.get(); }

 private:
  struct Close {
    void operator()(sqlite3* connection) const;
  };
  std::shared_ptr<LockPatience> patience_;
  std::unique_ptr<sqlite3, Close> connection_;
};

/// A transaction that is rolled back unless Commit succeeds. One that begins within another is part
/// of that one, which decides.
class SqliteTransaction {
 public:
  explicit SqliteTransaction(SqliteConnection& connection) : connection_(connection) {}
  ~SqliteTransaction();
  SqliteTransaction(const SqliteTransaction&) = delete;
  SqliteTransaction& operator=(const SqliteTransaction&) = delete;

  [[nodiscard]] int Begin();
  [[nodiscard]] int Commit();

 private:
  SqliteConnection& connection_;
  bool open_ = false;
};

}  // namespace tallowin::platform::linux_host
