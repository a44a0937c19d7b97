#include "zd/dxf/DxfTags.h"

#include <gtest/gtest.h>

#include <utility>

#include "zd/dxf/DxfTextCodec.h"

namespace {

// All tags of a text as "code:value@line", and the fault with its line.
std::string tagsOf(std::string_view text) {
  DxfTagReader reader(text);
  std::string out;
  for (DxfTag tag; reader.next(tag);)
    out += std::to_string(tag.code) + ":" + std::string(tag.value) + "@" + std::to_string(tag.line) + " ";
  if (!reader.problem().empty()) out += std::to_string(reader.problemLine()) + ": " + reader.problem();
  return out;
}

TEST(DxfTags, ReadsTagsOrNamesTheFaultyLine) {
  const std::pair<const char*, const char*> cases[] = {
      {"  0\nSECTION\n  2\nHEADER\n0\nEOF\n", "0:SECTION@1 2:HEADER@3 0:EOF@5 "},
      {"  0\r\nSECTION\r\n  2\r\nHEADER\r\n\r\n", "0:SECTION@1 2:HEADER@3 "},
      {"0\rSECTION\r2\rHEADER", "0:SECTION@1 2:HEADER@3 "},
      {"\xEF\xBB\xBF"
       "999\nmade by hand\n0\nSECTION\n999\n\n0\nEOF\n",
       "0:SECTION@3 0:EOF@7 "},
      {"", ""},
      {"0\nSECTION\nx2\nHEADER\n", "0:SECTION@1 3: group code expected"},
      {"0\nSECTION\n 2 3\nHEADER\n", "0:SECTION@1 3: group code expected"},
      {"0\nSECTION\n2", "0:SECTION@1 3: value of group 2 expected, the file ends"},
      {"0\nSECTION\n-1\nX\n", "0:SECTION@1 3: group code -1 is not a DXF group code"},
      {"0\nSECTION\n85\nX\n", "0:SECTION@1 3: group code 85 is not a DXF group code"},
  };
  for (const auto& [text, tags] : cases) EXPECT_EQ(tagsOf(text), tags) << text;
}

TEST(DxfTags, KnowsTheDefinedGroupCodes) {
  for (const int code : {0, 79, 90, 102, 105, 110, 149, 160, 179, 210, 239, 270, 481, 999, 1000, 1071})
    EXPECT_TRUE(isDxfGroupCode(code)) << code;
  for (const int code : {-5, 80, 89, 103, 106, 150, 180, 240, 482, 998, 1072})
    EXPECT_FALSE(isDxfGroupCode(code)) << code;
}

TEST(DxfTextCodec, ChoosesTheEncodingByVersionAndCodePage) {
  const auto utf8 = DxfTextCodec::forDrawing("AC1032", "ANSI_1252");
  ASSERT_TRUE(utf8);
  EXPECT_EQ(utf8->decode("Sch\xC3\xA9ma \\U+00C4"), u"Schéma Ä");
  const auto latin = DxfTextCodec::forDrawing("AC1015", "ANSI_1252");
  ASSERT_TRUE(latin);
  EXPECT_EQ(latin->decode("Sch\xE9ma \x80"), u"Schéma €");
  EXPECT_EQ(latin->encode(u"é€ Ж"), "\xE9\x80 \\U+0416");
  EXPECT_EQ(latin->decode(latin->encode(u"Ж\U0001F600x")), u"Ж\U0001F600x");
  const auto japanese = DxfTextCodec::forDrawing("AC1018", "ANSI_932");
  ASSERT_TRUE(japanese);
  EXPECT_EQ(japanese->decode("\x93\xfa\x96\x7b"), u"日本");
  EXPECT_FALSE(DxfTextCodec::forDrawing("AC1009", "ANSI_NOSUCH"));
  EXPECT_EQ(DxfTextCodec::forDrawing("AC1009", "")->codePage(), "ANSI_1252");
  EXPECT_EQ(utf8->decode("\\U+12"), u"\\U+12");  // too short to be an escape
}

}  // namespace
