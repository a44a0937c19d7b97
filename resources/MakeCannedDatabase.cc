// Build tool: makes the canned project database (an SQLite file with the
// suite's tables, empty) and writes its bytes as a comma-separated list for
// the OHM_MBRES resource library to include.
//
// Usage: ohm_make_canned_database <database file> <include file>
#include <sqlite3.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

constexpr const char* kSchema =
    "PRAGMA user_version = 1;"
    "CREATE TABLE project (name TEXT NOT NULL, description TEXT);"
    "CREATE TABLE component (tag TEXT PRIMARY KEY, catalog TEXT, manufacturer TEXT, sheet TEXT);"
    "CREATE TABLE wire (number TEXT PRIMARY KEY, layer TEXT, sheet TEXT);";

bool writeDatabase(const char* path) {
  std::remove(path);
  sqlite3* db = nullptr;
  bool ok = sqlite3_open(path, &db) == SQLITE_OK && sqlite3_exec(db, kSchema, nullptr, nullptr, nullptr) == SQLITE_OK;
  if (!ok) std::fprintf(stderr, "ohm_make_canned_database: %s\n", db ? sqlite3_errmsg(db) : "out of memory");
  sqlite3_close(db);
  return ok;
}

bool writeByteList(const char* databasePath, const char* includePath) {
  std::ifstream in(databasePath, std::ios::binary);
  const std::vector<unsigned char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::ofstream out(includePath);
  for (std::size_t i = 0; i < bytes.size(); ++i) out << static_cast<unsigned>(bytes[i]) << (i % 32 == 31 ? ",\n" : ",");
  out << '\n';
  return !bytes.empty() && static_cast<bool>(out);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: ohm_make_canned_database <database file> <include file>\n");
    return 2;
  }
  return writeDatabase(argv[1]) && writeByteList(argv[1], argv[2]) ? 0 : 1;
}
