// The library's thread rule: operations on distinct objects may run on
// several threads at once. Each case works out its answers on this thread
// first, then has six threads repeat the work on objects of their own and
// compares. Run under ThreadSanitizer, these also show the shared tables
// are read, never written, once threads are running.
#include <gtest/gtest.h>

#include <functional>
#include <thread>
#include <vector>

#include "../config/RegistryStoreFixture.h"
#include "../xref/ContactOcc.h"
#include "ohmutils/config/OhmRegSetting.h"
#include "ohmutils/dwg/OhmDwgUtils.h"
#include "ohmutils/xref/OhmNoRxUtilsXrefTextFormat.h"
#include "ohmutils/xref/OhmUtXrefGraphicEntity.h"
#include "ohmutils/xref/OhmUtXrefTableEntity.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

constexpr int kThreads = 6;
constexpr int kRounds = 50;

// Runs `work` on kThreads threads at once; each result must equal `expected`.
template <class Result>
void ExpectSameOnEveryThread(const std::function<Result()>& work, const Result& expected) {
  std::vector<Result> results(kThreads);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([&, t] {
      for (int round = 0; round < kRounds; ++round) results[static_cast<std::size_t>(t)] = work();
    });
  for (std::thread& thread : threads) thread.join();
  for (const Result& result : results) EXPECT_EQ(result, expected);
}

using Texts = std::vector<std::u16string>;
using Map = OhmNoRxUtilsSettingOverride::SettingMap;

Map XrefSettings() {
  return {{OhmCfgSetting::WD_XREF_FORMAT, u"%S.%N"},     {OhmCfgSetting::WD_XREF_ALTFORMAT, u"%D:%S.%N"},
          {OhmCfgSetting::WD_XREF_GRAPHIC, u"0"},        {OhmCfgSetting::WD_XREF_GRAPHICSTYLE, u"0"},
          {OhmCfgSetting::WD_XREF_CONTACTMAP, u"A,B,C"}, {OhmCfgSetting::WD_XREF_TBLINDEX, u"0,1,2,3,4,5,6,7,8,9"}};
}

TEST(ConcurrentOperations, TextFormat) {
  auto work = [] {
    OhmNoRxUtilsXrefTextFormat::RefData data;
    data.mDwgPath = u"c:\\p\\a.dwg";
    data.mSheet = u"3";
    data.mRef = u"105";
    Texts texts(2);
    OhmNoRxUtilsXrefTextFormat::getXrefText({u"%S.%N", u"x%N", false}, u"C:\\P\\A.DWG", data, texts[0]);
    OhmNoRxUtilsXrefTextFormat::getXrefText({u"%%S", u"", true}, u"", {}, texts[1]);
    return texts;
  };
  ExpectSameOnEveryThread<Texts>(work, work());
}

// Every text of a coil's contacts, and which rows of a table of them match.
Texts CoilTexts() {
  using namespace xref_test;
  OhmNoRxUtilsSettingOverride settings(XrefSettings());
  OhmUtXrefGraphicEntity graphic(settings, u"3,11,14,12");
  OhmUtXrefTableEntity table(settings, u"3,11,14,12");
  graphic.setHostDwgPath(u"z:\\P\\B.DXF");
  table.setHostDwgPath(u"z:\\P\\B.DXF");
  const OhmDsComponentOcc contacts[] = {Contact(u"NO", k13_14), Contact(u"NONC", kFormC),
                                        Contact(u"NO", {{u"1", u"11"}, {u"2", u"14"}})};
  Texts texts;
  for (const OhmDsComponentOcc& contact : contacts) {
    std::u16string text, nc;
    graphic.getUnformattedXrefText(contact, text);
    texts.push_back(text);
    graphic.getUnformattedXrefTextForFullFormCContact(contact, text, nc);
    texts.push_back(text + u"|" + nc);
    graphic.getUnformattedXrefTextForPartialFormCContact(contact, text);
    texts.push_back(text);
    for (const Texts& row : {Texts{u"", u"13", u"-o-", u"14"}, Texts(10, u"x")})
      texts.push_back(table.isCompOccMatchingRow(contact, row) ? u"match" : u"no match");
  }
  return texts;
}

TEST(ConcurrentOperations, GraphicTextsAndTableRows) { ExpectSameOnEveryThread<Texts>(CoilTexts, CoilTexts()); }

// The kinds of block references in a drawing of the thread's own.
std::vector<int> Kinds() {
  ZdDbDatabase db;
  ZdDbDrawingBuilder build(db);
  std::vector<ZdDbBlockReference*> references{
      build.insertBlock(u"X", {{u"TAG1", u"CR1"}}), build.insertBlock(u"HA1S2", {{u"WIRENO1", u"a"}}),
      build.insertBlock(u"WD_MLR2"), build.insertBlock(u"PLCIO1"), build.insertBlock(u"X")};
  ZdDbDrawingBuilder::setOptionXData(*references.back(), u"KVA_WD_FPT", u"1");
  std::vector<int> kinds;
  for (const ZdDbBlockReference* reference : references) {
    kinds.push_back(OhmDwgUtils::getOhmObjectType(reference));
    const char16_t* value = OhmDwgUtils::getAttributeValue(reference, u"TAG*,WIRENO?");
    kinds.push_back(value ? static_cast<int>(std::u16string(value).size()) : -1);
  }
  return kinds;
}

TEST(ConcurrentOperations, Classification) { ExpectSameOnEveryThread<std::vector<int>>(Kinds, Kinds()); }

class ConcurrentRegistryReads : public RegistryStoreFixture {};

TEST_F(ConcurrentRegistryReads, ReadTheSameSettings) {
  ASSERT_TRUE(OhmSetRegSetting(u"Paths", u"Last", u"C:\\work"));
  ASSERT_TRUE(OhmSetRegSetting(u"", u"Top", u"top"));
  auto work = [] {
    Texts texts;
    for (const auto& [section, name] : {std::pair{u"Paths", u"Last"}, std::pair{u"", u"Top"}, std::pair{u"x", u"y"}}) {
      CString value;
      texts.push_back(OhmGetRegSetting(section, name, value) ? value.str() : u"<false>");
    }
    return texts;
  };
  ExpectSameOnEveryThread<Texts>(work, work());
}

}  // namespace
