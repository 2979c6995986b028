#include "platform/linux/RegistryStore.h"

#include <sqlite3.h>

#include <array>
#include <utility>

#include "platform/linux/RegistryNames.h"
#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {
namespace {

// The row numbers are the order of first writing. AUTOINCREMENT: the number of a deleted key never
// comes back, so that a handle which outlives its key finds nothing instead of another key. A key
// is found by its whole folded path at one look, since that happens at each connection attempt.
constexpr const char* kTables =
    "CREATE TABLE keys("
    " id INTEGER PRIMARY KEY AUTOINCREMENT,"
    " parent INTEGER NOT NULL,"
    " path TEXT NOT NULL UNIQUE,"
    " name TEXT NOT NULL);"
    "CREATE INDEX keys_by_parent ON keys(parent);"
    "CREATE TABLE entries("
    " id INTEGER PRIMARY KEY AUTOINCREMENT,"
    " key INTEGER NOT NULL,"
    " folded TEXT NOT NULL,"
    " name TEXT NOT NULL,"
    " type INTEGER NOT NULL,"
    " data BLOB NOT NULL,"
    " UNIQUE(key, folded));"
    "CREATE INDEX entries_by_key ON entries(key);";

constexpr std::array kStoredRoots{RegistryRoot::CurrentUser, RegistryRoot::LocalMachine,
                                  RegistryRoot::ClassesRoot, RegistryRoot::Users};

/// Ends a statement when its results have been taken, and so gives up the lock on the file.
class Running {
 public:
  explicit Running(SqliteStatement& statement) : statement_(statement) {}
  ~Running() { statement_.Reset(); }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

 private:
  SqliteStatement& statement_;
};

/// Failures are no answer, and are not to be remembered.
bool IsAnswer(RegistryResult result) {
  return result == registry::kSuccess || result == registry::kNotFound;
}

bool MeansDamage(int result) {
  // SQLITE_ERROR: a sound database whose tables are not ours.
  const int primary = result & 0xFF;
  return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB || primary == SQLITE_ERROR;
}

}  // namespace

RegistryResult TranslateSqliteResult(int result) {
  switch (result & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return registry::kSuccess;
    case SQLITE_PERM:
    case SQLITE_AUTH:
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:
      return registry::kAccessDenied;
    default:
      return registry::kWriteFault;
  }
}

RegistryStore::Opening RegistryStore::Open(const std::string& path) {
  int result = connection_.Open(path);
  cache_.Follow(path);
  if (result == SQLITE_OK) {
    connection_.KeepLogOnClose(true);
    result = Check();
  }
  if (result == SQLITE_OK) result = Furnish();
  if (result == SQLITE_OK) result = PrepareStatements();
  if (result == SQLITE_OK) {
    connection_.KeepLogOnClose(false);
    return {Condition::Usable, registry::kSuccess};
  }
  const auto condition = MeansDamage(result) ? Condition::Damaged : Condition::OutOfReach;
  return {condition, TranslateSqliteResult(result)};
}

int RegistryStore::Check() {
  // The whole check, indexes against tables included: the file has a few dozen pages, and a lost
  // index entry would otherwise show as a missing setting.
  std::string verdict;
  const int result = connection_.QueryText("PRAGMA integrity_check(1)", verdict);
  if (result != SQLITE_ROW) return result;
  return verdict == "ok" ? SQLITE_OK : SQLITE_CORRUPT;
}

int RegistryStore::Furnish() {
  // In this mode a commit survives the death of the process at any moment, and the file stays whole
  // even when the power fails. FULL would also keep the last moments before a power failure, at the
  // price of a disk flush for each of the 150 values that one click on OK writes.
  int result = connection_.Execute("PRAGMA synchronous = NORMAL");
  if (result != SQLITE_OK) return result;
  std::string tables;
  result = connection_.QueryText("SELECT count(*) FROM sqlite_schema", tables);
  if (result != SQLITE_ROW) return result;
  if (tables != "0") return SQLITE_OK;

  result = connection_.Execute("PRAGMA journal_mode = WAL");
  if (result != SQLITE_OK) return result;
  SqliteTransaction transaction(connection_);
  result = transaction.Begin();
  if (result == SQLITE_OK) result = connection_.Execute(kTables);
  for (const RegistryRoot root : kStoredRoots) {
    if (result != SQLITE_OK) return result;
    const std::string name(RootName(root));
    const std::string sql = "INSERT INTO keys(parent, path, name) VALUES(0, '" + CaseFolded(name) +
                            "', '" + name + "')";
    result = connection_.Execute(sql.c_str());
  }
  return result == SQLITE_OK ? transaction.Commit() : result;
}

