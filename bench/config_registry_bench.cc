// One registry setting written with OhmSetRegSetting and read back with
// OhmGetRegSetting, beside a floor that does the same on an SQLite database
// of the same schema and settings directly: look the section key up by its
// path, upsert the value in a write transaction, look the key up again and
// select the value. Each store is a file of its own in a temporary folder.
#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "ohmutils/config/OhmRegSetting.h"
#include "win/registry/Registry_testing.h"

namespace {

const std::filesystem::path& BenchFolder() {
  static const std::filesystem::path folder = [] {
    std::string pattern = (std::filesystem::temp_directory_path() / "ohm_bench_XXXXXX").string();
    if (!::mkdtemp(pattern.data())) std::abort();
    return std::filesystem::path(pattern);
  }();
  return folder;
}

void BM_OhmSetThenGetRegSetting(benchmark::State& state) {
  win_testing::useRegistryStore((BenchFolder() / "library.db").string());
  CString value;
  OhmSetRegSetting(u"Bench", u"Value", u"seed");  // the section's keys exist from here on
  for (auto _ : state) {
    if (!OhmSetRegSetting(u"Bench", u"Value", u"C:\\Projects\\Plant 4\\Panel.wdp")) state.SkipWithError("set failed");
    if (!OhmGetRegSetting(u"Bench", u"Value", value)) state.SkipWithError("get failed");
    benchmark::DoNotOptimize(value.GetString());
  }
  win_testing::useRegistryStore("");
}
BENCHMARK(BM_OhmSetThenGetRegSetting);

// The same schema, pragmas and transactions as the registry's store.
constexpr const char* kSchema =
    "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;"
    "CREATE TABLE IF NOT EXISTS keys(id INTEGER PRIMARY KEY AUTOINCREMENT, parent INTEGER,"
    " name TEXT NOT NULL, path TEXT NOT NULL UNIQUE);"
    "CREATE INDEX IF NOT EXISTS keys_by_parent ON keys(parent, path);"
    "CREATE TABLE IF NOT EXISTS vals(key INTEGER NOT NULL, name TEXT NOT NULL, folded TEXT NOT NULL,"
    " type INTEGER NOT NULL, data BLOB NOT NULL, PRIMARY KEY(key, folded));"
    "INSERT OR IGNORE INTO keys(id, parent, name, path) VALUES (1, NULL, 'HKEY_CURRENT_USER', '1'),"
    " (100, 1, 'Bench', '1\\SOFTWARE\\OHM\\ZEDA\\R1\\SETTINGS\\BENCH');";

class Floor {
 public:
  explicit Floor(const std::string& path) {
    sqlite3_open_v2(path.c_str(), &mDb, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    sqlite3_busy_timeout(mDb, 15000);
    sqlite3_exec(mDb, kSchema, nullptr, nullptr, nullptr);
    mFind = prepare("SELECT id FROM keys WHERE path = ?1");
    mBegin = prepare("BEGIN IMMEDIATE");
    mUpsert = prepare(
        "INSERT INTO vals(key, name, folded, type, data) VALUES (?1, ?2, ?3, 1, ?4)"
        " ON CONFLICT(key, folded) DO UPDATE SET type = excluded.type, data = excluded.data");
    mCommit = prepare("COMMIT");
    mSelect = prepare("SELECT type, data FROM vals WHERE key = ?1 AND folded = ?2");
  }
  ~Floor() {
    for (sqlite3_stmt* s : {mFind, mBegin, mUpsert, mCommit, mSelect}) sqlite3_finalize(s);
    sqlite3_close_v2(mDb);
  }
  Floor(const Floor&) = delete;
  Floor& operator=(const Floor&) = delete;

  bool set(const std::u16string& data) {
    const sqlite3_int64 key = find();
    bool ok = run(mBegin) == SQLITE_DONE;
    sqlite3_bind_int64(mUpsert, 1, key);
    sqlite3_bind_text16(mUpsert, 2, u"Value", 10, SQLITE_STATIC);
    sqlite3_bind_text16(mUpsert, 3, u"VALUE", 10, SQLITE_STATIC);
    sqlite3_bind_blob(mUpsert, 4, data.c_str(), static_cast<int>((data.size() + 1) * 2), SQLITE_STATIC);
    ok = run(mUpsert) == SQLITE_DONE && ok;
    return run(mCommit) == SQLITE_DONE && ok;
  }
  bool get(std::u16string* text) {
    sqlite3_bind_int64(mSelect, 1, find());
    sqlite3_bind_text16(mSelect, 2, u"VALUE", 10, SQLITE_STATIC);
    const bool found = sqlite3_step(mSelect) == SQLITE_ROW;
    if (found)
      text->assign(static_cast<const char16_t*>(sqlite3_column_blob(mSelect, 1)),
                   static_cast<std::size_t>(sqlite3_column_bytes(mSelect, 1)) / 2 - 1);
    sqlite3_reset(mSelect);
    return found;
  }

 private:
  sqlite3_stmt* prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v3(mDb, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    return statement;
  }
  static int run(sqlite3_stmt* statement) {
    const int code = sqlite3_step(statement);
    sqlite3_reset(statement);
    return code;
  }
  sqlite3_int64 find() {
    sqlite3_bind_text16(mFind, 1, u"1\\SOFTWARE\\OHM\\ZEDA\\R1\\SETTINGS\\BENCH", -1, SQLITE_STATIC);
    const sqlite3_int64 key = sqlite3_step(mFind) == SQLITE_ROW ? sqlite3_column_int64(mFind, 0) : 0;
    sqlite3_reset(mFind);
    return key;
  }

  sqlite3* mDb = nullptr;
  sqlite3_stmt *mFind, *mBegin, *mUpsert, *mCommit, *mSelect;
};

void BM_SqliteSetThenGetFloor(benchmark::State& state) {
  Floor floor((BenchFolder() / "floor.db").string());
  const std::u16string data = u"C:\\Projects\\Plant 4\\Panel.wdp";
  std::u16string text;
  for (auto _ : state) {
    if (!floor.set(data)) state.SkipWithError("set failed");
    if (!floor.get(&text)) state.SkipWithError("get failed");
    benchmark::DoNotOptimize(text.data());
  }
}
BENCHMARK(BM_SqliteSetThenGetFloor);

}  // namespace

BENCHMARK_MAIN();
