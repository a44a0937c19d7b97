// Row matching against the plain walk over the visible column map, on random
// option 71 lists with unknown and repeated numbers, so that positions that
// lie beyond a row, columns that take no part and the symbol in every style
// all occur.
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "ContactOcc.h"
#include "ohmutils/xref/OhmUtXrefTableRows.h"
#include "support/u16.h"

namespace {

using Table = OhmUtXrefTableEntity;

// Column index -> column, as option 71 numbers them.
constexpr Table::ColumnId kColumnOfIndex[] = {
    Table::ColumnAux1,      Table::ColumnTerm1, Table::ColumnSymbol,       Table::ColumnTerm2,   Table::ColumnAux2,
    Table::ColumnReference, Table::ColumnSheet, Table::ColumnSheetDwgName, Table::ColumnDwgName, Table::ColumnDwgPath};

// The map of option 71: every number takes a position, a known column stands
// at the last position that names it.
std::map<Table::ColumnId, std::size_t> VisibleColumns(const std::vector<int>& numbers) {
  std::map<Table::ColumnId, std::size_t> columns;
  for (std::size_t position = 0; position < numbers.size(); ++position)
    if (numbers[position] < 10) columns[kColumnOfIndex[numbers[position]]] = position;
  return columns;
}

TEST(XrefRowCheck, MatchesAsThePlainWalk) {
  std::mt19937 rng(6151);
  const std::u16string graphics[] = {u"0", u"2"};
  for (int round = 0; round < 4000; ++round) {
    std::vector<int> numbers(rng() % 6);
    std::u16string option;
    for (int& number : numbers) {
      number = static_cast<int>(rng() % 12);
      option += (option.empty() ? u"" : u",") + U16(std::to_string(number));
    }
    const std::u16string graphic = graphics[rng() % 2];
    OhmNoRxUtilsSettingOverride settings({{OhmCfgSetting::WD_XREF_ALTFORMAT, u"%S-%N"},
                                          {OhmCfgSetting::WD_XREF_GRAPHIC, graphic},
                                          {OhmCfgSetting::WD_XREF_TBLINDEX, option}});
    Table entity(settings, u"");
    const OhmDsComponentOcc occ =
        rng() % 2 ? xref_test::Contact(u"NO", xref_test::k13_14) : xref_test::Contact(u"NONC", xref_test::kFormC);
    // Every cell the occurrence gives, by position; a full Form C contact gives two rows.
    const auto values = OhmUtXrefTableRows::getRows(entity, occ);
    const auto columns = VisibleColumns(numbers);
    std::vector<std::u16string> row(columns.size() + (rng() % 8 == 0));
    for (std::size_t i = 0; i < row.size(); ++i) {
      const auto& source = values.empty() ? std::vector<std::u16string>() : values[rng() % values.size()];
      row[i] = i < source.size() && rng() % 6 ? source[i] : u"?";
    }
    bool expected = row.size() == columns.size();
    for (auto it = columns.begin(); expected && it != columns.end(); ++it) {
      const auto [column, position] = *it;
      if (position >= row.size()) {
        expected = false;
      } else if (column != Table::ColumnAux1 && column != Table::ColumnAux2 &&
                 !(column == Table::ColumnSymbol && graphic == u"2")) {
        bool any = false;
        for (const auto& value : values) any = any || value[position] == row[position];
        expected = any;
      }
    }
    ASSERT_EQ(entity.isCompOccMatchingRow(occ, row), expected)
        << "option 71 " << U8(option) << ", style " << U8(graphic) << ", " << row.size() << " cells";
  }
}

}  // namespace