int RegistryStore::PrepareStatements() {
  // Everything below a path lies between the path with a backslash and the path with the character
  // that follows the backslash.
  const std::array<StatementText, 12> texts{{
      {&RegistryStore::findKey_, "SELECT id FROM keys WHERE path = ?1"},
      {&RegistryStore::keyExists_, "SELECT 1 FROM keys WHERE id = ?1"},
      {&RegistryStore::insertKey_, "INSERT INTO keys(parent, path, name) VALUES(?1, ?2, ?3)"},
      {&RegistryStore::deleteValuesBelow_,
       "DELETE FROM entries WHERE key IN (SELECT id FROM keys"
       " WHERE path = ?1 OR (path > ?1 || '\\' AND path < ?1 || ']'))"},
      {&RegistryStore::deleteKeysBelow_,
       "DELETE FROM keys WHERE path = ?1 OR (path > ?1 || '\\' AND path < ?1 || ']')"},
      {&RegistryStore::queryValue_,
       "SELECT type, data FROM entries WHERE key = ?1 AND folded = ?2"},
      {&RegistryStore::setValue_,
       "INSERT INTO entries(key, folded, name, type, data)"
       " SELECT id, ?2, ?3, ?4, ?5 FROM keys WHERE id = ?1"
       " ON CONFLICT(key, folded) DO UPDATE SET type = excluded.type, data = excluded.data"},
      {&RegistryStore::deleteValue_, "DELETE FROM entries WHERE key = ?1 AND folded = ?2"},
      // The index serves both: rows that are passed over cost a step in it and are not read.
      {&RegistryStore::enumValue_,
       "SELECT name, type, data FROM entries WHERE key = ?1 ORDER BY id LIMIT 1 OFFSET ?2"},
      {&RegistryStore::enumKey_,
       "SELECT name FROM keys WHERE parent = ?1 ORDER BY id LIMIT 1 OFFSET ?2"},
      {&RegistryStore::readValues_,
       "SELECT name, type, data FROM entries WHERE key = ?1 ORDER BY id"},
      {&RegistryStore::readVersion_, "PRAGMA data_version"},
  }};
  for (const StatementText& text : texts) {
    const int result = (this->*text.statement).Prepare(connection_.Handle(), text.sql);
    if (result != SQLITE_OK) return result;
  }
  return SQLITE_OK;
}

RegistryResult RegistryStore::FindKey(std::string_view foldedPath, std::int64_t& key) {
  std::string name = "key " + std::string(foldedPath);
  if (const auto* known = cache_.Find(name)) {
    key = known->key;
    return known->result;
  }
  RegistryReadCache::Reading reading;
  reading.result = ReadKey(foldedPath, reading.key);
  key = reading.key;
  const RegistryResult result = reading.result;
  if (IsAnswer(result)) cache_.Remember(std::move(name), std::move(reading));
  return result;
}

RegistryResult RegistryStore::ReadKey(std::string_view foldedPath, std::int64_t& key) {
  const Running running(findKey_);
  findKey_.BindText(1, foldedPath);
  const int result = findKey_.Step();
  if (result == SQLITE_DONE) return registry::kNotFound;
  if (result == SQLITE_ROW) key = findKey_.Number(0);
  return TranslateSqliteResult(result);
}

RegistryResult RegistryStore::InsertKey(std::int64_t parent, std::string_view foldedPath,
                                        std::string_view name, std::int64_t& key) {
  cache_.Forget();
  const Running running(insertKey_);
  insertKey_.Bind(1, parent);
  insertKey_.BindText(2, foldedPath);
  insertKey_.BindText(3, name);
  const int result = insertKey_.Step();
  if (result == SQLITE_DONE) key = connection_.LastInsertedRow();
  return TranslateSqliteResult(result);
}

RegistryResult RegistryStore::DeleteTree(std::string_view foldedPath) {
  cache_.Forget();
  SqliteTransaction transaction(connection_);
  int result = transaction.Begin();
  if (result != SQLITE_OK) return TranslateSqliteResult(result);
  for (SqliteStatement* statement : {&deleteValuesBelow_, &deleteKeysBelow_}) {
    const Running running(*statement);
    statement->BindText(1, foldedPath);
    result = statement->Step();
    if (result != SQLITE_DONE) return TranslateSqliteResult(result);
  }
  const bool found = connection_.ChangedRows() > 0;
  result = transaction.Commit();
  if (result != SQLITE_OK) return TranslateSqliteResult(result);
  return found ? registry::kSuccess : registry::kNotFound;
}

