// The registry over its SQLite store, on a real store file in a temporary
// folder: paths, rights, values and their buffer rules, enumeration,
// deletion, stale handles, broken stores; and ATL's CRegKey over it.
#include "win/registry/Registry.h"

#include <gtest/gtest.h>

#include <sqlite3.h>

#include <functional>
#include <tuple>
#include <vector>

#include "mfc/CRegKey.h"
#include "support/TempFolder.h"
#include "support/u16.h"
#include "win/WinError.h"
#include "win/registry/Registry_testing.h"

namespace {

class RegistryTest : public ::testing::Test {
 protected:
  void SetUp() override { win_testing::useRegistryStore(mFolder.posix("registry.db")); }
  void TearDown() override { win_testing::useRegistryStore(""); }

  // A new handle of `path` below HKEY_CURRENT_USER, made when missing.
  static HKEY Create(const char16_t* path, REGSAM access = KEY_ALL_ACCESS) {
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, access, nullptr, &key, nullptr), ERROR_SUCCESS);
    return key;
  }
  static HKEY Open(const char16_t* path, REGSAM access) {
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, access, &key), ERROR_SUCCESS);
    return key;
  }
  static LONG SetText(HKEY key, const char16_t* name, const std::u16string& text, DWORD type = REG_SZ) {
    return RegSetValueExW(key, name, 0, type, reinterpret_cast<const BYTE*>(text.c_str()),
                          static_cast<DWORD>((text.size() + 1) * 2));
  }
  // The text of a string value; "<status>" when the query fails.
  static std::u16string Text(HKEY key, const char16_t* name) {
    char16_t buffer[64] = {};
    DWORD size = sizeof buffer, type = 0;
    const LONG status = RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<LPBYTE>(buffer), &size);
    if (status) return U16("<" + std::to_string(status) + ">");
    return buffer;
  }
  // Names of sub keys or values in enumeration order, as RegEnumKeyExW or RegEnumValueW give them.
  template <class Enumerate>
  static std::vector<std::u16string> Names(HKEY key, Enumerate enumerate) {
    std::vector<std::u16string> names;
    char16_t name[256];
    for (DWORD i = 0, size = 256; enumerate(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) == 0;
         ++i, size = 256)
      names.emplace_back(name, size);
    return names;
  }
  static std::vector<std::u16string> SubKeys(HKEY key) { return Names(key, RegEnumKeyExW); }
  // RegQueryInfoKeyW for the two counts the library asks of it.
  static LONG Counts(HKEY key, DWORD* subKeys, DWORD* values) {
    return RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, subKeys, nullptr, nullptr, values, nullptr, nullptr,
                            nullptr, nullptr);
  }
  static std::vector<std::u16string> Values(HKEY key) { return Names(key, RegEnumValueW); }

  TempFolder mFolder;
};

TEST_F(RegistryTest, OpenFindsKeysByPathIgnoringCase) {
  RegCloseKey(Create(u"Soft\\Ohm\\Zeda"));
  const std::u16string tooLong(256, u'k');
  // open: after "Soft\Ohm\Zeda" was made
  const std::tuple<const char16_t*, LONG> cases[] = {
      {u"SOFT\\ohm\\zEDA\\", ERROR_SUCCESS},
      {u"Soft\\Ohm\\Other", ERROR_FILE_NOT_FOUND},
      {u"\\Soft", ERROR_BAD_PATHNAME},
      {u"Soft\\\\Ohm", ERROR_BAD_PATHNAME},
      {tooLong.c_str(), ERROR_INVALID_PARAMETER},
  };
  for (const auto& [path, open] : cases) {
    SCOPED_TRACE(testing::PrintToString(std::u16string(path)));
    HKEY key = reinterpret_cast<HKEY>(1);
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, &key), open);
    EXPECT_EQ(key == nullptr, open != ERROR_SUCCESS) << "the result is null exactly on failure";
    if (key) RegCloseKey(key);
  }
  HKEY other = nullptr;
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"Soft", 0, KEY_READ, &other), ERROR_FILE_NOT_FOUND) << "roots apart";
  EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, u"Soft", 0, KEY_READ, nullptr), ERROR_INVALID_PARAMETER);
}

