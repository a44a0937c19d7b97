#include "ohmutils/util/OhmUtilsPaths.h"

#include <gtest/gtest.h>

#include "support/u16.h"
#include "zd/ZdString.h"

namespace {

TEST(EnsureEndingBackslash, OnlyTheBackslashCounts) {
  struct Case { const char16_t* path; const char16_t* expected; } cases[] = {
      {u"", u""}, {u"a", u"a\\"}, {u"a\\", u"a\\"}, {u"a/", u"a/\\"}, {u"\\a\\b", u"\\a\\b\\"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(U8(c.path));
    CString path(c.path);
    EnsureEndingBackslash(path);
    EXPECT_EQ(path, c.expected);
  }
}

}  // namespace

namespace {

TEST(OhmUtilsGetFileNameWithoutExt, TakesTheNameBetweenFolderAndLastDot) {
  struct Case { std::u16string path; bool result; std::u16string name; } cases[] = {
      {u"C:\\a\\b.c.dwg", true, u"b.c"},
      {u"C:\\a\\", true, u""},
      {u"\\home\\me\\sheet-03.dxf", true, u"sheet-03"},
      {u"a/b/noext", true, u"noext"},
      {u"C:\\" + std::u16string(255, u'n') + u".dwg", true, std::u16string(255, u'n')},
      {u"C:\\" + std::u16string(256, u'n') + u".dwg", false, u""},       // name over 255 units
      {u"C:\\" + std::u16string(255, u'd') + u"\\x.dwg", false, u""},    // folder of 257 with its separators
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(U8(c.path.substr(0, 40)));
    ZdString out(u"old");
    EXPECT_EQ(OhmUtilsGetFileNameWithoutExt(ZdString(c.path), out), c.result);
    EXPECT_EQ(out.str(), c.name);
  }
}

}  // namespace
