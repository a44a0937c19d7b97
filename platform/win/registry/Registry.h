// The registry: keys named by backslash paths under two roots, each key with
// sub keys and named values. Key and value names compare ignoring case; a
// value's data is kept as the bytes it was given with its type code (string,
// expandable string, 32-bit number, anything else as bytes).
//
// The store is an SQLite database shared by every process of the user
// (file from $OHM_REGISTRY_STORE, else $XDG_CONFIG_HOME/ohm/registry.db, else
// ~/.config/ohm/registry.db). Each write is one transaction that waits its
// turn, so writers in several processes never lose each other's writes; a
// crash leaves the store as it was before or after a write, never between.
// A store file that isn't a database gives ERROR_BADDB and is left alone.
//
// Ownership: a handle of RegOpenKeyExW/RegCreateKeyExW is the caller's until
// RegCloseKey. The predefined roots need no closing. A handle keeps naming
// its key: when another handle or process deletes the key, calls on it give
// ERROR_KEY_DELETED, even after a key of the same name is made again.
//
// Not kept: key classes (always empty), security, last write times (zero),
// volatility (a volatile key is kept like any other).
//
// Thread safety: all functions may be called from any thread.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

using REGSAM = DWORD;
struct SECURITY_ATTRIBUTES;
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;

// The two roots, as the platform spells its predefined keys.
#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<UINT_PTR>(static_cast<LONG_PTR>(LONG(0x80000001)))))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<UINT_PTR>(static_cast<LONG_PTR>(LONG(0x80000002)))))

// Value types.
inline constexpr DWORD REG_NONE = 0;
inline constexpr DWORD REG_SZ = 1;         // text with its terminator, UTF-16
inline constexpr DWORD REG_EXPAND_SZ = 2;  // text with %NAME% references, kept unexpanded
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;  // 32-bit number, least significant byte first
inline constexpr DWORD REG_MULTI_SZ = 7;
inline constexpr DWORD REG_QWORD = 11;

// Access rights of a handle; the roots have all of them.
inline constexpr REGSAM KEY_QUERY_VALUE = 0x0001;         // RegQueryValueExW, RegEnumValueW, RegQueryInfoKeyW
inline constexpr REGSAM KEY_SET_VALUE = 0x0002;           // RegSetValueExW, RegDeleteValueW
inline constexpr REGSAM KEY_CREATE_SUB_KEY = 0x0004;      // RegCreateKeyExW when a key is made
inline constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 0x0008;  // RegEnumKeyExW
inline constexpr REGSAM KEY_NOTIFY = 0x0010;
inline constexpr REGSAM KEY_WOW64_64KEY = 0x0100;  // one view here: accepted and ignored
inline constexpr REGSAM KEY_WOW64_32KEY = 0x0200;
inline constexpr REGSAM DELETE = 0x00010000;
inline constexpr REGSAM KEY_READ = 0x00020019;
inline constexpr REGSAM KEY_WRITE = 0x00020006;
inline constexpr REGSAM KEY_ALL_ACCESS = 0x000F003F;

// RegCreateKeyExW options and dispositions.
inline constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
inline constexpr DWORD REG_OPTION_VOLATILE = 1;
inline constexpr DWORD REG_CREATED_NEW_KEY = 1;
inline constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

// Longest key name of one path piece, in units.
inline constexpr DWORD REG_MAX_KEY_NAME = 255;

// Status codes common to every call on a key: ERROR_INVALID_HANDLE for a
// handle that isn't open, ERROR_KEY_DELETED for a key deleted since it was
// opened, ERROR_ACCESS_DENIED for a right the handle lacks, ERROR_BADDB for a
// store that isn't a database, ERROR_CANTOPEN when it can't be opened,
// ERROR_CANTREAD/ERROR_CANTWRITE when it stays locked or fails otherwise.

