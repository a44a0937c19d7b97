#include "ohmutils/xref/OhmUtXrefTableEntity.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

#include "ContactOcc.h"
#include "support/u16.h"
#include "zd/db/ZdDbDrawingBuilder.h"

// Reaches the private cell operations, whose results and outputs the public
// row matching folds into one answer.
struct OhmUtXrefTableEntityTestAccess {
  using Entity = OhmUtXrefTableEntity;
  static Entity::ColumnId columnId(const Entity& e, std::int32_t index) { return e.getColumnId(index); }
  static std::vector<std::u16string> names(const Entity& e) {
    std::vector<std::u16string> names{u"old"};
    e.getAllTableColumnNames(names);
    return names;
  }
  static bool cell(Entity& e, const OhmDsComponentOcc& occ, Entity::ColumnId column, std::u16string& value) {
    return e.getTableCellValue(occ, column, value);
  }
  static bool full(Entity& e, const OhmDsComponentOcc& occ, Entity::ColumnId column, std::u16string& no,
                   std::u16string& nc) {
    return e.getFullFormCTableCellValue(occ, column, no, nc);
  }
  static bool partial(Entity& e, const OhmDsComponentOcc& occ, Entity::ColumnId column, std::u16string& value) {
    return e.getPartialFormCTableCellValue(occ, column, value);
  }
};

