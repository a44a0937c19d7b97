#include "ohmutils/util/OhmUtilsPaths.h"

#include <gtest/gtest.h>

#include "support/u16.h"
#include "zd/ZdString.h"

namespace {

TEST(EnsureEndingBackslash, OnlyTheBackslashCounts) {
  struct Case {
    const char16_t* path;
    const char16_t* expected;
  } cases[] = {
      {u"", u""},
      {u"a", u"a\\"},
      {u"a\\", u"a\\"},
      {u"a/", u"a/\\"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(U8(c.path));
    CString path(c.path);
    EnsureEndingBackslash(path);
    EXPECT_EQ(path, c.expected);
  }
}

TEST(OhmUtilsGetFileNameWithoutExt, TakesTheNameBetweenFolderAndLastDot) {
  struct Case {
    std::u16string path;
    bool result;
    std::u16string name;
  } cases[] = {
      {u"C:\\a\\b.c.dwg", true, u"b.c"},
      {u"C:\\a\\", true, u""},
      {u"a/b/noext", true, u"noext"},
      {u"C:\\" + std::u16string(255, u'n') + u".dwg", true, std::u16string(255, u'n')},
      {u"C:\\" + std::u16string(256, u'n') + u".dwg", false, u""},     // name over 255 units
      {u"C:\\" + std::u16string(255, u'd') + u"\\x.dwg", false, u""},  // folder of 257 with its separators
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(U8(c.path.substr(0, 40)));
    ZdString out(u"old");
    EXPECT_EQ(OhmUtilsGetFileNameWithoutExt(ZdString(c.path), out), c.result);
    EXPECT_EQ(out.str(), c.name);
  }
}

TEST(OhmUtilsGetFileNameWithExt, KeepsTheLastComponent) {
  struct Case {
    std::u16string path;
    bool result;
    std::u16string name;
  } cases[] = {
      {u"C:\\a\\b.dwg", true, u"b.dwg"},
      {u"b.dwg", true, u"b.dwg"},
      {u"", true, u""},
      {u"C:\\" + std::u16string(256, u'n'), true, std::u16string(256, u'n')},  // 259 units
      {u"C:\\" + std::u16string(257, u'n'), false, u""},                       // 260 units
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(U8(c.path.substr(0, 40)));
    ZdString out(u"old");
    EXPECT_EQ(OhmUtilsGetFileNameWithExt(ZdString(c.path), out), c.result);
    EXPECT_EQ(out.str(), c.name);
  }
}

TEST(OhmUtilsGetFolderPath, CutsTheLastComponent) {
  struct Case {
    std::u16string path;
    bool result;
    std::u16string folder;
  } cases[] = {
      {u"C:\\a\\b.dwg", true, u"C:\\a"},
      {u"C:\\a", true, u"C:\\"},
      {u"C:\\", false, u""},
      {u"b.dwg", true, u""},
      {u"C:\\" + std::u16string(250, u'd') + u"\\x.dwg", true, u"C:\\" + std::u16string(250, u'd')},
      {u"C:\\" + std::u16string(251, u'd') + u"\\x.dwg", false, u""},  // 260 units
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(U8(c.path.substr(0, 40)));
    ZdString out(u"old");
    EXPECT_EQ(OhmUtilsGetFolderPath(ZdString(c.path), out), c.result);
    EXPECT_EQ(out.str(), c.folder);
  }
}

TEST(EnsureExtension, AddsOrReplacesOnlyARealExtension) {
  struct Case {
    const char16_t* path;
    const char16_t* extension;
    bool replace;
    const char16_t* expected;
  } cases[] = {
      {u"a", u"dwg", false, u"a.dwg"},
      {u"a.txt", u"dwg", false, u"a.txt"},
      {u"a.txt", u"dwg", true, u"a.dwg"},
      {u"a.DWG", u"dwg", true, u"a.dwg"},
      {u"a.", u"dwg", true, u"a.dwg"},
      {u"a.", u"dwg", false, u"a."},
      {u"c.d\\e", u"dwg", false, u"c.d\\e.dwg"},
      {u"c.d/e", u"dwg", true, u"c.d/e.dwg"},
      {u"a", nullptr, true, u"a"},
      {u"", u"dwg", true, u""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << U8(c.path) << " " << (c.extension ? U8(c.extension) : "null") << " "
                                    << c.replace);
    CString path(c.path);
    EnsureExtension(path, c.extension, c.replace);
    EXPECT_EQ(path, c.expected);
  }
}

}  // namespace
