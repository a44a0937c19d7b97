// The registry's SQLite store as the registry functions use it: one
// connection per process, its prepared statements kept for the life of the
// connection, write transactions that wait for other processes' writes.
//
// Schema: keys(id, parent, name, path) with `path` the root's number and the
// upper-cased names joined by backslashes (unique), ids never reused;
// vals(key, name, folded, type, data) keyed by (key, folded name), the rowid
// giving the order in which values were first set.
//
// Thread safety: a StoreSession holds the process's registry lock from
// construction to destruction; every use of the store and of the handle
// table happens inside one.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

#include "win/WinDef.h"

struct sqlite3_stmt;

namespace win_internal {

using KeyId = std::int64_t;
inline constexpr KeyId kCurrentUserRoot = 1;
inline constexpr KeyId kLocalMachineRoot = 2;

// `name` with every unit upper-cased, as the store compares names.
std::u16string FoldRegistryName(std::u16string_view name);

// One prepared statement in use: parameters bound from 1, reset (bindings
// cleared) when the object goes.
class StoreQuery {
 public:
  explicit StoreQuery(sqlite3_stmt* statement) noexcept : mStatement(statement) {}
  ~StoreQuery();
  StoreQuery(const StoreQuery&) = delete;
  StoreQuery& operator=(const StoreQuery&) = delete;

  StoreQuery& bind(int index, std::int64_t value);
  StoreQuery& bind(int index, std::u16string_view text);
  StoreQuery& bindBlob(int index, const void* data, std::size_t size);
  // SQLITE_ROW, SQLITE_DONE or an error code.
  int step();
  std::int64_t integer(int column) const;
  bool isNull(int column) const;
  std::u16string text(int column) const;
  const BYTE* blob(int column) const;
  DWORD blobSize(int column) const;

 private:
  sqlite3_stmt* mStatement;
};

class StoreSession {
 public:
  StoreSession();  // takes the registry lock
  StoreSession(const StoreSession&) = delete;
  StoreSession& operator=(const StoreSession&) = delete;

  // Opens the store (made with its schema when new) unless it is open;
  // ERROR_SUCCESS, or the failure's status (the store stays closed).
  LONG open();
  // The prepared statement of `sql` (a literal: its address keys the cache).
  // REQUIRES: open() succeeded. An invalid statement is a programming error.
  StoreQuery query(const char* sql);
  // Rows changed by the last INSERT, UPDATE or DELETE.
  int changes() const noexcept;
  // BEGIN IMMEDIATE, waiting for other writers; ERROR_SUCCESS or a failure status.
  LONG begin();
  // COMMIT; ERROR_SUCCESS or a failure status (the transaction rolled back).
  LONG commit();
  // ROLLBACK of a transaction begun and not committed; nothing otherwise.
  void rollback() noexcept;
  // The status of SQLite result `code`; a store found broken is closed so the
  // next call opens it anew.
  LONG fail(int code, bool writing);

 private:
  std::unique_lock<std::mutex> mLock;
};

// The ROLLBACK of a write that is abandoned on an early return.
class StoreTransaction {
 public:
  explicit StoreTransaction(StoreSession& session) : mSession(session) {}
  ~StoreTransaction() {
    if (!mDone) mSession.rollback();
  }
  StoreTransaction(const StoreTransaction&) = delete;
  StoreTransaction& operator=(const StoreTransaction&) = delete;
  // BEGIN IMMEDIATE; ERROR_SUCCESS or the failure (nothing to roll back then).
  LONG begin() {
    const LONG status = mSession.begin();
    mDone = status != 0;
    return status;
  }
  LONG commit() {
    mDone = true;
    return mSession.commit();
  }

 private:
  StoreSession& mSession;
  bool mDone = true;
};

}  // namespace win_internal
