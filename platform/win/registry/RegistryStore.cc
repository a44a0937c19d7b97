// The registry's SQLite connection: where the store lives, its schema, the
// cache of prepared statements and the translation of SQLite's results into
// the platform's status codes.
#include <sqlite3.h>
#include <unicode/uchar.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <unordered_map>

#include "win/WinError.h"
#include "win/registry/RegistryStore_internal.h"
#include "win/registry/Registry_testing.h"

namespace win_internal {
namespace {

// How long a write waits for other processes' writes before it gives up.
constexpr int kBusyTimeoutMs = 15000;

// A database file that holds tables of anyone else's is not ours to change.
constexpr const char* kForeignTables =
    "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name NOT IN ('keys', 'vals', 'sqlite_sequence')";
constexpr const char* kOurTables = "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name IN ('keys', 'vals')";
// Fails on tables named like ours with other columns (or a half of ours).
constexpr const char* kOurColumns =
    "SELECT id, parent, name, path FROM keys LIMIT 0; SELECT key, name, folded, type, data FROM vals LIMIT 0;";

// WAL lets readers go on while one process writes; synchronous=NORMAL keeps
// every committed write across a crash of the process (a power cut may lose
// the last writes, never the store).
constexpr const char* kSetUp =
    "PRAGMA journal_mode=WAL;"
    "PRAGMA synchronous=NORMAL;"
    "BEGIN IMMEDIATE;"
    "CREATE TABLE IF NOT EXISTS keys(id INTEGER PRIMARY KEY AUTOINCREMENT, parent INTEGER,"
    " name TEXT NOT NULL, path TEXT NOT NULL UNIQUE);"
    "CREATE INDEX IF NOT EXISTS keys_by_parent ON keys(parent, path);"
    "CREATE TABLE IF NOT EXISTS vals(key INTEGER NOT NULL, name TEXT NOT NULL, folded TEXT NOT NULL,"
    " type INTEGER NOT NULL, data BLOB NOT NULL, PRIMARY KEY(key, folded));"
    "INSERT OR IGNORE INTO keys(id, parent, name, path) VALUES"
    " (1, NULL, 'HKEY_CURRENT_USER', '1'), (2, NULL, 'HKEY_LOCAL_MACHINE', '2');"
    "COMMIT;";

struct Store {
  std::mutex mutex;
  sqlite3* db = nullptr;
  std::unordered_map<const char*, sqlite3_stmt*> statements;
  std::string pathOverride;  // set by the test seam

  ~Store() { close(); }
  void close() noexcept {
    for (auto& [sql, statement] : statements) sqlite3_finalize(statement);
    statements.clear();
    sqlite3_close_v2(db);
    db = nullptr;
  }
};

Store& TheStore() {
  static Store store;
  return store;
}

std::string StorePath(const Store& store) {
  if (!store.pathOverride.empty()) return store.pathOverride;
  if (const char* path = std::getenv("OHM_REGISTRY_STORE"); path && *path) return path;
  if (const char* config = std::getenv("XDG_CONFIG_HOME"); config && *config)
    return std::string(config) + "/ohm/registry.db";
  const char* home = std::getenv("HOME");
  return std::string(home && *home ? home : "/tmp") + "/.config/ohm/registry.db";
}

LONG StatusOf(int code, bool writing) {
  switch (code & 0xff) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
      return ERROR_BADDB;
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return ERROR_CANTOPEN;
    case SQLITE_NOMEM:
      return ERROR_NOT_ENOUGH_MEMORY;
    default:
      return writing ? ERROR_CANTWRITE : ERROR_CANTREAD;
  }
}

// Anything but a lock or a missing file at set-up means the file isn't our store.
LONG SetUpStatus(int code) {
  const int primary = code & 0xff;
  if (primary == SQLITE_BUSY || primary == SQLITE_LOCKED) return ERROR_CANTWRITE;
  if (primary == SQLITE_CANTOPEN || primary == SQLITE_NOMEM || primary == SQLITE_READONLY) return StatusOf(code, true);
  return ERROR_BADDB;
}

// Runs `sql`; SQLITE_OK with `*rows` counting the rows it gave, or the failure.
int CountRows(sqlite3* db, const char* sql, int* rows) {
  *rows = 0;
  auto count = [](void* counter, int, char**, char**) {
    ++*static_cast<int*>(counter);
    return 0;
  };
  return sqlite3_exec(db, sql, count, rows, nullptr);
}

// Checks, reading only, that the file is empty or ours; then makes what is missing.
int SetUp(sqlite3* db) {
  int rows = 0;
  int code = CountRows(db, kForeignTables, &rows);
  if (code == SQLITE_OK && rows > 0) return SQLITE_NOTADB;
  if (code == SQLITE_OK) code = CountRows(db, kOurTables, &rows);
  if (code == SQLITE_OK && rows > 0) code = CountRows(db, kOurColumns, &rows);
  return code == SQLITE_OK ? sqlite3_exec(db, kSetUp, nullptr, nullptr, nullptr) : code;
}

LONG Connect(Store& store) {
  const std::string path = StorePath(store);
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
  sqlite3* db = nullptr;
  int code =
      sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
  if (code == SQLITE_OK) {
    sqlite3_busy_timeout(db, kBusyTimeoutMs);
    code = SetUp(db);
  }
  if (code != SQLITE_OK) {
    sqlite3_close_v2(db);
    return SetUpStatus(code);
  }
  store.db = db;
  return ERROR_SUCCESS;
}

// The simple upper case of a unit of the basic plane, when it is one unit too.
char16_t UpperInBasicPlane(char16_t unit) {
  const UChar32 upper = u_toupper(unit);
  return upper <= 0xFFFF ? static_cast<char16_t>(upper) : unit;
}

}  // namespace

