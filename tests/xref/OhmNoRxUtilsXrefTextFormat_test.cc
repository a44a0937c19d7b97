#include "ohmutils/xref/OhmNoRxUtilsXrefTextFormat.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "PlainText.h"
#include "ohmutils/xref/ReplaceStringInString.h"
#include "support/u16.h"

namespace {

using Format = OhmNoRxUtilsXrefTextFormat;

Format::RefData WorkedData(std::u16string dwgPath) {
  Format::RefData data;
  data.mDwgPath = std::move(dwgPath);
  data.mSheet = u"3";
  data.mRef = u"105";
  data.mSheetDwgName = u"SHT03";
  data.mIecInst = u"K1";
  data.mIecLoc = u"M2";
  return data;
}

// The choice of format by drawing is checked on random paths, and the tokens
// on random formats, below and beside; here the output that is an input too.
TEST(OhmNoRxUtilsXrefTextFormat, OutputMayBeOneOfTheInputs) {
  Format::Option option{u"%S-%N", u"", false};
  Format::RefData data = WorkedData(u"");
  Format::getXrefText(option, u"", data, data.mSheet);
  EXPECT_EQ(data.mSheet, u"3-105");
  Format::getXrefText(option, u"", WorkedData(u""), option.mXrefFormat);
  EXPECT_EQ(option.mXrefFormat, u"3-105");
}

TEST(ReplaceStringInString, SaysWhetherAnythingWasReplaced) {
  CString text(u"a-b-c");
  EXPECT_TRUE(ReplaceStringInString(text, u"-", u"+"));
  EXPECT_EQ(text, u"a+b+c");
  EXPECT_FALSE(ReplaceStringInString(text, u"-", u"+"));
  EXPECT_FALSE(ReplaceStringInString(text, u"", u"+"));
  EXPECT_EQ(text, u"a+b+c");
}

// The token rules, written out plainly: the eight whole-text replacements in
// their fixed order. Every input must give exactly this.
std::u16string SequentialReference(std::u16string text, const Format::RefData& d) {
  const std::pair<std::u16string, const std::u16string*> steps[] = {
      {u"%S", &d.mSheet},   {u"%N", &d.mRef},    {u"%A", &d.mValueA},     {u"%B", &d.mValueB},
      {u"%I", &d.mIecInst}, {u"%L", &d.mIecLoc}, {u"%P", &d.mIecProject}, {u"%D", &d.mSheetDwgName}};
  for (const auto& [token, value] : steps) {
    std::u16string out;
    std::size_t pos = 0;
    for (std::size_t hit; (hit = text.find(token, pos)) != std::u16string::npos; pos = hit + 2)
      out += text.substr(pos, hit - pos) + *value;
    text = out + text.substr(pos);
  }
  return text;
}

// Short texts dense with tokens, then longer values and formats, so that
// runs of every length are copied, with and without underline.
TEST(OhmNoRxUtilsXrefTextFormat, AgreesWithTheOrderedReplacementsOnRandomInput) {
  std::mt19937 rng(20261123);
  const std::u16string tokens = u"%%%SNABILPDGFx.-";
  // Alphabet and greatest length of the values, then of the format and the output's old content.
  const std::tuple<std::u16string, std::size_t, std::u16string, std::size_t> sizes[] = {
      {tokens, 4, tokens, 10}, {u"abcdefghij%", 20, u"%SNABILPDx.-", 40}};
  for (const auto& [valueAlphabet, valueLength, formatAlphabet, formatLength] : sizes) {
    for (int round = 0; round < 20000; ++round) {
      Format::RefData data;
      for (std::u16string* field : {&data.mSheet, &data.mRef, &data.mValueA, &data.mValueB, &data.mIecInst,
                                    &data.mIecLoc, &data.mIecProject, &data.mSheetDwgName})
        *field = xref_test::RandomText(rng, valueAlphabet, valueLength);
      const std::u16string format = xref_test::RandomText(rng, formatAlphabet, formatLength);
      const bool underline = rng() % 2;
      std::u16string out = xref_test::RandomText(rng, formatAlphabet, formatLength);
      Format::getXrefText({format, u"", underline}, u"", data, out);
      const std::u16string expected = SequentialReference(format, data);
      ASSERT_EQ(out, underline ? u"%%u" + expected + u"%%u" : expected) << "format " << U8(format);
    }
  }
}

}  // namespace
