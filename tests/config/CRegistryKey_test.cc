// CRegistryKey on a real registry store: roots, value types and buffer
// rules, the lists that only grow, and the message boxes it shows.
#include "ohmutils/config/CRegistryKey.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "RegistryStoreFixture.h"
#include "mfc/AfxMessageBox.h"
#include "support/u16.h"
#include "win/WinError.h"
#include "win/registry/Registry.h"
#include "win/ui/MessageBox.h"

namespace {

constexpr const char16_t* kTitle = u"OhmUtils Registry";  // string 112 of the resource library

class CRegistryKeyTest : public RegistryStoreFixture {
 protected:
  // Writes raw value `name` of `type` under HKEY_CURRENT_USER\`path`.
  static void Put(const char16_t* path, const char16_t* name, DWORD type, const std::vector<BYTE>& data) {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr), 0);
    EXPECT_EQ(RegSetValueExW(key, name, 0, type, data.data(), static_cast<DWORD>(data.size())), 0);
    RegCloseKey(key);
  }
  static std::vector<BYTE> Bytes(const std::u16string& text, bool terminator = true) {
    const auto* begin = reinterpret_cast<const BYTE*>(text.c_str());
    return std::vector<BYTE>(begin, begin + (text.size() + (terminator ? 1 : 0)) * 2);
  }
  template <class Item>
  static std::vector<std::u16string> Names(CList<Item, Item&>& list) {
    std::vector<std::u16string> names;
    for (POSITION pos = list.GetHeadPosition(); pos;) names.push_back(list.GetNext(pos).name.str());
    return names;
  }
  // Each listed value as "name type number text".
  static std::vector<std::string> Values(CList<REGITEM, REGITEM&>& list) {
    std::vector<std::string> values;
    for (POSITION pos = list.GetHeadPosition(); pos;) {
      const REGITEM& item = list.GetNext(pos);
      values.push_back(U8(item.name.str()) + " " + std::to_string(item.type) + " " + std::to_string(item.dwordValue) +
                       " " + U8(item.stringValue.str()));
    }
    return values;
  }
  void ExpectBox(std::size_t index, const std::u16string& text, const std::u16string& caption, UINT type) {
    ASSERT_GT(boxes().size(), index);
    EXPECT_EQ(boxes()[index].text, text);
    EXPECT_EQ(boxes()[index].caption, caption);
    EXPECT_EQ(boxes()[index].type, type);
  }
};

