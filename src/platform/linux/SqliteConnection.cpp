#include "platform/linux/SqliteConnection.h"

#include <sqlite3.h>

namespace tallowin::platform::linux_host {
namespace {

// Far above any setting, and far below what a hostile import could fill the memory with.
constexpr int kMaxBytesOfAValue = 16 * 1024 * 1024;

int OnBusy(void* patience, int earlierCalls) {
  return static_cast<LockPatience*>(patience)->Wait(earlierCalls) ? 1 : 0;
}

}  // namespace

int SqliteStatement::Prepare(sqlite3* connection, const char* sql) {
  sqlite3_stmt* statement = nullptr;
  const int result =
      sqlite3_prepare_v3(connection, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  statement_.reset(statement);
  return result;
}

void SqliteStatement::Bind(int parameter, std::int64_t number) {
  sqlite3_bind_int64(statement_.get(), parameter, number);
}

void SqliteStatement::BindText(int parameter, std::string_view text) {
  // A null pointer would bind NULL instead of the empty text.
  const char* data = text.data() != nullptr ? text.data() : "";
  sqlite3_bind_text64(statement_.get(), parameter, data, text.size(), SQLITE_STATIC, SQLITE_UTF8);
}

void SqliteStatement::BindData(int parameter, std::string_view data) {
  const char* bytes = data.data() != nullptr ? data.data() : "";
  sqlite3_bind_blob64(statement_.get(), parameter, bytes, data.size(), SQLITE_STATIC);
}

int SqliteStatement::Step() { return sqlite3_step(statement_.get()); }

void SqliteStatement::Reset() {
  sqlite3_reset(statement_.get());
  sqlite3_clear_bindings(statement_.get());
}

std::int64_t SqliteStatement::Number(int column) const {
  return sqlite3_column_int64(statement_.get(), column);
}

std::string SqliteStatement::Bytes(int column) const {
  const auto* data = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
  const int size = sqlite3_column_bytes(statement_.get(), column);
  return data == nullptr ? std::string() : std::string(data, static_cast<std::size_t>(size));
}

void SqliteStatement::Finalize::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

int SqliteConnection::Open(const std::string& path) {
  sqlite3* connection = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
  const int result = sqlite3_open_v2(path.c_str(), &connection, flags, nullptr);
  connection_.reset(connection);
  if (result != SQLITE_OK) return result;
  sqlite3_busy_handler(connection, OnBusy, patience_.get());
  sqlite3_limit(connection, SQLITE_LIMIT_LENGTH, kMaxBytesOfAValue);
  // The file may be damaged or planted: its schema gets no say in what runs.
  sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  return SQLITE_OK;
}

int SqliteConnection::Execute(const char* sql) {
  return sqlite3_exec(Handle(), sql, nullptr, nullptr, nullptr);
}

int SqliteConnection::QueryText(const char* sql, std::string& text) {
  SqliteStatement statement;
  int result = statement.Prepare(Handle(), sql);
  if (result != SQLITE_OK) return result;
  result = statement.Step();
  if (result == SQLITE_ROW) text = statement.Bytes(0);
  return result;
}

void SqliteConnection::KeepLogOnClose(bool keep) {
  sqlite3_db_config(Handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, keep ? 1 : 0, nullptr);
}

bool SqliteConnection::Moved() const {
  int moved = 0;
  sqlite3_file_control(Handle(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
  return moved != 0;
}

std::int64_t SqliteConnection::ChangedRows() const { return sqlite3_changes64(Handle()); }
std::int64_t SqliteConnection::AllChangedRows() const {
  return sqlite3_total_changes(connection_.get());
}

std::int64_t SqliteConnection::LastInsertedRow() const {
  return sqlite3_last_insert_rowid(Handle());
}

void SqliteConnection::Close::operator()(sqlite3* connection) const {
  sqlite3_close_v2(connection);
}

SqliteTransaction::~SqliteTransaction() {
  // A failure here means that SQLite has rolled back by itself.
  if (open_) static_cast<void>(connection_.Execute("ROLLBACK"));
}

int SqliteTransaction::Begin() {
  if (sqlite3_get_autocommit(connection_.Handle()) == 0) return SQLITE_OK;
  // Taking the write lock at once: a transaction that reads first could lose the race for it.
  const int result = connection_.Execute("BEGIN IMMEDIATE");
  open_ = result == SQLITE_OK;
  return result;
}

int SqliteTransaction::Commit() {
  if (!open_) return SQLITE_OK;
  const int result = connection_.Execute("COMMIT");
  if (result == SQLITE_OK) open_ = false;
  return result;
}

}  // namespace tallowin::platform::linux_host
