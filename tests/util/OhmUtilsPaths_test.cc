#include "ohmutils/util/OhmUtilsPaths.h"

#include <gtest/gtest.h>

#include "support/u16.h"

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