// Each call against a handle that lacks the right it needs, and with it.
TEST_F(RegistryTest, HandlesRefuseWhatTheirRightsDoNotAllow) {
  HKEY made = nullptr;
  DWORD size = 16;
  const std::tuple<const char*, REGSAM, LONG, std::function<LONG(HKEY)>> cases[] = {
      {"set", KEY_READ, ERROR_ACCESS_DENIED, [](HKEY key) { return SetText(key, u"v", u"new"); }},
      {"delete value", KEY_READ, ERROR_ACCESS_DENIED, [](HKEY key) { return RegDeleteValueW(key, u"v"); }},
      {"create new", KEY_READ, ERROR_ACCESS_DENIED,
       [&](HKEY key) { return RegCreateKeyExW(key, u"New", 0, nullptr, 0, KEY_READ, nullptr, &made, nullptr); }},
      {"create existing", KEY_READ, ERROR_SUCCESS,
       [&](HKEY key) { return RegCreateKeyExW(key, u"child", 0, nullptr, 0, KEY_READ, nullptr, &made, nullptr); }},
      {"query", KEY_SET_VALUE, ERROR_ACCESS_DENIED,
       [&](HKEY key) { return RegQueryValueExW(key, u"v", nullptr, nullptr, nullptr, &size); }},
      // The handle's rights don't matter to a delete.
      {"delete key", KEY_QUERY_VALUE, ERROR_SUCCESS, [](HKEY key) { return RegDeleteKeyW(key, u"Child"); }},
  };
  for (const auto& [call, access, expected, run] : cases) {
    SCOPED_TRACE(std::string(call) + " with access " + std::to_string(access));
    HKEY writer = Create(u"K");
    SetText(writer, u"v", u"old");
    RegCloseKey(Create(u"K\\Child"));
    HKEY key = Open(u"K", access);
    size = 16;
    EXPECT_EQ(run(key), expected);
    EXPECT_EQ(Text(writer, u"v"), u"old");
    if (made) RegCloseKey(std::exchange(made, nullptr));
    RegCloseKey(key);
    RegCloseKey(writer);
  }
}