std::u16string FoldRegistryName(std::u16string_view name) {
  std::u16string folded(name);
  for (char16_t& unit : folded)
    if (unit >= u'a' && unit <= u'z')
      unit = static_cast<char16_t>(unit - u'a' + u'A');
    else if (unit >= 0x80 && (unit < 0xD800 || unit > 0xDFFF))
      unit = UpperInBasicPlane(unit);
  return folded;
}

// --- StoreQuery ---------------------------------------------------------

StoreQuery::~StoreQuery() {
  if (!mStatement) return;
  sqlite3_reset(mStatement);
  sqlite3_clear_bindings(mStatement);
}

StoreQuery& StoreQuery::bind(int index, std::int64_t value) {
  if (mStatement) sqlite3_bind_int64(mStatement, index, value);
  return *this;
}

StoreQuery& StoreQuery::bind(int index, std::u16string_view text) {
  if (mStatement)
    sqlite3_bind_text16(mStatement, index, text.empty() ? u"" : text.data(), static_cast<int>(text.size() * 2),
                        SQLITE_STATIC);
  return *this;
}

StoreQuery& StoreQuery::bindBlob(int index, const void* data, std::size_t size) {
  if (mStatement) sqlite3_bind_blob64(mStatement, index, size ? data : "", size, SQLITE_STATIC);
  return *this;
}

// A statement that couldn't be prepared reads as a broken store.
int StoreQuery::step() { return mStatement ? sqlite3_step(mStatement) : SQLITE_CORRUPT; }
std::int64_t StoreQuery::integer(int column) const { return sqlite3_column_int64(mStatement, column); }
bool StoreQuery::isNull(int column) const { return sqlite3_column_type(mStatement, column) == SQLITE_NULL; }

std::u16string StoreQuery::text(int column) const {
  const auto* text = static_cast<const char16_t*>(sqlite3_column_text16(mStatement, column));
  return text ? std::u16string(text, static_cast<std::size_t>(sqlite3_column_bytes16(mStatement, column)) / 2)
              : std::u16string();
}

const BYTE* StoreQuery::blob(int column) const {
  return static_cast<const BYTE*>(sqlite3_column_blob(mStatement, column));
}
DWORD StoreQuery::blobSize(int column) const { return static_cast<DWORD>(sqlite3_column_bytes(mStatement, column)); }

// --- StoreSession ---------------------------------------------------------

StoreSession::StoreSession() : mLock(TheStore().mutex) {}

LONG StoreSession::open() { return TheStore().db ? ERROR_SUCCESS : Connect(TheStore()); }

StoreQuery StoreSession::query(const char* sql) {
  Store& store = TheStore();
  auto [place, added] = store.statements.try_emplace(sql, nullptr);
  if (added && sqlite3_prepare_v3(store.db, sql, -1, SQLITE_PREPARE_PERSISTENT, &place->second, nullptr) != SQLITE_OK)
    store.statements.erase(place);
  else
    return StoreQuery(place->second);
  return StoreQuery(nullptr);
}

int StoreSession::changes() const noexcept { return sqlite3_changes(TheStore().db); }

LONG StoreSession::begin() {
  const int code = query("BEGIN IMMEDIATE").step();
  return code == SQLITE_DONE ? ERROR_SUCCESS : fail(code, true);
}

LONG StoreSession::commit() {
  const int code = query("COMMIT").step();
  if (code == SQLITE_DONE) return ERROR_SUCCESS;
  rollback();
  return fail(code, true);
}

void StoreSession::rollback() noexcept {
  Store& store = TheStore();
  if (store.db && !sqlite3_get_autocommit(store.db)) sqlite3_exec(store.db, "ROLLBACK", nullptr, nullptr, nullptr);
}

LONG StoreSession::fail(int code, bool writing) {
  const LONG status = StatusOf(code, writing);
  if (status == ERROR_BADDB || status == ERROR_CANTOPEN) {
    rollback();
    TheStore().close();
  }
  return status;
}

}  // namespace win_internal

namespace win_testing {

void useRegistryStore(const std::string& posixPath) {
  win_internal::StoreSession session;
  win_internal::Store& store = win_internal::TheStore();
  store.close();
  store.pathOverride = posixPath;
}

}  // namespace win_testing
