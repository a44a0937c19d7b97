// The registry functions over the SQLite store: key handles, paths, access
// rights and the platform's buffer rules. Every call runs inside one
// StoreSession, so the handle table and the connection share its lock.
#include "win/registry/Registry.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "win/WinError.h"
#include "win/registry/RegistryStore_internal.h"
#include "win/registry/Registry_testing.h"

using win_internal::FoldRegistryName;
using win_internal::KeyId;
using win_internal::StoreQuery;
using win_internal::StoreSession;
using win_internal::StoreTransaction;

namespace {

// What a handle names: the key's id, the rights it was opened with, and the
// key's folded path (the root's number, then the upper-cased names).
struct KeyRef {
  KeyId id = 0;
  REGSAM access = 0;
  std::u16string path;
  bool root = false;
};

// The handles of RegOpenKeyExW/RegCreateKeyExW not yet closed. Used only
// inside a StoreSession.
std::unordered_set<const KeyRef*>& OpenHandles() {
  static std::unordered_set<const KeyRef*> handles;
  return handles;
}

HKEY NewHandle(KeyId id, REGSAM access, std::u16string path) {
  auto* ref = new KeyRef{id, access, std::move(path), false};
  OpenHandles().insert(ref);
  return reinterpret_cast<HKEY>(ref);
}

LONG Resolve(HKEY key, KeyRef* ref) {
  if (key == HKEY_CURRENT_USER)
    *ref = KeyRef{win_internal::kCurrentUserRoot, KEY_ALL_ACCESS, u"1", true};
  else if (key == HKEY_LOCAL_MACHINE)
    *ref = KeyRef{win_internal::kLocalMachineRoot, KEY_ALL_ACCESS, u"2", true};
  else if (OpenHandles().count(reinterpret_cast<const KeyRef*>(key)))
    *ref = *reinterpret_cast<const KeyRef*>(key);
  else
    return ERROR_INVALID_HANDLE;
  return ERROR_SUCCESS;
}

// The key named by `key` with right `needed`, in an open store.
LONG Prepare(StoreSession& session, HKEY key, REGSAM needed, KeyRef* ref) {
  if (LONG status = Resolve(key, ref)) return status;
  if ((ref->access & needed) != needed) return ERROR_ACCESS_DENIED;
  return session.open();
}

std::u16string_view View(LPCWSTR text) { return text ? std::u16string_view(text) : std::u16string_view(); }

// The pieces of `subKey`; a trailing backslash is dropped.
LONG SplitPath(LPCWSTR subKey, std::vector<std::u16string_view>* pieces) {
  std::u16string_view rest = View(subKey);
  if (!rest.empty() && rest.front() == u'\\') return ERROR_BAD_PATHNAME;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(u'\\'), rest.size());
    if (end == 0) return ERROR_BAD_PATHNAME;
    if (end > REG_MAX_KEY_NAME) return ERROR_INVALID_PARAMETER;
    pieces->push_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return ERROR_SUCCESS;
}

std::u16string PathBelow(const std::u16string& parent, const std::vector<std::u16string_view>& pieces) {
  std::u16string path = parent;
  for (std::u16string_view piece : pieces) path.append(u"\\").append(FoldRegistryName(piece));
  return path;
}

// ERROR_KEY_DELETED when the key of a handle is gone; roots never go.
LONG CheckAlive(StoreSession& session, const KeyRef& ref) {
  if (ref.root) return ERROR_SUCCESS;
  StoreQuery query = session.query("SELECT 1 FROM keys WHERE id = ?1");
  const int code = query.bind(1, ref.id).step();
  if (code == SQLITE_ROW) return ERROR_SUCCESS;
  return code == SQLITE_DONE ? ERROR_KEY_DELETED : session.fail(code, false);
}

// Prepare, then CheckAlive: the key of a handle that is still there.
LONG PrepareLive(StoreSession& session, HKEY key, REGSAM needed, KeyRef* ref) {
  if (LONG status = Prepare(session, key, needed, ref)) return status;
  return CheckAlive(session, *ref);
}

