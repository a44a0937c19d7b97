#include "ohmutils/util/OhmUtilsPaths.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/u16.h"
#include "zd/ZdString.h"

namespace {

TEST(EnsureEndingBackslash, OnlyTheBackslashCounts) {
  for (const auto& [before, after] : {std::pair{u"", u""}, {u"a", u"a\\"}, {u"a\\", u"a\\"}, {u"a/", u"a/\\"}}) {
    CString path(before);
    EnsureEndingBackslash(path);
    EXPECT_EQ(path, after) << U8(before);
  }
}

// The three functions that take a part of a path: true with the part, false
// with an empty output when a part or the path is too long.
TEST(PathParts, NameWithoutAndWithExtensionAndFolder) {
  using Part = bool (*)(const ZdString&, ZdString&);
  const Part without = OhmUtilsGetFileNameWithoutExt, with = OhmUtilsGetFileNameWithExt, folder = OhmUtilsGetFolderPath;
  const std::u16string n256(256, u'n'), d250(250, u'd');
  const std::tuple<Part, std::u16string, bool, std::u16string> cases[] = {
      {without, u"C:\\a\\b.c.dwg", true, u"b.c"},
      {without, u"C:\\" + n256 + u".dwg", false, u""},  // name over 255 units
      {with, u"C:\\a\\b.dwg", true, u"b.dwg"},
      {with, u"b.dwg", true, u"b.dwg"},
      {with, u"", true, u""},
      {with, u"C:\\" + n256, true, n256},         // 259 units
      {with, u"C:\\" + n256 + u"n", false, u""},  // 260 units
      {folder, u"C:\\a\\b.dwg", true, u"C:\\a"},
      {folder, u"C:\\", false, u""},
      {folder, u"C:\\" + d250 + u"\\x.dwg", true, u"C:\\" + d250},
      {folder, u"C:\\" + d250 + u"d\\x.dwg", false, u""},  // 260 units
  };
  for (const auto& [part, path, result, expected] : cases) {
    SCOPED_TRACE(U8(path.substr(0, 40)));
    ZdString out(u"old");
    EXPECT_EQ(part(ZdString(path), out), result);
    EXPECT_EQ(out.str(), expected);
  }
}

TEST(EnsureExtension, AddsOrReplacesOnlyARealExtension) {
  const std::tuple<const char16_t*, const char16_t*, bool, const char16_t*> cases[] = {
      {u"a", u"dwg", false, u"a.dwg"},
      {u"a.txt", u"dwg", false, u"a.txt"},
      {u"a.txt", u"dwg", true, u"a.dwg"},
      {u"a.", u"dwg", true, u"a.dwg"},
      {u"c.d\\e", u"dwg", false, u"c.d\\e.dwg"},
      {u"c.d/e", u"dwg", true, u"c.d/e.dwg"},
      {u"a", nullptr, true, u"a"},
      {u"", u"dwg", true, u""}};
  for (const auto& [before, extension, replace, after] : cases) {
    CString path(before);
    EnsureExtension(path, extension, replace);
    EXPECT_EQ(path, after) << U8(before) << " " << (extension ? U8(extension) : "null") << " " << replace;
  }
}

}  // namespace