RegistryResult RegistryStore::QueryValue(std::int64_t key, std::string_view foldedName,
                                         RegistryValue& value) {
  std::string name = std::to_string(key) + " " + std::string(foldedName);
  if (const auto* known = cache_.Find(name)) {
    if (known->result == registry::kSuccess) value = known->value;
    return known->result;
  }
  const RegistryResult result = ReadValue(key, foldedName, value);
  if (IsAnswer(result)) cache_.Remember(std::move(name), {result, key, value});
  return result;
}

RegistryResult RegistryStore::ReadValue(std::int64_t key, std::string_view foldedName,
                                        RegistryValue& value) {
  const Running running(queryValue_);
  queryValue_.Bind(1, key);
  queryValue_.BindText(2, foldedName);
  const int result = queryValue_.Step();
  if (result == SQLITE_DONE) return registry::kNotFound;
  if (result == SQLITE_ROW) {
    value = {static_cast<std::uint32_t>(queryValue_.Number(0)), queryValue_.Bytes(1)};
  }
  return TranslateSqliteResult(result);
}

RegistryResult RegistryStore::SetValue(std::int64_t key, std::string_view foldedName,
                                       std::string_view name, const RegistryValue& value) {
  cache_.Forget();
  const Running running(setValue_);
  setValue_.Bind(1, key);
  setValue_.BindText(2, foldedName);
  setValue_.BindText(3, name);
  setValue_.Bind(4, value.type);
  setValue_.BindData(5, value.data);
  const int result = setValue_.Step();
  if (result != SQLITE_DONE) return TranslateSqliteResult(result);
  return connection_.ChangedRows() > 0 ? registry::kSuccess : registry::kNotFound;
}

RegistryResult RegistryStore::DeleteValue(std::int64_t key, std::string_view foldedName) {
  cache_.Forget();
  const Running running(deleteValue_);
  deleteValue_.Bind(1, key);
  deleteValue_.BindText(2, foldedName);
  const int result = deleteValue_.Step();
  if (result != SQLITE_DONE) return TranslateSqliteResult(result);
  return connection_.ChangedRows() > 0 ? registry::kSuccess : registry::kNotFound;
}

RegistryResult RegistryStore::EnumValue(std::int64_t key, std::uint32_t index, std::string& name,
                                        RegistryValue& value) {
  const Running running(enumValue_);
  enumValue_.Bind(1, key);
  enumValue_.Bind(2, index);
  const int result = enumValue_.Step();
  if (result == SQLITE_DONE) return EndOfList(key);
  if (result == SQLITE_ROW) {
    name = enumValue_.Bytes(0);
    value = {static_cast<std::uint32_t>(enumValue_.Number(1)), enumValue_.Bytes(2)};
  }
  return TranslateSqliteResult(result);
}

RegistryResult RegistryStore::EnumKey(std::int64_t key, std::uint32_t index, std::string& name) {
  const Running running(enumKey_);
  enumKey_.Bind(1, key);
  enumKey_.Bind(2, index);
  const int result = enumKey_.Step();
  if (result == SQLITE_DONE) return EndOfList(key);
  if (result == SQLITE_ROW) name = enumKey_.Bytes(0);
  return TranslateSqliteResult(result);
}

RegistryResult RegistryStore::ReadValues(std::int64_t key, std::vector<StoredValue>& values) {
  values.clear();
  const Running running(readValues_);
  readValues_.Bind(1, key);
  int result = SQLITE_ROW;
  while ((result = readValues_.Step()) == SQLITE_ROW) {
    values.push_back({readValues_.Bytes(0),
                      {static_cast<std::uint32_t>(readValues_.Number(1)), readValues_.Bytes(2)}});
  }
  return TranslateSqliteResult(result);
}

RegistryResult RegistryStore::ReadVersion(Version& version) {
  const Running running(readVersion_);
  const int result = readVersion_.Step();
  if (result == SQLITE_ROW) version = {readVersion_.Number(0), connection_.AllChangedRows()};
  return TranslateSqliteResult(result);
}

RegistryResult RegistryStore::EndOfList(std::int64_t key) {
  const Running running(keyExists_);
  keyExists_.Bind(1, key);
  const int result = keyExists_.Step();
  if (result == SQLITE_DONE) return registry::kNotFound;
  return result == SQLITE_ROW ? registry::kNoMoreItems : TranslateSqliteResult(result);
}

}  // namespace tallowin::platform::linux_host