// Steps `query` (?1 the key, ?2 the index) to entry `index`; ERROR_NO_MORE_ITEMS past the end.
LONG StepToEntry(StoreSession& session, StoreQuery& query, const KeyRef& ref, DWORD index) {
  const int code = query.bind(1, ref.id).bind(2, index).step();
  if (code == SQLITE_ROW) return ERROR_SUCCESS;
  return code == SQLITE_DONE ? ERROR_NO_MORE_ITEMS : session.fail(code, false);
}

LONG FindKey(StoreSession& session, const std::u16string& path, KeyId* id) {
  StoreQuery query = session.query("SELECT id FROM keys WHERE path = ?1");
  const int code = query.bind(1, path).step();
  if (code == SQLITE_ROW) *id = query.integer(0);
  if (code == SQLITE_ROW) return ERROR_SUCCESS;
  return code == SQLITE_DONE ? ERROR_FILE_NOT_FOUND : session.fail(code, false);
}

LONG InsertKey(StoreSession& session, KeyId parent, std::u16string_view name, const std::u16string& path, KeyId* id) {
  StoreQuery query = session.query("INSERT INTO keys(parent, name, path) VALUES (?1, ?2, ?3) RETURNING id");
  const int code = query.bind(1, parent).bind(2, name).bind(3, path).step();
  if (code != SQLITE_ROW) return session.fail(code, true);
  *id = query.integer(0);
  return ERROR_SUCCESS;
}

// Makes the missing keys of `pieces` below `parent`, inside a transaction;
// `*id` is the last one's, `*created` tells whether any was made.
LONG MakePath(StoreSession& session, const KeyRef& parent, const std::vector<std::u16string_view>& pieces, KeyId* id,
              bool* created) {
  *id = parent.id;
  std::u16string path = parent.path;
  for (std::u16string_view piece : pieces) {
    const KeyId above = *id;
    path.append(u"\\").append(FoldRegistryName(piece));
    LONG status = FindKey(session, path, id);
    if (status == ERROR_FILE_NOT_FOUND) {
      status = InsertKey(session, above, piece, path, id);
      *created = true;
    }
    if (status) return status;
  }
  return ERROR_SUCCESS;
}

// MakePath in a write transaction of its own, for a handle that may make keys.
LONG CreatePath(StoreSession& session, const KeyRef& parent, const std::vector<std::u16string_view>& pieces, KeyId* id,
                bool* created) {
  if (!(parent.access & KEY_CREATE_SUB_KEY)) return ERROR_ACCESS_DENIED;
  StoreTransaction transaction(session);
  LONG status = transaction.begin();
  if (status == ERROR_SUCCESS) status = CheckAlive(session, parent);
  if (status == ERROR_SUCCESS) status = MakePath(session, parent, pieces, id, created);
  return status ? status : transaction.commit();
}

// Copies `name` into a buffer of `*size` units; ERROR_MORE_DATA with nothing
// written when it doesn't fit with its terminator.
LONG CopyName(const std::u16string& name, LPWSTR buffer, LPDWORD size) {
  if (name.size() + 1 > *size) return ERROR_MORE_DATA;
  std::copy(name.begin(), name.end(), buffer);
  buffer[name.size()] = u'\0';
  *size = static_cast<DWORD>(name.size());
  return ERROR_SUCCESS;
}

// The platform's rule for value data: size only for a null buffer, the size
// needed and ERROR_MORE_DATA for a small one.
LONG CopyData(const BYTE* bytes, DWORD size, LPBYTE data, LPDWORD dataSize) {
  if (!dataSize) return ERROR_SUCCESS;
  const DWORD room = *dataSize;
  *dataSize = size;
  if (!data) return ERROR_SUCCESS;
  if (size > room) return ERROR_MORE_DATA;
  if (size) std::memcpy(data, bytes, size);
  return ERROR_SUCCESS;
}