TEST_F(RegistryTest, ValuesKeepTheirTypeAndBytesAndFollowTheBufferRules) {
  const std::tuple<const char*, DWORD, std::vector<BYTE>> cases[] = {
      {"string", REG_SZ, {'a', 0, 'b', 0, 0, 0}},
      {"bytes of another type", REG_BINARY, {1, 0, 255}},
      {"empty", REG_SZ, {}},
  };
  HKEY key = Create(u"Values");
  for (const auto& [label, valueType, data] : cases) {
    SCOPED_TRACE(label);
    const auto size = static_cast<DWORD>(data.size());
    ASSERT_EQ(RegSetValueExW(key, u"Name", 0, valueType, data.data(), size), 0);
    DWORD type = 99, needed = 0, room = size + 2;
    EXPECT_EQ(RegQueryValueExW(key, u"NAME", nullptr, &type, nullptr, &needed), 0) << "size only";
    EXPECT_EQ(type, valueType);
    EXPECT_EQ(needed, size);
    std::vector<BYTE> buffer(size + 2, 0xEE);
    EXPECT_EQ(RegQueryValueExW(key, u"name", nullptr, nullptr, buffer.data(), &room), 0);
    EXPECT_EQ(room, size);
    EXPECT_EQ(std::vector<BYTE>(buffer.begin(), buffer.begin() + size), data);
    if (size == 0) continue;
    room = size - 1;
    std::fill(buffer.begin(), buffer.end(), 0xEE);
    EXPECT_EQ(RegQueryValueExW(key, u"Name", nullptr, nullptr, buffer.data(), &room), ERROR_MORE_DATA);
    EXPECT_EQ(room, size) << "the size needed";
    EXPECT_EQ(buffer[0], 0xEE) << "nothing written";
  }
  EXPECT_EQ(RegQueryValueExW(key, u"Other", nullptr, nullptr, nullptr, nullptr), ERROR_FILE_NOT_FOUND);
  BYTE byte = 0;
  EXPECT_EQ(RegQueryValueExW(key, u"Name", nullptr, nullptr, &byte, nullptr), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(RegSetValueExW(key, u"Name", 0, REG_BINARY, nullptr, 3), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(SetText(key, nullptr, u"default"), 0);
  EXPECT_EQ(Text(key, u""), u"default") << "null and empty name are the default value";
  EXPECT_EQ(RegDeleteValueW(key, u"NAME"), 0);
  EXPECT_EQ(RegDeleteValueW(key, u"Name"), ERROR_FILE_NOT_FOUND);
  RegCloseKey(key);
}

TEST_F(RegistryTest, EnumerationOrdersAndCounts) {
  HKEY key = Create(u"Enum");
  for (const char16_t* child : {u"beta", u"Alpha", u"gamma"})
    RegCloseKey(Create((u"Enum\\" + std::u16string(child)).c_str()));
  RegCloseKey(Create(u"ENUM\\BETA\\deeper"));  // the keys on the way keep their first spelling
  // "Z" sets "z" again: it keeps its place.
  for (const auto& [name, text] : {std::pair{u"z", u"1"}, {u"a", u"22"}, {u"m", u"333"}, {u"Z", u"again"}})
    SetText(key, name, text);
  RegDeleteValueW(key, u"a");
  SetText(key, u"a", u"back");  // deleted and set: goes to the end
  EXPECT_EQ(SubKeys(key), (std::vector<std::u16string>{u"Alpha", u"beta", u"gamma"}));
  EXPECT_EQ(Values(key), (std::vector<std::u16string>{u"z", u"m", u"a"}));

  DWORD subKeys = 0, values = 0;
  ASSERT_EQ(Counts(key, &subKeys, &values), 0);
  EXPECT_EQ(subKeys, 3u);
  EXPECT_EQ(values, 3u);

  char16_t name[8] = {u'q', 0};
  DWORD size = 5;  // "Alpha" needs 6 with its terminator
  EXPECT_EQ(RegEnumKeyExW(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr), ERROR_MORE_DATA);
  EXPECT_EQ(name[0], u'q') << "nothing written";
  DWORD type = 0, dataSize = 2;
  BYTE data[2];
  size = 8;
  EXPECT_EQ(RegEnumValueW(key, 0, name, &size, nullptr, &type, data, &dataSize), ERROR_MORE_DATA);
  EXPECT_EQ(std::u16string(name), u"z") << "name and type written when only the data doesn't fit";
  EXPECT_EQ(dataSize, 12u) << "\"again\" with its terminator";
  size = 1;  // "z" needs 2 with its terminator
  EXPECT_EQ(RegEnumValueW(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr), ERROR_MORE_DATA);
  RegCloseKey(key);
}

TEST_F(RegistryTest, DeleteTakesOnlyLeavesAndLeavesStaleHandlesFailing) {
  HKEY parent = Create(u"P");
  HKEY leaf = Create(u"P\\Leaf");
  SetText(leaf, u"v", u"x");
  EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, u"P"), ERROR_ACCESS_DENIED) << "has a sub key";
  EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, u""), ERROR_ACCESS_DENIED) << "a root";
  EXPECT_EQ(RegDeleteKeyW(parent, nullptr), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(RegDeleteKeyW(parent, u"Missing"), ERROR_FILE_NOT_FOUND);
  ASSERT_EQ(RegDeleteKeyW(parent, u"LEAF"), ERROR_SUCCESS);
  RegCloseKey(Create(u"P\\Leaf"));  // the same name again: a new key, without the old values
  DWORD size = 0, count = 0;
  char16_t name[8];
  EXPECT_EQ(RegQueryValueExW(leaf, u"v", nullptr, nullptr, nullptr, &size), ERROR_KEY_DELETED);
  EXPECT_EQ(SetText(leaf, u"v", u"y"), ERROR_KEY_DELETED);
  EXPECT_EQ(RegDeleteValueW(leaf, u"v"), ERROR_KEY_DELETED);
  EXPECT_EQ(RegEnumKeyExW(leaf, 0, name, &size, nullptr, nullptr, nullptr, nullptr), ERROR_KEY_DELETED);
  EXPECT_EQ(Counts(leaf, &count, nullptr), ERROR_KEY_DELETED);
  HKEY again = Open(u"P\\Leaf", KEY_READ);
  EXPECT_EQ(Text(again, u"v"), u"<2>");
  RegCloseKey(again);
  EXPECT_EQ(RegCloseKey(leaf), ERROR_SUCCESS);
  EXPECT_EQ(RegCloseKey(leaf), ERROR_INVALID_HANDLE);
  EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);
  RegCloseKey(parent);
}

