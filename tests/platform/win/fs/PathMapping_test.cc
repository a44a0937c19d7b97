#include "win/fs/PathMapping.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/u16.h"
#include "win/fs/PathMapping_testing.h"

namespace {

TEST(PathMapping, WindowsFormToPosix) {
  win_testing::mapDrive(u'c', "/srv/c");
  const std::tuple<std::u16string, std::optional<std::string>> cases[] = {
      {u"\\home\\me\\a.dxf", "/home/me/a.dxf"},
      {u"Z:\\tmp\\x", "/tmp/x"},
      {u"Z:", "/"},
      {u"C:\\proj\\A.DWG", "/srv/c/proj/A.DWG"},
      {u"c:rel", "/srv/c/rel"},
      {u"Q:\\unmapped", std::nullopt},
      {u"\\\\server\\share", std::nullopt},
      {u"relative\\\u00e4", "relative/\xC3\xA4"},
  };
  for (const auto& [windows, posix] : cases) EXPECT_EQ(WindowsPathToPosix(windows), posix) << U8(windows);
  win_testing::mapDrive(u'C', "");
  EXPECT_EQ(WindowsPathToPosix(u"C:\\proj"), std::nullopt);
  EXPECT_EQ(PosixPathToWindows("/home/me/a.dxf"), u"\\home\\me\\a.dxf");
}

}  // namespace