// The empty class every key has.
LONG CopyClass(LPWSTR keyClass, LPDWORD classSize) {
  if (!keyClass) {
    if (classSize) *classSize = 0;
    return ERROR_SUCCESS;
  }
  if (!classSize) return ERROR_INVALID_PARAMETER;
  return CopyName(u"", keyClass, classSize);
}

void SetIf(LPDWORD out, DWORD value) {
  if (out) *out = value;
}

struct KeyCounts {
  DWORD subKeys = 0, maxSubKeyLength = 0, values = 0, maxValueNameLength = 0, maxValueLength = 0;
};

LONG CountKey(StoreSession& session, KeyId id, KeyCounts* counts) {
  StoreQuery keys = session.query("SELECT name FROM keys WHERE parent = ?1");
  int code = keys.bind(1, id).step();
  for (; code == SQLITE_ROW; code = keys.step(), ++counts->subKeys)
    counts->maxSubKeyLength = std::max(counts->maxSubKeyLength, static_cast<DWORD>(keys.text(0).size()));
  if (code != SQLITE_DONE) return session.fail(code, false);
  StoreQuery values = session.query("SELECT name, length(data) FROM vals WHERE key = ?1");
  for (code = values.bind(1, id).step(); code == SQLITE_ROW; code = values.step(), ++counts->values) {
    counts->maxValueNameLength = std::max(counts->maxValueNameLength, static_cast<DWORD>(values.text(0).size()));
    counts->maxValueLength = std::max(counts->maxValueLength, static_cast<DWORD>(values.integer(1)));
  }
  return code == SQLITE_DONE ? ERROR_SUCCESS : session.fail(code, false);
}

// Deletes the key `id` that has no sub keys, with its values, in a transaction.
LONG DeleteLeaf(StoreSession& session, KeyId id) {
  StoreQuery children = session.query("SELECT 1 FROM keys WHERE parent = ?1 LIMIT 1");
  const int code = children.bind(1, id).step();
  if (code == SQLITE_ROW) return ERROR_ACCESS_DENIED;
  if (code != SQLITE_DONE) return session.fail(code, false);
  for (const char* sql : {"DELETE FROM vals WHERE key = ?1", "DELETE FROM keys WHERE id = ?1"}) {
    StoreQuery remove = session.query(sql);
    if (const int done = remove.bind(1, id).step(); done != SQLITE_DONE) return session.fail(done, true);
  }
  return ERROR_SUCCESS;
}

}  // namespace

LONG RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD, REGSAM access, PHKEY result) {
  if (!result) return ERROR_INVALID_PARAMETER;
  *result = nullptr;
  StoreSession session;
  KeyRef parent;
  std::vector<std::u16string_view> pieces;
  if (LONG status = Resolve(key, &parent)) return status;
  if (LONG status = SplitPath(subKey, &pieces)) return status;
  if (parent.root && pieces.empty()) {
    *result = key;
    return ERROR_SUCCESS;
  }
  KeyId id = 0;
  const std::u16string path = PathBelow(parent.path, pieces);
  LONG status = session.open();
  if (status == ERROR_SUCCESS) status = CheckAlive(session, parent);
  if (status == ERROR_SUCCESS) status = FindKey(session, path, &id);
  if (status == ERROR_SUCCESS) *result = NewHandle(id, access, path);
  return status;
}

LONG RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD, LPWSTR, DWORD, REGSAM access, LPSECURITY_ATTRIBUTES, PHKEY result,
                     LPDWORD disposition) {
  if (!subKey || !result) return ERROR_INVALID_PARAMETER;
  *result = nullptr;
  StoreSession session;
  KeyRef parent;
  std::vector<std::u16string_view> pieces;
  if (LONG status = Prepare(session, key, 0, &parent)) return status;
  if (LONG status = SplitPath(subKey, &pieces)) return status;
  const std::u16string path = PathBelow(parent.path, pieces);
  KeyId id = 0;
  bool created = false;
  LONG status = CheckAlive(session, parent);
  if (status == ERROR_SUCCESS) status = FindKey(session, path, &id);
  if (status == ERROR_FILE_NOT_FOUND) status = CreatePath(session, parent, pieces, &id, &created);
  if (status) return status;
  SetIf(disposition, created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY);
  *result = NewHandle(id, access, path);
  return ERROR_SUCCESS;
}