// Opens `subKey` (a path below `key`; null or empty: `key` itself, the root
// itself for a root) into `*result` (null on failure). ERROR_FILE_NOT_FOUND
// when a piece is missing, ERROR_BAD_PATHNAME for a path starting with a
// backslash, ERROR_INVALID_PARAMETER for a null result or a piece longer
// than REG_MAX_KEY_NAME. `options` is accepted as the platform does.
LONG RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD options, REGSAM access, PHKEY result);

// Opens `subKey` below `key`, making the missing keys of its path (the
// handle needs KEY_CREATE_SUB_KEY for that). `*disposition` (may be null) is
// REG_CREATED_NEW_KEY or REG_OPENED_EXISTING_KEY. ERROR_INVALID_PARAMETER for
// a null subKey or result; path faults as RegOpenKeyExW.
LONG RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD reserved, LPWSTR keyClass, DWORD options, REGSAM access,
                     LPSECURITY_ATTRIBUTES security, PHKEY result, LPDWORD disposition);

// Closes a handle; ERROR_SUCCESS also for a root, ERROR_INVALID_HANDLE for
// anything not open.
LONG RegCloseKey(HKEY key);

// Counts and longest lengths of the key's sub keys (units) and values (name
// units, data bytes); every pointer may be null. The class is empty:
// ERROR_MORE_DATA when `*classSize` is 0. Needs KEY_QUERY_VALUE.
LONG RegQueryInfoKeyW(HKEY key, LPWSTR keyClass, LPDWORD classSize, LPDWORD reserved, LPDWORD subKeys,
                      LPDWORD maxSubKeyLength, LPDWORD maxClassLength, LPDWORD values, LPDWORD maxValueNameLength,
                      LPDWORD maxValueLength, LPDWORD securityDescriptorSize, FILETIME* lastWriteTime);

// The name of sub key number `index` in the order of their upper-cased
// names; `*nameSize` in: buffer units, out: name length without terminator.
// ERROR_NO_MORE_ITEMS past the end, ERROR_MORE_DATA when the name (or the
// empty class) doesn't fit, with nothing written. Needs KEY_ENUMERATE_SUB_KEYS.
LONG RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameSize, LPDWORD reserved, LPWSTR keyClass,
                   LPDWORD classSize, FILETIME* lastWriteTime);

// Value number `index` in the order in which values were first set: name as
// RegEnumKeyExW, type, and data as RegQueryValueExW. ERROR_NO_MORE_ITEMS past
// the end; ERROR_MORE_DATA when the name doesn't fit (nothing written) or
// the data doesn't (name and type written, `*dataSize` set to the size needed).
LONG RegEnumValueW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameSize, LPDWORD reserved, LPDWORD type, LPBYTE data,
                   LPDWORD dataSize);

// Type and data of value `name` (null or empty: the key's default value).
// With a null `data`, `*dataSize` gets the size; ERROR_MORE_DATA with the
// size needed in `*dataSize` when the buffer is too small (data untouched);
// ERROR_FILE_NOT_FOUND for a value that isn't there; ERROR_INVALID_PARAMETER
// for data without a size. Needs KEY_QUERY_VALUE.
LONG RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD dataSize);

// Sets value `name` to `size` bytes of `data` of `type`, kept as given; a
// value set again keeps its place in the enumeration. ERROR_INVALID_PARAMETER
// for null data with a size. Needs KEY_SET_VALUE.
LONG RegSetValueExW(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size);

// Deletes value `name`; ERROR_FILE_NOT_FOUND when it isn't there. Needs KEY_SET_VALUE.
LONG RegDeleteValueW(HKEY key, LPCWSTR name);

// Deletes key `subKey` below `key` (empty: `key` itself) with its values,
// whatever the handle's rights. ERROR_ACCESS_DENIED for a key that has sub
// keys or is a root, ERROR_FILE_NOT_FOUND for one that isn't there,
// ERROR_INVALID_PARAMETER for a null subKey.
LONG RegDeleteKeyW(HKEY key, LPCWSTR subKey);
// The same; the view bits of `access` are accepted and ignored.
LONG RegDeleteKeyExW(HKEY key, LPCWSTR subKey, REGSAM access, DWORD reserved);

OHM_PLATFORM_API_END
