#include "win/fs/SplitPath.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "support/u16.h"

namespace {

TEST(SplitPath, PartsAndBufferRules) {
  // The path, then its drive, folder, name and extension.
  const std::vector<std::vector<std::u16string>> cases = {
      {u"C:\\a\\b.c.dwg", u"C:", u"\\a\\", u"b.c", u".dwg"},
      {u"c:rel.txt", u"c:", u"", u"rel", u".txt"},
      {u"\\a.b\\name", u"", u"\\a.b\\", u"name", u""},
      {u"a/b\\c.", u"", u"a/b\\", u"c", u"."},
      {u"", u"", u"", u"", u""},
  };
  for (const std::vector<std::u16string>& c : cases) {
    char16_t drive[3], dir[64], name[64], ext[64];
    ASSERT_EQ(_wsplitpath_s(c[0].c_str(), drive, 3, dir, 64, name, 64, ext, 64), 0);
    EXPECT_EQ((std::vector<std::u16string>{c[0], drive, dir, name, ext}), c);
  }
  char16_t name[4] = u"old", ext[8] = u"old";
  EXPECT_EQ(_wsplitpath_s(u"\\x\\long.e", nullptr, 0, nullptr, 0, name, 4, ext, 8), ERANGE);
  EXPECT_EQ(std::u16string(name), u"");
  EXPECT_EQ(std::u16string(ext), u"");
  EXPECT_EQ(_wsplitpath_s(u"\\x\\abc.e", nullptr, 0, nullptr, 0, name, 4, ext, 8), 0);  // 3 units + terminator fit
  EXPECT_EQ(_wsplitpath_s(nullptr, nullptr, 0, nullptr, 0, name, 4, nullptr, 0), EINVAL);
  EXPECT_EQ(_wsplitpath_s(u"a", nullptr, 3, nullptr, 0, nullptr, 0, nullptr, 0), EINVAL);
  EXPECT_EQ(_wsplitpath_s(u"a", nullptr, 0, nullptr, 0, name, 0, nullptr, 0), EINVAL);
}

}  // namespace