LONG RegCloseKey(HKEY key) {
  if (key == HKEY_CURRENT_USER || key == HKEY_LOCAL_MACHINE) return ERROR_SUCCESS;
  StoreSession session;
  const auto* ref = reinterpret_cast<const KeyRef*>(key);
  if (!OpenHandles().erase(ref)) return ERROR_INVALID_HANDLE;
  delete ref;
  return ERROR_SUCCESS;
}

LONG RegQueryInfoKeyW(HKEY key, LPWSTR keyClass, LPDWORD classSize, LPDWORD, LPDWORD subKeys, LPDWORD maxSubKeyLength,
                      LPDWORD maxClassLength, LPDWORD values, LPDWORD maxValueNameLength, LPDWORD maxValueLength,
                      LPDWORD securityDescriptorSize, FILETIME* lastWriteTime) {
  StoreSession session;
  KeyRef ref;
  KeyCounts counts;
  if (LONG status = PrepareLive(session, key, KEY_QUERY_VALUE, &ref)) return status;
  if (LONG status = CountKey(session, ref.id, &counts)) return status;
  if (LONG status = CopyClass(keyClass, classSize)) return status;
  SetIf(subKeys, counts.subKeys);
  SetIf(maxSubKeyLength, counts.maxSubKeyLength);
  SetIf(maxClassLength, 0);
  SetIf(values, counts.values);
  SetIf(maxValueNameLength, counts.maxValueNameLength);
  SetIf(maxValueLength, counts.maxValueLength);
  SetIf(securityDescriptorSize, 0);
  if (lastWriteTime) *lastWriteTime = FILETIME{0, 0};
  return ERROR_SUCCESS;
}

LONG RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameSize, LPDWORD, LPWSTR keyClass, LPDWORD classSize,
                   FILETIME* lastWriteTime) {
  if (!name || !nameSize) return ERROR_INVALID_PARAMETER;
  StoreSession session;
  KeyRef ref;
  if (LONG status = PrepareLive(session, key, KEY_ENUMERATE_SUB_KEYS, &ref)) return status;
  StoreQuery query = session.query("SELECT name FROM keys WHERE parent = ?1 ORDER BY path LIMIT 1 OFFSET ?2");
  if (LONG status = StepToEntry(session, query, ref, index)) return status;
  const std::u16string found = query.text(0);
  if (found.size() + 1 > *nameSize || (keyClass && classSize && *classSize == 0)) return ERROR_MORE_DATA;
  if (LONG status = CopyClass(keyClass, classSize)) return status;
  if (lastWriteTime) *lastWriteTime = FILETIME{0, 0};
  return CopyName(found, name, nameSize);
}

LONG RegEnumValueW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameSize, LPDWORD, LPDWORD type, LPBYTE data,
                   LPDWORD dataSize) {
  if (!name || !nameSize || (data && !dataSize)) return ERROR_INVALID_PARAMETER;
  StoreSession session;
  KeyRef ref;
  if (LONG status = PrepareLive(session, key, KEY_QUERY_VALUE, &ref)) return status;
  StoreQuery query = session.query("SELECT name, type, data FROM vals WHERE key = ?1 ORDER BY rowid LIMIT 1 OFFSET ?2");
  if (LONG status = StepToEntry(session, query, ref, index)) return status;
  if (LONG status = CopyName(query.text(0), name, nameSize)) return status;
  SetIf(type, static_cast<DWORD>(query.integer(1)));
  return CopyData(query.blob(2), query.blobSize(2), data, dataSize);
}

