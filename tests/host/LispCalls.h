// The Lisp bridge's operations called on file lists given inline, for the
// tests of the bridge and of the drawing locks behind it: each gives its
// result and the list it changes.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "ohmutils/host/OhmLispBridge.h"
#include "support/u16.h"

using Files = std::vector<std::u16string>;

// What an operation gave and the list it left.
struct Outcome {
  bool result;
  Files files;
  friend bool operator==(const Outcome&, const Outcome&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Outcome& o) {
    out << o.result << ":";
    for (const std::u16string& file : o.files) out << " " << U8(file);
    return out;
  }
};

inline Files Items(const CStringArray& array) {
  Files items;
  for (INT_PTR i = 0; i < array.GetSize(); ++i) items.push_back(array[i].str());
  return items;
}

inline Files Items(const CStringList& list) {
  Files items;
  for (POSITION pos = list.GetHeadPosition(); pos;) items.push_back(list.GetNext(pos).str());
  return items;
}

inline void Fill(CStringArray& array, const Files& items) {
  for (const std::u16string& item : items) array.Add(CString(item));
}

inline void Fill(CStringList& list, const Files& items) {
  for (const std::u16string& item : items) list.AddTail(CString(item));
}

// Runs an operation on a list of the given kind filled with the files: its
// result and what it left in the list.
template <class List, class Operation>
Outcome OnList(const Files& files, Operation operation) {
  List list;
  Fill(list, files);
  const bool result = operation(list);
  return {result, Items(list)};
}

// Each operation called on lists given inline: the result and the list it changes.
inline Outcome Availability(const Files& files, bool first, bool second, bool third) {
  return OnList<CStringArray>(files,
                              [&](CStringArray& a) { return OhmCheckFilesAvailability(a, first, second, third); });
}

inline Outcome LockCheck(const Files& files, bool lock, bool second, bool guard, const Files& reply = {u"stale"}) {
  CStringList list;
  Fill(list, files);
  return OnList<CStringList>(
      reply, [&](CStringList& r) { return LispCheckFileLockStatusAndLock(list, lock, second, r, guard); });
}

inline Outcome Unlock(const Files& files) {
  return OnList<CStringArray>(files, [](CStringArray& array) { return OhmUnlockFiles(array); });
}

inline Outcome UnlockList(const Files& files, bool guard) {
  return OnList<CStringList>(files, [&](CStringList& list) { return LispUpdUnlockFiles(list, guard); });
}

inline Outcome Lookup(const char16_t* path) {
  CString found(u"kept");
  const bool result = LispDoesFileExist(path, found);
  return {result, {found.str()}};
}