TEST_F(RegistryTest, WhatIsWrittenIsThereWhenTheStoreIsOpenedAgain) {
  HKEY key = Create(u"Kept");
  const DWORD written = 42;
  RegSetValueExW(key, u"n", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&written), 4);
  RegCloseKey(key);
  win_testing::useRegistryStore(mFolder.posix("registry.db"));  // closes the connection
  key = Open(u"KEPT", KEY_READ);
  DWORD number = 0, size = 4;
  EXPECT_EQ(RegQueryValueExW(key, u"N", nullptr, nullptr, reinterpret_cast<LPBYTE>(&number), &size), 0);
  EXPECT_EQ(number, 42u);
  RegCloseKey(key);
}

TEST_F(RegistryTest, AStoreThatIsNotOursFailsEveryCallAndIsLeftAlone) {
  mFolder.makeFile("text.db", "this is not a database, just some text that is long enough to fill a header\n");
  mFolder.makeFile("plain", "x");  // a file where the store's folder should be
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(mFolder.posix("foreign.db").c_str(), &db), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(db, "CREATE TABLE keys(id); CREATE TABLE vals(other TEXT);", nullptr, nullptr, nullptr),
            SQLITE_OK);
  sqlite3_close(db);
  const std::pair<const char*, LONG> cases[] = {
      {"text.db", ERROR_BADDB}, {"foreign.db", ERROR_BADDB}, {"plain/registry.db", ERROR_CANTOPEN}};
  for (const auto& [relative, status] : cases) {
    SCOPED_TRACE(relative);
    const std::string bytes = mFolder.read(relative);
    win_testing::useRegistryStore(mFolder.posix(relative));
    HKEY key = reinterpret_cast<HKEY>(1);
    DWORD size = 0;
    EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, u"K", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr), status);
    EXPECT_EQ(key, nullptr);
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, u"K", 0, KEY_READ, &key), status);
    EXPECT_EQ(SetText(HKEY_CURRENT_USER, u"v", u"x"), status);
    EXPECT_EQ(RegQueryValueExW(HKEY_CURRENT_USER, u"v", nullptr, nullptr, nullptr, &size), status);
    EXPECT_TRUE(mFolder.read(relative) == bytes) << "the file is untouched";
  }
}

// --- ATL's CRegKey ---------------------------------------------------------

TEST_F(RegistryTest, CRegKeyRecurseDeleteTakesTheWholeTree) {
  for (const char16_t* path : {u"T\\A\\A1", u"T\\A\\A2\\deep", u"T\\B", u"T\\C\\C1"}) RegCloseKey(Create(path));
  RegCloseKey(Create(u"Beside"));
  ATL::CRegKey root(HKEY_CURRENT_USER);
  EXPECT_EQ(root.DeleteSubKey(u"T"), ERROR_ACCESS_DENIED) << "not a leaf";
  EXPECT_EQ(root.RecurseDeleteKey(u"t"), ERROR_SUCCESS);
  EXPECT_EQ(root.RecurseDeleteKey(u"T"), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(SubKeys(HKEY_CURRENT_USER), std::vector<std::u16string>{u"Beside"});
  root.Detach();
}

}  // namespace
