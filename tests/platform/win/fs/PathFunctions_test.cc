#include "win/fs/PathFunctions.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "support/u16.h"

namespace {

// Runs an in-place path function on a MAX_PATH copy of `path`.
template <typename Function>
std::u16string inPlace(const std::u16string& path, Function function) {
  char16_t buffer[MAX_PATH] = {};
  path.copy(buffer, path.size());
  function(buffer);
  return buffer;
}

TEST(PathRemoveFileSpecW, CutsTheLastComponentAndKeepsRoots) {
  const std::tuple<std::u16string, BOOL, std::u16string> cases[] = {
      {u"C:\\a\\b.dwg", TRUE, u"C:\\a"}, {u"C:\\a", TRUE, u"C:\\"}, {u"C:\\", FALSE, u"C:\\"},
      {u"C:b.dwg", TRUE, u"C:"},         {u"a/b", TRUE, u""},  // only the backslash separates here
  };
  for (const auto& [path, removed, expected] : cases) {
    SCOPED_TRACE(U8(path));
    BOOL result = -1;
    EXPECT_EQ(inPlace(path, [&](char16_t* buffer) { result = PathRemoveFileSpecW(buffer); }), expected);
    EXPECT_EQ(result, removed);
  }
}

TEST(PathCombineW, JoinsWithOneBackslashAndCanonicalizes) {
  const std::tuple<const char16_t*, const char16_t*, const char16_t*> cases[] = {
      {u"C:\\a\\", u"b.txt", u"C:\\a\\b.txt"}, {u"C:\\a", u"D:\\x", u"D:\\x"},   {u"C:\\a\\b", u"\\x", u"C:\\x"},
      {u"C:\\a\\b", u"..\\c", u"C:\\a\\c"},    {u"C:\\a", u".\\c", u"C:\\a\\c"}, {u"C:\\", u"..\\c", u"C:\\c"},
      {nullptr, u"b.txt", u"b.txt"},           {u"C:\\a", nullptr, u"C:\\a"},    {nullptr, nullptr, nullptr},
  };
  for (const auto& [folder, file, expected] : cases) {
    SCOPED_TRACE(testing::Message() << (folder ? U8(folder) : "null") << " + " << (file ? U8(file) : "null"));
    char16_t dest[MAX_PATH] = u"junk";
    EXPECT_EQ(PathCombineW(dest, folder, file), expected ? dest : nullptr);
    EXPECT_EQ(std::u16string(dest), expected ? expected : u"");  // emptied on failure
  }
}

TEST(PathCombineW, DestinationMayBeTheFolderAndMaxPathIsEnforced) {
  char16_t buffer[MAX_PATH] = u"C:\\a";
  EXPECT_EQ(PathCombineW(buffer, buffer, u"b"), buffer);
  EXPECT_EQ(std::u16string(buffer), u"C:\\a\\b");
  const std::u16string folder = u"C:\\" + std::u16string(250, u'f');    // 253 units
  EXPECT_NE(PathCombineW(buffer, folder.c_str(), u"12345"), nullptr);   // 259 units
  EXPECT_EQ(PathCombineW(buffer, folder.c_str(), u"123456"), nullptr);  // 260 units
  EXPECT_EQ(buffer[0], u'\0');
}

TEST(PathCompactPathExW, PutsAnEllipsisInPlaceOfMiddleComponents) {
  const std::u16string path = u"C:\\path1\\path2\\sample.txt";  // 25 units
  const std::tuple<std::u16string, UINT, std::u16string> cases[] = {
      {path, 26, path},
      {path, 25, u"C:\\path1\\...\\sample.txt"},
      {path, 15, u"...\\sample.txt"},
      {path, 14, u"sample.txt..."},
      {u"My Filename", 10, u"My Fil..."},
      {u"/usr/share/doc/readme.md", 20, u"/usr/.../readme.md"},  // '/' kept when the source uses it
      {path, 3, u".."},
  };
  for (const auto& [source, size, expected] : cases) {
    SCOPED_TRACE(testing::Message() << U8(source) << " size " << size);
    std::u16string out(size, u'#');
    EXPECT_TRUE(PathCompactPathExW(out.data(), source.c_str(), size, 0));
    EXPECT_EQ(std::u16string(out.c_str()), expected);
    EXPECT_LT(std::u16string(out.c_str()).size(), size);
  }
  char16_t out[8];
  EXPECT_FALSE(PathCompactPathExW(out, path.c_str(), 0, 0));
  EXPECT_FALSE(PathCompactPathExW(out, path.c_str(), 8, 1));
  EXPECT_FALSE(PathCompactPathExW(out, nullptr, 8, 0));
}

}  // namespace