TEST_F(CRegistryKeyTest, ANewObjectWorksOnTheRootOfTheCurrentUser) {
  Put(u"", u"AtRoot", REG_SZ, Bytes(u"root text"));
  CRegistryKey key;
  CString text;
  EXPECT_EQ(key.GetValue(u"AtRoot", text), 0);
  EXPECT_EQ(text, u"root text");
  key.SetRootToHLMK();
  EXPECT_EQ(key.GetValue(u"AtRoot", text), ERROR_FILE_NOT_FOUND) << "the other root";
  EXPECT_EQ(key.Create(u"Machine\\Only"), 0);
  EXPECT_EQ(key.SetValue(u"n", DWORD{5}), 0);
  key.Close();
  key.SetRootToHCUK();
  EXPECT_EQ(key.Open(u"Machine\\Only", 0x20019), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(key.m_hKey, HKEY_CURRENT_USER) << "a failed open keeps the key held";
  EXPECT_TRUE(boxes().empty());
}

TEST_F(CRegistryKeyTest, GetValueChecksTypeSizeAndTerminator) {
  const std::vector<BYTE> number{0x78, 0x56, 0x34, 0x12};
  // label, type, data, read as ('n' number, 'b' buffer of 8 units, 's' CString), status, text read back
  const std::tuple<const char*, DWORD, std::vector<BYTE>, char, long, std::u16string> cases[] = {
      {"number", REG_DWORD, number, 'n', 0, u"305419896"},  // 0x12345678
      {"number from a short string", REG_SZ, Bytes(u"x"), 'n', ERROR_INVALID_DATA, u""},
      {"string", REG_SZ, Bytes(u"abc"), 'b', 0, u"abc"},
      {"expandable string", REG_EXPAND_SZ, Bytes(u"%P%"), 'b', 0, u"%P%"},
      {"number into a buffer", REG_DWORD, number, 'b', ERROR_INVALID_DATA, u""},
      {"odd byte count", REG_SZ, {'a', 0, 0}, 'b', ERROR_INVALID_DATA, u""},
      {"no terminator", REG_SZ, Bytes(u"ab", false), 'b', ERROR_INVALID_DATA, u""},
      {"no bytes", REG_SZ, {}, 'b', 0, u""},
      {"1998 units fill a CString", REG_SZ, Bytes(std::u16string(1998, u'w')), 's', 0, std::u16string(1998, u'w')},
      {"1999 units don't fit", REG_SZ, Bytes(std::u16string(1999, u'w')), 's', ERROR_MORE_DATA, u""},
  };
  CRegistryKey key;
  ASSERT_EQ(key.Create(u"Types"), 0);
  for (const auto& [label, type, data, form, expected, readBack] : cases) {
    SCOPED_TRACE(label);
    Put(u"Types", u"v", type, data);
    DWORD value = 0;
    char16_t buffer[8] = {u'?', 0};
    CString text;
    const long status = form == 'n'   ? key.GetValue(u"v", value)
                        : form == 'b' ? key.GetValue(u"v", buffer, 8)
                                      : key.GetValue(u"v", text);
    EXPECT_EQ(status, expected);
    if (status != 0) continue;
    EXPECT_EQ(form == 'n' ? U16(std::to_string(value)) : form == 'b' ? buffer : text.str(), readBack);
  }
  DWORD number32 = 0;
  EXPECT_EQ(key.GetValue(u"missing", number32), ERROR_FILE_NOT_FOUND);
  char16_t buffer[8] = u"abcdef";
  EXPECT_EQ(key.GetValue(nullptr, buffer, 8), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(key.GetValue(u"v", static_cast<LPWSTR>(nullptr), 8), ERROR_INVALID_PARAMETER);
  Put(u"Types", u"v", REG_SZ, Bytes(u"12345"));  // 12 bytes: the six units in the buffer hold it
  EXPECT_EQ(key.GetValue(u"v", buffer, 0xFFFFFFFF), 0);
  EXPECT_EQ(std::u16string(buffer), u"12345");
  char16_t shortBuffer[8] = u"ab";
  EXPECT_EQ(key.GetValue(u"v", shortBuffer, 0xFFFFFFFF), ERROR_MORE_DATA) << "two units in the buffer";
  key.Close();
}

TEST_F(CRegistryKeyTest, SetValueWritesTextWithItsTerminatorAndEveryOtherItemAsANumber) {
  CRegistryKey key;
  ASSERT_EQ(key.Create(u"Set"), 0);
  EXPECT_EQ(key.SetValue(u"null", static_cast<LPCWSTR>(nullptr)), ERROR_INVALID_DATA);
  EXPECT_EQ(RegQueryValueExW(key, u"null", nullptr, nullptr, nullptr, nullptr), ERROR_FILE_NOT_FOUND)
      << "nothing written";
  CList<REGITEM, REGITEM&> empty, items;
  EXPECT_EQ(key.SetValue(&empty), 0);
  for (REGITEM item :
       {REGITEM{REG_SZ, u"t", u"words", 9}, {REG_BINARY, u"b", u"ignored", 77}, {REG_DWORD, u"n", u"", 3}})
    items.AddTail(item);
  EXPECT_EQ(key.SetValue(&items), 0);
  for (const auto& [name, storedType, storedSize] :
       {std::tuple{u"t", REG_SZ, 12u}, {u"b", REG_DWORD, 4u}, {u"n", REG_DWORD, 4u}}) {
    DWORD type = 0, size = 0;
    EXPECT_EQ(RegQueryValueExW(key, name, nullptr, &type, nullptr, &size), 0);
    EXPECT_EQ(type, DWORD(storedType)) << U8(name);
    EXPECT_EQ(size, storedSize) << U8(name);
  }
  DWORD value = 0;
  EXPECT_EQ(key.GetValue(u"b", value), 0);
  EXPECT_EQ(value, 77u);
  key.Close();
}

TEST_F(CRegistryKeyTest, ListsAppendToTheCallersListAndKeepEverythingListedBefore) {
  for (const char16_t* path : {u"L\\one", u"L\\Two"}) Put(path, u"x", REG_SZ, Bytes(u"x"));
  Put(u"L", u"text", REG_SZ, Bytes(u"hello"));
  Put(u"L", u"number", REG_DWORD, {1, 2, 0, 0});
  Put(u"L", u"bytes", REG_BINARY, {9, 9});
  CRegistryKey key;
  ASSERT_EQ(key.Open(u"L", 0x20019), 0);
  CList<SUBKEY, SUBKEY&> first, second;
  EXPECT_EQ(key.GetSubKeyList(&first), 0);
  EXPECT_EQ(key.GetSubKeyList(&second), 0);
  EXPECT_EQ(Names(first), (std::vector<std::u16string>{u"one", u"Two"}));
  EXPECT_EQ(Names(second), Names(first));
  EXPECT_EQ(Names(key.subKeyList), (std::vector<std::u16string>{u"one", u"Two", u"one", u"Two"}));

  CList<REGITEM, REGITEM&> values;
  EXPECT_EQ(key.GetValueList(&values), 0);
  // A number's least significant byte first; the text only of text, the number only of a number.
  EXPECT_EQ(Values(values), (std::vector<std::string>{"text 1 0 hello", "number 4 513 ", "bytes 3 0 "}));
  EXPECT_EQ(key.valueList.GetCount(), 3);
  EXPECT_TRUE(boxes().empty());
  key.Close();
}

TEST_F(CRegistryKeyTest, ListingFailuresShowTheirBoxes) {
  Put(u"F\\child", u"x", REG_SZ, Bytes(u"x"));
  Put(u"F", u"big", REG_BINARY, std::vector<BYTE>(1001, 7));
  Put(u"F", u"small", REG_SZ, Bytes(u"s"));
  CRegistryKey key;
  ASSERT_EQ(key.Open(u"F", KEY_ENUMERATE_SUB_KEYS), 0);  // can't be counted
  CList<REGITEM, REGITEM&> values;
  EXPECT_EQ(key.GetValueList(&values), ERROR_ACCESS_DENIED);
  EXPECT_TRUE(values.IsEmpty());
  ExpectBox(0, u"The registry key could not be queried for its sub keys and values.", kAfxApplicationName, MB_OK);

  ASSERT_EQ(key.Open(u"F", KEY_QUERY_VALUE), 0);  // can be counted, not enumerated
  CList<SUBKEY, SUBKEY&> keys;
  EXPECT_EQ(key.GetSubKeyList(&keys), ERROR_MORE_DATA);
  EXPECT_EQ(keys.GetCount(), 1) << "the failed entry is appended all the same";
  ExpectBox(1, u"More data is available.\r\n", kTitle, MB_ICONINFORMATION);

  EXPECT_EQ(key.GetValueList(&values), 0) << "only the last entry's status counts";
  ASSERT_EQ(values.GetCount(), 2);
  EXPECT_EQ(values.GetHead().name, u"big") << "name and type of an entry whose data didn't fit";
  EXPECT_EQ(values.GetHead().type, REG_BINARY);
  EXPECT_EQ(boxes().size(), 2u);
  Put(u"F", u"huge", REG_BINARY, std::vector<BYTE>(1001, 7));  // now the last one doesn't fit
  EXPECT_EQ(key.GetValueList(&values), ERROR_MORE_DATA);
  EXPECT_EQ(values.GetCount(), 5);
  ExpectBox(2, u"More data is available.\r\n", kTitle, MB_ICONINFORMATION);
  key.Close();
}

TEST_F(CRegistryKeyTest, DeleteAllValuesWorksThroughEverythingListedUntilAFailure) {
  CRegistryKey key;
  ASSERT_EQ(key.Create(u"D"), 0);
  EXPECT_EQ(key.DeleteAllValues(), 0) << "no values";
  key.SetValue(u"a", u"1");
  key.SetValue(u"b", u"2");
  CList<REGITEM, REGITEM&> listed;
  key.GetValueList(&listed);  // a, b in valueList before the delete lists them again
  EXPECT_EQ(key.DeleteAllValues(), ERROR_FILE_NOT_FOUND) << "a was deleted once already";
  EXPECT_EQ(Names(key.valueList), std::vector<std::u16string>{u"b"}) << "what follows the failure stays";
  DWORD count = 9;
  RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr,
                   nullptr);
  EXPECT_EQ(count, 0u);
  EXPECT_TRUE(boxes().empty());
  key.Close();
}

TEST_F(CRegistryKeyTest, DeleteKeyTakesTheTreeOrShowsWhyNot) {
  Put(u"Tree\\A\\B", u"v", REG_SZ, Bytes(u"v"));
  Put(u"Tree\\C", u"v", REG_SZ, Bytes(u"v"));
  CRegistryKey key;
  EXPECT_EQ(key.DeleteKey(u"Tree"), 0);
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ(key.Open(u"Tree", 0x20019), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(key.DeleteKey(u"Tree"), ERROR_FILE_NOT_FOUND);
  ExpectBox(0, u"The system cannot find the file specified.\r\nThe registry key to delete does not exist.", kTitle,
            MB_ICONINFORMATION);
  EXPECT_EQ(key.DeleteKey(u"\\bad"), ERROR_BAD_PATHNAME);
  ExpectBox(1, u"The specified path is invalid.\r\n", kTitle, MB_ICONINFORMATION);
}

TEST_F(CRegistryKeyTest, MembersWithoutFunctionSaySoAndChangeNothing) {
  Put(u"There", u"v", REG_SZ, Bytes(u"v"));
  CRegistryKey key;
  EXPECT_EQ(key.CopyKey(u"There"), 0);
  EXPECT_FALSE(key.Exists(u"There")) << "also for a key that exists";
  EXPECT_EQ(key.GetRemoteKey(u"There"), 0);
  EXPECT_EQ(key.SetSecurity(), 0);
  const char16_t* texts[] = {u"The method CopyKey is not available.", u"The method Exists is not available.",
                             u"GetRemoteKey has not yet been defined", u"SetSecurity has not yet been defined"};
  ASSERT_EQ(boxes().size(), 4u);
  for (std::size_t i = 0; i < 4; ++i) ExpectBox(i, texts[i], kAfxApplicationName, MB_OK);
}

}  // namespace
