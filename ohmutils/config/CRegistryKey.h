// CRegistryKey: the suite's way into the registry. A CRegKey that keeps a
// current root (HKEY_CURRENT_USER or HKEY_LOCAL_MACHINE) under which Open and
// Create name their keys, reads and writes string and number values, and
// lists sub keys and values into MFC lists. Statuses are the platform's
// error codes, 0 for success.
//
// The key held (m_hKey of the base) is a root after construction and after
// SetRootTo..., an opened key after a successful Open or Create, or none
// after Close. The destructor detaches it without closing: whoever opened or
// created a key closes it with Close before the object goes, and before
// switching roots.
//
// The two lists only grow (DeleteAllValues takes from the front of
// valueList) and live as long as the object.
//
// Message boxes, modal, through the UI sink: a listing that fails, a failed
// DeleteKey, and the four members that have no function yet. Titles and
// sentences come from the language resource library loaded at module attach.
//
// Thread safety: one object by one thread at a time.
#pragma once

#include "mfc/CList.h"
#include "mfc/CRegKey.h"
#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"
#include "win/WinDef.h"

// One registry value as the lists carry it.
struct REGITEM {
  DWORD type = 0;        // REG_SZ (1), REG_DWORD (4), or another code as the store reports it
  CString name;          // the value's name
  CString stringValue;   // the text for REG_SZ, else empty
  DWORD dwordValue = 0;  // the number for REG_DWORD, else 0
};

// One sub key as the lists carry it.
struct SUBKEY {
  CString name;
};

class OHMUTILS_EXPORT CRegistryKey : public ATL::CRegKey {
 public:
  // Current root HKEY_CURRENT_USER, held as the key: usable at once on the root itself.
  CRegistryKey();
  // Detaches the key held without closing it.
  virtual ~CRegistryKey();
  CRegistryKey(const CRegistryKey&) = delete;
  CRegistryKey& operator=(const CRegistryKey&) = delete;

  // Makes HKEY_CURRENT_USER / HKEY_LOCAL_MACHINE the root and the key held;
  // a key held before is detached, not closed. Always 0.
  long SetRootToHCUK();
  long SetRootToHLMK();

  // Opens `subKey` under the root with `access`; on success the key held is
  // closed and replaced. The registry's status (2 for a missing key).
  long Open(LPCWSTR subKey, DWORD access);
  // Opens or makes `subKey` under the root, read and write; on success the key
  // held is closed and replaced. The registry's status.
  long Create(LPCWSTR subKey);
  // Deletes `subKey` of the key held with everything below it. 0, or the
  // failing status after an information box (title string 112) with the
  // system's text, for 2 followed by string 114.
  long DeleteKey(LPCWSTR subKey);
  // Deletes the key's values as listed now and before on this object, until
  // one fails. The last status: 0 when nothing was listed, 2 for a value
  // listed twice and already deleted (the rest stay in valueList).
  long DeleteAllValues();

  // Appends the key's sub keys to `list` and to subKeyList. The last entry's
  // status (234 when it failed, after an information box with the system's
  // text); the query's status after a box with string 113 when the key can't
  // be counted (nothing appended). 0 for a key without sub keys, 87 for a
  // null list.
  long GetSubKeyList(CList<SUBKEY, SUBKEY&>* list);
  // The same for values into `list` and valueList; 1000 units of name and
  // 1000 bytes of data per value, a longer one fails its entry with 234.
  long GetValueList(CList<REGITEM, REGITEM&>* list);

  // Reads number value `name` into `value`: the registry's status (234 for
  // data longer than four bytes), 13 for a shorter value that isn't
  // REG_DWORD (`value` then holds what was read).
  long GetValue(LPCWSTR name, DWORD& value);
  // Reads string value `name` into `value` (at most 1998 units): the
  // registry's status (234 for a longer text), 13 for another type or text
  // without terminator.
  long GetValue(LPCWSTR name, CString& value);
  // Reads string or expandable string value `name` into `buffer` of `size`
  // units (0xFFFFFFFF: as many as the text already in it). 87 for a null
  // name or buffer, 13 for another type, an odd size or a missing
  // terminator, else the registry's status (234 when it doesn't fit).
  long GetValue(LPCWSTR name, LPWSTR buffer, DWORD size);

  // Writes `item`: its text as REG_SZ when its type is REG_SZ, else its number as REG_DWORD.
  long SetValue(REGITEM* item);
  // Writes every item from head to tail, going on after a failure; the last
  // item's status, 0 for an empty list.
  long SetValue(CList<REGITEM, REGITEM&>* list);
  // Writes `text` as REG_SZ with its terminator; 13 for a null text.
  long SetValue(LPCWSTR name, LPCWSTR text);
  // Writes `number` as REG_DWORD.
  long SetValue(LPCWSTR name, DWORD number);

  // Without function yet: each shows a box saying so and gives 0 (false for Exists).
  long CopyKey(LPCWSTR name);
  bool Exists(LPCWSTR name);
  long GetRemoteKey(LPCWSTR name);
  long SetSecurity();

  CList<SUBKEY, SUBKEY&> subKeyList{10};
  HKEY rootKey;
  CList<REGITEM, REGITEM&> valueList{10};

 private:
  void useRoot(HKEY root);
};