namespace {

using Access = OhmUtXrefTableEntityTestAccess;
using Map = OhmNoRxUtilsSettingOverride::SettingMap;
using Table = OhmUtXrefTableEntity;
using xref_test::Contact;
using xref_test::k13_14;
using xref_test::kFormC;
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

constexpr Table::ColumnId kAllColumns[] = {Table::ColumnNone,         Table::ColumnTerm1,   Table::ColumnTerm2,
                                           Table::ColumnReference,    Table::ColumnSymbol,  Table::ColumnSheet,
                                           Table::ColumnSheetDwgName, Table::ColumnDwgName, Table::ColumnDwgPath,
                                           Table::ColumnAux1,         Table::ColumnAux2};

TEST(OhmUtXrefTableEntity, VisibleColumnsFollowOption71) {
  struct Case {
    std::optional<std::u16string> option;
    std::map<Table::ColumnId, std::int32_t> visible;
  } cases[] = {
      {u"1,2,3,5",
       {{Table::ColumnTerm1, 0}, {Table::ColumnSymbol, 1}, {Table::ColumnTerm2, 2}, {Table::ColumnReference, 3}}},
      {u"1,12,3", {{Table::ColumnTerm1, 0}, {Table::ColumnTerm2, 2}}},
      {u"1,1", {{Table::ColumnTerm1, 1}}},
      {u"0,4", {{Table::ColumnAux1, 0}, {Table::ColumnAux2, 1}}},
      {u"-1,10,9,8,7,6",
       {{Table::ColumnDwgPath, 2}, {Table::ColumnDwgName, 3}, {Table::ColumnSheetDwgName, 4}, {Table::ColumnSheet, 5}}},
      {u" 5", {{Table::ColumnReference, 0}}},
      {u"", {}},
      {std::nullopt, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.option ? U8(*c.option) : "absent");
    OhmNoRxUtilsSettingOverride settings(Settings(c.option));
    Table entity(settings, u"");
    for (const Table::ColumnId column : kAllColumns) {
      const auto found = c.visible.find(column);
      EXPECT_EQ(entity.getVisibleColumnIndex(column), found == c.visible.end() ? -1 : found->second) << column;
    }
  }
}

TEST(OhmUtXrefTableEntity, ExtremeIndicesAndColumnNames) {
  OhmNoRxUtilsSettingOverride settings;
  Table entity(settings, u"");
  for (const std::int32_t other : {INT32_MIN, INT32_MAX}) EXPECT_EQ(Access::columnId(entity, other), Table::ColumnNone);
  EXPECT_EQ(Access::names(entity), std::vector<std::u16string>{});
  settings.setSettingMap({{OhmCfgSetting::WD_XREF_TBLFLDNAMS, u"A,,B"}});
  EXPECT_EQ(Access::names(entity), (std::vector<std::u16string>{u"A", u"", u"B"}));
}

TEST(OhmUtXrefTableEntity, BadOption71ThrowsOnceAndLeavesNoColumnVisible) {
  struct Case {
    std::u16string option;
    bool outOfRange;
  } cases[] = {{u"1,x", false}, {u"1,99999999999", true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(U8(c.option));
    OhmNoRxUtilsSettingOverride settings(Settings(c.option));
    Table entity(settings, u"");
    try {
      entity.isCompOccMatchingRow(Contact(u"NO", k13_14), {u"13"});
      ADD_FAILURE() << "no exception";
    } catch (const std::out_of_range& e) {
      EXPECT_TRUE(c.outOfRange);
      EXPECT_STREQ(e.what(), "stoi argument out of range");
    } catch (const std::invalid_argument& e) {
      EXPECT_FALSE(c.outOfRange);
      EXPECT_STREQ(e.what(), "invalid stoi argument");
    }
    EXPECT_EQ(entity.getVisibleColumnIndex(Table::ColumnTerm1), -1);
    EXPECT_TRUE(entity.isCompOccMatchingRow(Contact(u"NO", k13_14), {}));
  }
}

TEST(OhmUtXrefTableEntity, VisibleColumnsAreFixedAtFirstUseAndCopied) {
  OhmNoRxUtilsSettingOverride settings(Settings(u"5,1"));
  Table entity(settings, u"");
  ASSERT_EQ(entity.getVisibleColumnIndex(Table::ColumnTerm1), 1);
  settings.setSettingMap(Settings(u"1"));
  EXPECT_EQ(entity.getVisibleColumnIndex(Table::ColumnTerm1), 1);
  Table copy(entity);
  EXPECT_EQ(copy.getVisibleColumnIndex(Table::ColumnReference), 0);
  EXPECT_EQ(copy.getStyle(), OhmUtXrefEntity::StyleTable);
}

enum class Op { Plain, Full, Partial };

struct CellCase {
  std::u16string contact;
  Pins pins;
  std::u16string pinList, graphic;
  Table::ColumnId column;
  Op op;
  bool result;
  std::u16string value, ncValue;
};

void PrintTo(const CellCase& c, std::ostream* os) {
  *os << U8(c.contact) << " column " << c.column << " graphic " << U8(c.graphic);
}

class TableCell : public ::testing::TestWithParam<CellCase> {};

TEST_P(TableCell, ValueOfEachColumn) {
  const CellCase& c = GetParam();
  OhmNoRxUtilsSettingOverride settings(Settings(u"1,2,3,6", c.graphic));
  Table entity(settings, c.pinList);
  entity.getVisibleColumnIndex(Table::ColumnNone);  // initialises, as every public call does
  OhmDsComponentOcc occ = Contact(c.contact, c.pins);
  occ.mSheetProperties[OhmDsKeys::SHEETDWGNAME] = u"SHT03";
  std::u16string value = u"old", ncValue = u"old";
  bool result = false;
  switch (c.op) {
    case Op::Plain:
      result = Access::cell(entity, occ, c.column, value);
      ncValue.clear();
      break;
    case Op::Full:
      result = Access::full(entity, occ, c.column, value, ncValue);
      break;
    case Op::Partial:
      result = Access::partial(entity, occ, c.column, value);
      ncValue.clear();
      break;
  }
  EXPECT_EQ(result, c.result);
  EXPECT_EQ(value, c.value);
  EXPECT_EQ(ncValue, c.ncValue);
}

const Pins kPadded{{u"1", u" 13 "}, {u"2", u"14"}};
const Pins kPartialNo{{u"1", u"11"}, {u"2", u"14"}};
const Pins kPartialNc{{u"1", u"11"}, {u"2", u"12"}};
const std::u16string kTriple = u"3,11,14,12";

INSTANTIATE_TEST_SUITE_P(
    ColumnsOfPlainContacts, TableCell,
    ::testing::Values(
        CellCase{u"NO", kPadded, u"", u"0", Table::ColumnTerm1, Op::Plain, true, u" 13 ", u""},
        CellCase{u"NO", k13_14, u"", u"0", Table::ColumnTerm2, Op::Plain, true, u"14", u""},
        CellCase{u"NO", {{u"2", u"14"}}, u"", u"0", Table::ColumnTerm1, Op::Plain, false, u"", u""},
        CellCase{u"NO", {{u"1", u""}, {u"2", u"14"}}, u"", u"0", Table::ColumnTerm1, Op::Plain, true, u"", u""},
        CellCase{u"NO", k13_14, u"", u"0", Table::ColumnReference, Op::Plain, true, u"3-12", u""},
        CellCase{u"NO", k13_14, u"", u"0", Table::ColumnSymbol, Op::Plain, true, u"-o-", u""},
        CellCase{u"", k13_14, u"", u"0", Table::ColumnSymbol, Op::Plain, true, u"-.-", u""},
        CellCase{u"", k13_14, u"", u"1", Table::ColumnSymbol, Op::Plain, true, u" ", u""},
        CellCase{u"", k13_14, u"", u"2", Table::ColumnSymbol, Op::Plain, true, u"", u""},
        CellCase{u"NONC", k13_14, u"", u"0", Table::ColumnSymbol, Op::Plain, false, u"", u""},
        CellCase{u"NONC", k13_14, u"", u"1", Table::ColumnSymbol, Op::Plain, true, u"C", u""},
        // A symbol the contact map can't give still shows as one space, with false.
        CellCase{u"MAKE", k13_14, u"", u"1", Table::ColumnSymbol, Op::Plain, false, u" ", u""},
        CellCase{u"NO", k13_14, u"", u"0", Table::ColumnSheet, Op::Plain, true, u"3", u""},
        CellCase{u"NO", k13_14, u"", u"0", Table::ColumnSheetDwgName, Op::Plain, true, u"SHT03", u""},
        CellCase{u"NO", k13_14, u"", u"0", Table::ColumnDwgName, Op::Plain, true, u"b", u""},
        CellCase{u"NO", k13_14, u"", u"0", Table::ColumnDwgPath, Op::Plain, true, u"Z:\\p\\b.dxf", u""},
        CellCase{u"NO", k13_14, u"", u"0", Table::ColumnAux1, Op::Plain, false, u"", u""},
        CellCase{u"NO", k13_14, u"", u"0", static_cast<Table::ColumnId>(11), Op::Plain, false, u"", u""}));

INSTANTIATE_TEST_SUITE_P(
    ColumnsOfFormCContacts, TableCell,
    ::testing::Values(CellCase{u"NONC", kFormC, u"", u"0", Table::ColumnTerm1, Op::Full, true, u"14", u"12"},
                      CellCase{u"NONC", kFormC, u"", u"0", Table::ColumnSymbol, Op::Full, true, u"-n-", u"-w-"},
                      CellCase{u"NONC", kFormC, u"", u"0", Table::ColumnTerm2, Op::Full, true, u"11", u"11"},
                      CellCase{u"NONC", kFormC, u"", u"2", Table::ColumnSymbol, Op::Full, true, u"", u""},
                      CellCase{u"NONC", kFormC, u"", u"0", Table::ColumnReference, Op::Full, false, u"", u""},
                      CellCase{u"NO", k13_14, u"", u"0", Table::ColumnTerm1, Op::Full, false, u"", u""},
                      CellCase{u"NO", kPartialNo, kTriple, u"0", Table::ColumnTerm1, Op::Partial, true, u"14", u""},
                      CellCase{u"NO", kPartialNo, kTriple, u"0", Table::ColumnTerm2, Op::Partial, true, u"11", u""},
                      CellCase{u"NO", kPartialNo, kTriple, u"0", Table::ColumnSymbol, Op::Partial, true, u"-n-", u""},
                      CellCase{u"NC", kPartialNc, kTriple, u"0", Table::ColumnTerm1, Op::Partial, true, u"12", u""},
                      CellCase{u"NC", kPartialNc, kTriple, u"2", Table::ColumnSymbol, Op::Partial, true, u"", u""},
                      CellCase{u"NC", kPartialNc, kTriple, u"0", Table::ColumnSheet, Op::Partial, false, u"", u""},
                      // Pins with blanks classify only against a pin list with the same
                      // blanks; the trimmed pins then match no triple.
                      CellCase{u"NO",
                               {{u"1", u" 11"}, {u"2", u"14"}},
                               u"3, 11,14,12",
                               u"0",
                               Table::ColumnTerm1,
                               Op::Partial,
                               true,
                               u"",
                               u""},
                      CellCase{u"NO", k13_14, kTriple, u"0", Table::ColumnTerm1, Op::Partial, false, u"", u""}));

TEST(OhmUtXrefTableEntity, BadTerminalNumberThrowsForEveryColumn) {
  OhmNoRxUtilsSettingOverride settings(Settings(u"6"));
  Table entity(settings, u"");
  const OhmDsComponentOcc occ = Contact(u"NO", {{u"1", u"11"}, {u"x", u"14"}});
  std::u16string value;
  EXPECT_THROW(Access::cell(entity, occ, Table::ColumnSheet, value), std::invalid_argument);
  EXPECT_THROW(entity.isCompOccMatchingRow(occ, {u"3"}), std::invalid_argument);
}

struct RowCase {
  std::u16string option71, graphic;
  std::u16string contact;
  Pins pins;
  std::u16string pinList;
  std::vector<std::u16string> row;
  bool matches;
};

void PrintTo(const RowCase& c, std::ostream* os) {
  *os << "option71 " << U8(c.option71) << " graphic " << U8(c.graphic) << " " << U8(c.contact);
}

class TableRow : public ::testing::TestWithParam<RowCase> {};

TEST_P(TableRow, MatchesCellByCell) {
  const RowCase& c = GetParam();
  OhmNoRxUtilsSettingOverride settings(Settings(c.option71, c.graphic));
  Table entity(settings, c.pinList);
  EXPECT_EQ(entity.isCompOccMatchingRow(Contact(c.contact, c.pins), c.row), c.matches);
}

INSTANTIATE_TEST_SUITE_P(
    WorkedExamples, TableRow,
    ::testing::Values(RowCase{u"1,2,3,5", u"0", u"NO", k13_14, u"", {u"13", u"-o-", u"14", u"3-12"}, true},
                      RowCase{u"1,2,3,5", u"0", u"NO", k13_14, u"", {u"13", u"-o-", u"14"}, false},
                      RowCase{u"1,2,3,5", u"0", u"NO", k13_14, u"", {u"14", u"-o-", u"13", u"3-12"}, false},
                      RowCase{u"1,2,3,5", u"0", u"NO", k13_14, u"", {u"13", u"-o-", u"14", u"3-12 "}, false},
                      RowCase{u"1,2,3,5", u"0", u"NONC", kFormC, u"", {u"14", u"-n-", u"11", u"3-12"}, true},
                      RowCase{u"1,2,3,5", u"0", u"NONC", kFormC, u"", {u"12", u"-w-", u"11", u"3-12"}, true},
                      RowCase{u"1,2,3,5", u"0", u"NONC", kFormC, u"", {u"14", u"-w-", u"11", u"3-12"}, true},
                      RowCase{u"1,2,3,5", u"0", u"NONC", kFormC, u"", {u"11", u"-n-", u"14", u"3-12"}, false},
                      RowCase{u"1,2,3,5", u"2", u"NO", k13_14, u"", {u"13", u"anything", u"14", u"3-12"}, true},
                      RowCase{u"1,2,3,5", u"2", u"NO", k13_14, u"", {u"13", u"14", u"3-12"}, false}));

INSTANTIATE_TEST_SUITE_P(
    EdgeCases, TableRow,
    ::testing::Values(
        RowCase{u"", u"0", u"NO", {}, u"", {}, true}, RowCase{u"", u"0", u"NO", k13_14, u"", {u""}, false},
        RowCase{u"0,4", u"0", u"NO", k13_14, u"", {u"x", u"y"}, true},
        RowCase{u"1", u"0", u"NO", {{u"1", u""}, {u"2", u"14"}}, u"", {u""}, true},
        RowCase{u"1", u"0", u"NO", {{u"2", u"14"}}, u"", {u""}, false},
        RowCase{u"2", u"1", u"", k13_14, u"", {u" "}, true}, RowCase{u"2", u"1", u"", k13_14, u"", {u""}, false},
        RowCase{u"2", u"1", u"NO", {{u"1", u"11"}, {u"2", u"14"}}, u"3,11,14,12;3,99,A,B", {u"A"}, true},
        RowCase{u"2", u"1", u"NC", {{u"1", u"11"}, {u"2", u"12"}}, u"3,11,14,12", {u"B"}, true},
        RowCase{u"3", u"0", u"NC", {{u"1", u"11"}, {u"2", u"12"}}, u"3,11,14,12", {u"11"}, true},
        RowCase{u"1,3", u"0", u"NO", {{u"1", u" 11"}, {u"2", u"14"}}, u"3, 11,14,12", {u"", u""}, true},
        RowCase{u"1,3", u"0", u"NO", {{u"1", u" 11"}, {u"2", u"14"}}, u"3,11,14,12", {u" 11", u"14"}, true},
        RowCase{u"2", u"0", u"", k13_14, u"", {u"-.-"}, true}, RowCase{u"2", u"0", u"MAKE", k13_14, u"", {u""}, false},
        RowCase{u"12,1", u"0", u"NO", k13_14, u"", {u"13"}, false},
        RowCase{u"12,1", u"0", u"NO", k13_14, u"", {u"x", u"13"}, false},
        RowCase{u"6,7,8,9", u"0", u"NO", k13_14, u"", {u"3", u"", u"b", u"Z:\\p\\b.dxf"}, true},
        RowCase{u"8", u"0", u"NO", k13_14, u"", {u"B"}, false}));

TEST(OhmUtXrefTableEntity, OptionsComeFromTheDrawingEntity) {
  ZdDbDatabase db;
  ZdDbDrawingBuilder build(db);
  ZdDbBlockReference* coil = build.insertBlock(u"HCR1");
  ZdDbDrawingBuilder::setOptionXData(*coil, u"KVA_WD_XREF_TBLINDEX", u"3,1");
  ZdDbDrawingBuilder::setOptionXData(*coil, u"KVA_WD_XREF_TBLFLDNAMS", u"T2,T1");
  ZdDbDrawingBuilder::setOptionXData(*coil, u"KVA_WD_XREF_GRAPHIC", u"2");
  Map map = Settings(u"5");
  map[OhmCfgSetting::WD_XREF_TBLFLDNAMS] = u"R";  // an option overrides only what the settings hold
  OhmNoRxUtilsSettingOverride settings(map);
  Table entity(settings, u"");
  entity.applyEntityOverrides(coil);
  EXPECT_EQ(Access::names(entity), (std::vector<std::u16string>{u"T2", u"T1"}));
  EXPECT_EQ(entity.getVisibleColumnIndex(Table::ColumnTerm2), 0);
  EXPECT_EQ(entity.getVisibleColumnIndex(Table::ColumnTerm1), 1);
  EXPECT_EQ(entity.getVisibleColumnIndex(Table::ColumnReference), -1);
  EXPECT_TRUE(entity.isCompOccMatchingRow(Contact(u"NO", k13_14), {u"14", u"13"}));
}

}  // namespace
