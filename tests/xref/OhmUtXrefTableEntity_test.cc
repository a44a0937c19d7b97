#include "ohmutils/xref/OhmUtXrefTableEntity.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <tuple>

#include "ContactOcc.h"
#include "support/StoiFailure.h"
#include "support/u16.h"
#include "zd/db/ZdDbDrawingBuilder.h"

// Reaches the private list of column names. (The cell values are checked
// through the public row matching, here and against the plain rules on random
// rows.)
struct OhmUtXrefTableEntityTestAccess {
  using Entity = OhmUtXrefTableEntity;
  static std::vector<std::u16string> names(const Entity& e) {
    std::vector<std::u16string> names{u"old"};
    e.getAllTableColumnNames(names);
    return names;
  }
};

namespace {

using Access = OhmUtXrefTableEntityTestAccess;
using Map = OhmNoRxUtilsSettingOverride::SettingMap;
using Table = OhmUtXrefTableEntity;
using xref_test::Contact;
using xref_test::k13_14;
using xref_test::Pins;

// The reference of every contact is 3-12; option 71 absent when nullopt.
Map Settings(std::optional<std::u16string> columns, const std::u16string& graphic = u"0",
             const std::u16string& family = u"0") {
  Map map{{OhmCfgSetting::WD_XREF_ALTFORMAT, u"%S-%N"},
          {OhmCfgSetting::WD_XREF_GRAPHIC, graphic},
          {OhmCfgSetting::WD_XREF_GRAPHICSTYLE, family},
          {OhmCfgSetting::WD_XREF_CONTACTMAP, u"A,B,C"}};
  if (columns) map[OhmCfgSetting::WD_XREF_TBLINDEX] = *columns;
  return map;
}

// Where option 71 puts each column is checked through the rows matched here
// and on random rows and lists; without a list, or with only numbers that
// name no column, no column is visible, and a number that can't be read
// throws at first use and leaves none visible.
TEST(OhmUtXrefTableEntity, NoColumnVisibleWithoutAKnownNumberAndABadOneThrowsOnce) {
  // Option 71 (nullopt: absent) and what the first use throws.
  const std::pair<std::optional<std::u16string>, std::string> options[] = {
      {u"", "none"}, {u"-1", "none"}, {std::nullopt, "none"}, {u"1,x", "invalid"}};
  for (const auto& [option, thrown] : options) {
    SCOPED_TRACE(option ? U8(*option) : "absent");
    OhmNoRxUtilsSettingOverride settings(Settings(option));
    Table entity(settings, u"");
    EXPECT_EQ(StoiFailure([&] { entity.isCompOccMatchingRow(Contact(u"NO", k13_14), {u"13"}); }), thrown);
    EXPECT_EQ(entity.getVisibleColumnIndex(Table::ColumnTerm1), -1);
    EXPECT_TRUE(entity.isCompOccMatchingRow(Contact(u"NO", k13_14), {}));
  }
}

TEST(OhmUtXrefTableEntity, VisibleColumnsAreFixedAtFirstUseAndCopied) {
  OhmNoRxUtilsSettingOverride settings(Settings(u"5,1"));
  Table entity(settings, u"");
  ASSERT_EQ(entity.getVisibleColumnIndex(Table::ColumnTerm1), 1);
  EXPECT_EQ(Access::names(entity), std::vector<std::u16string>{}) << "without option 72";
  settings.setSettingMap(Settings(u"1"));
  EXPECT_EQ(entity.getVisibleColumnIndex(Table::ColumnTerm1), 1);
  Table copy(entity);
  EXPECT_EQ(copy.getVisibleColumnIndex(Table::ColumnReference), 0);
  EXPECT_EQ(copy.getStyle(), OhmUtXrefEntity::StyleTable);
}

TEST(OhmUtXrefTableEntity, BadTerminalNumberThrowsForEveryColumn) {
  OhmNoRxUtilsSettingOverride settings(Settings(u"6"));
  Table entity(settings, u"");
  const OhmDsComponentOcc occ = Contact(u"NO", {{u"1", u"11"}, {u"x", u"14"}});
  EXPECT_THROW(entity.isCompOccMatchingRow(occ, {u"3"}), std::invalid_argument) << "even for the sheet column";
}

// Matches and near misses of every kind of contact are checked against the
// plain rules on random rows; these are the cells those rows don't reach.
TEST(OhmUtXrefTableEntity, RowEdgeCasesMatchCellByCell) {
  const Pins spaced{{u"1", u" 11"}, {u"2", u"14"}};
  // Option 71, the contact's pins and pin list, the row, and whether it matches.
  const std::tuple<std::u16string, Pins, std::u16string, std::vector<std::u16string>, bool> cases[] = {
      {u"1,3", spaced, u"3, 11,14,12", {u"", u""}, true},
      {u"1,3", spaced, u"3,11,14,12", {u" 11", u"14"}, true},
      {u"6,7,8,9", k13_14, u"", {u"3", u"", u"b", u"Z:\\p\\b.dxf"}, true},
      {u"8", k13_14, u"", {u"B"}, false},
  };
  for (const auto& [option71, pins, pinList, row, matches] : cases) {
    SCOPED_TRACE("option71 " + U8(option71) + " list " + U8(pinList));
    OhmNoRxUtilsSettingOverride settings(Settings(option71));
    Table entity(settings, pinList);
    EXPECT_EQ(entity.isCompOccMatchingRow(Contact(u"NO", pins), row), matches);
  }
}

TEST(OhmUtXrefTableEntity, OptionsComeFromTheDrawingEntity) {
  ZdDbDatabase db;
  ZdDbDrawingBuilder build(db);
  ZdDbBlockReference* coil = build.insertBlock(u"HCR1");
  ZdDbDrawingBuilder::setOptionXData(*coil, u"KVA_WD_XREF_TBLINDEX", u"3,1");
  ZdDbDrawingBuilder::setOptionXData(*coil, u"KVA_WD_XREF_TBLFLDNAMS", u"T2,T1");
  ZdDbDrawingBuilder::setOptionXData(*coil, u"KVA_WD_XREF_GRAPHIC", u"0");
  ZdDbDrawingBuilder::setOptionXData(*coil, u"KVA_WD_XREF_GRAPHICSTYLE", u"1");
  Map map = Settings(u"5", u"2", u"0");
  map[OhmCfgSetting::WD_XREF_TBLFLDNAMS] = u"R";  // an option overrides only what the settings hold
  OhmNoRxUtilsSettingOverride settings(map);
  Table entity(settings, u"");
  entity.applyEntityOverrides(coil);
  EXPECT_EQ(Access::names(entity), (std::vector<std::u16string>{u"T2", u"T1"}));
  EXPECT_EQ(entity.getVisibleColumnIndex(Table::ColumnTerm2), 0);
  EXPECT_EQ(entity.getVisibleColumnIndex(Table::ColumnTerm1), 1);
  EXPECT_EQ(entity.getVisibleColumnIndex(Table::ColumnReference), -1);
  EXPECT_TRUE(entity.isCompOccMatchingRow(Contact(u"NO", k13_14), {u"14", u"13"}));
  std::u16string text;
  ASSERT_TRUE(entity.getUnformattedXrefText(Contact(u"NO", k13_14), text));
  EXPECT_EQ(text, u"13-O-143-12") << "the graphic options too";
}

}  // namespace