LONG RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD dataSize) {
  if (data && !dataSize) return ERROR_INVALID_PARAMETER;
  StoreSession session;
  KeyRef ref;
  if (LONG status = Prepare(session, key, KEY_QUERY_VALUE, &ref)) return status;
  const std::u16string folded = FoldRegistryName(View(name));
  StoreQuery query = session.query(
      "SELECT v.type, v.data FROM keys k LEFT JOIN vals v ON v.key = k.id AND v.folded = ?2 WHERE k.id = ?1");
  const int code = query.bind(1, ref.id).bind(2, folded).step();
  if (code == SQLITE_DONE) return ERROR_KEY_DELETED;
  if (code != SQLITE_ROW) return session.fail(code, false);
  if (query.isNull(0)) return ERROR_FILE_NOT_FOUND;
  SetIf(type, static_cast<DWORD>(query.integer(0)));
  return CopyData(query.blob(1), query.blobSize(1), data, dataSize);
}

LONG RegSetValueExW(HKEY key, LPCWSTR name, DWORD, DWORD type, const BYTE* data, DWORD size) {
  if (!data && size) return ERROR_INVALID_PARAMETER;
  StoreSession session;
  KeyRef ref;
  if (LONG status = Prepare(session, key, KEY_SET_VALUE, &ref)) return status;
  const std::u16string folded = FoldRegistryName(View(name));
  StoreTransaction transaction(session);
  if (LONG status = transaction.begin()) return status;
  StoreQuery query = session.query(
      "INSERT INTO vals(key, name, folded, type, data) SELECT ?1, ?2, ?3, ?4, ?5"
      " WHERE EXISTS (SELECT 1 FROM keys WHERE id = ?1)"
      " ON CONFLICT(key, folded) DO UPDATE SET type = excluded.type, data = excluded.data");
  const int code =
      query.bind(1, ref.id).bind(2, View(name)).bind(3, folded).bind(4, type).bindBlob(5, data, size).step();
  if (code != SQLITE_DONE) return session.fail(code, true);
  if (session.changes() == 0) return ERROR_KEY_DELETED;
  return transaction.commit();
}

LONG RegDeleteValueW(HKEY key, LPCWSTR name) {
  StoreSession session;
  KeyRef ref;
  if (LONG status = Prepare(session, key, KEY_SET_VALUE, &ref)) return status;
  const std::u16string folded = FoldRegistryName(View(name));
  StoreTransaction transaction(session);
  if (LONG status = transaction.begin()) return status;
  StoreQuery query = session.query("DELETE FROM vals WHERE key = ?1 AND folded = ?2");
  const int code = query.bind(1, ref.id).bind(2, folded).step();
  if (code != SQLITE_DONE) return session.fail(code, true);
  if (session.changes() == 0) {
    const LONG alive = CheckAlive(session, ref);
    return alive ? alive : ERROR_FILE_NOT_FOUND;
  }
  return transaction.commit();
}

LONG RegDeleteKeyW(HKEY key, LPCWSTR subKey) {
  if (!subKey) return ERROR_INVALID_PARAMETER;
  StoreSession session;
  KeyRef parent;
  std::vector<std::u16string_view> pieces;
  if (LONG status = Prepare(session, key, 0, &parent)) return status;
  if (LONG status = SplitPath(subKey, &pieces)) return status;
  if (parent.root && pieces.empty()) return ERROR_ACCESS_DENIED;
  KeyId id = 0;
  StoreTransaction transaction(session);
  LONG status = transaction.begin();
  if (status == ERROR_SUCCESS) status = CheckAlive(session, parent);
  if (status == ERROR_SUCCESS) status = FindKey(session, PathBelow(parent.path, pieces), &id);
  if (status == ERROR_SUCCESS) status = DeleteLeaf(session, id);
  return status ? status : transaction.commit();
}

LONG RegDeleteKeyExW(HKEY key, LPCWSTR subKey, REGSAM, DWORD) { return RegDeleteKeyW(key, subKey); }

namespace win_testing {

long openRegistryKeys() noexcept {
  StoreSession session;
  return static_cast<long>(OpenHandles().size());
}

}  // namespace win_testing
