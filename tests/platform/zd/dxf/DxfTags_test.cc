#include "zd/dxf/DxfTags.h"

#include <gtest/gtest.h>

#include "support/u16.h"
#include "zd/dxf/DxfTextCodec.h"

namespace {

TEST(DxfTags, SplitsCodeAndValueLinesWithAnyLineEnd) {
  for (const char* text : {"  0\nSECTION\n  2\nHEADER\n0\nEOF\n", "  0\r\nSECTION\r\n  2\r\nHEADER\r\n0\r\nEOF\r\n\r\n",
                           "0\rSECTION\r2\rHEADER\r0\rEOF"}) {
    SCOPED_TRACE(text);
    std::vector<DxfTag> tags;
    int errorLine = -1;
    ASSERT_EQ(readDxfTags(text, tags, errorLine), DxfTagStatus::Ok);
    ASSERT_EQ(tags.size(), 3u);
    EXPECT_EQ(tags[1].code, 2);
    EXPECT_EQ(tags[1].value, "HEADER");
    EXPECT_EQ(tags[1].line, 3);
    EXPECT_EQ(tags[2].value, "EOF");
  }
}

TEST(DxfTags, RefusesWhatIsNoTextDxf) {
  struct Case { const char* text; DxfTagStatus status; int line; } cases[] = {
      {"", DxfTagStatus::Empty, 0},
      {"\n\n", DxfTagStatus::Empty, 0},
      {"AutoCAD Binary DXF\r\n\x1a", DxfTagStatus::Binary, 0},
      {"0\nSECTION\nx2\nHEADER\n", DxfTagStatus::BadGroupCode, 3},
      {"0\nSECTION\n 2 3\nHEADER\n", DxfTagStatus::BadGroupCode, 3},
      {"0\nSECTION\n2", DxfTagStatus::MissingValue, 3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    std::vector<DxfTag> tags{DxfTag{}};
    int errorLine = -1;
    EXPECT_EQ(readDxfTags(c.text, tags, errorLine), c.status);
    EXPECT_TRUE(tags.empty());
    EXPECT_EQ(errorLine, c.line);
  }
}

TEST(DxfTags, WritesTheHostLayout) {
  std::string out;
  appendDxfTag(out, 0, "SECTION");
  appendDxfTag(out, 1001, "KVA_WD_XREF_STYLE");
  EXPECT_EQ(out, "  0\r\nSECTION\r\n1001\r\nKVA_WD_XREF_STYLE\r\n");
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
