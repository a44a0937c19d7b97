// OhmUtXrefTableEntity: a cross-reference shown as table rows, one row per
// contact, with cells for terminals, symbol, reference, sheet and drawing.
// The table, its rows and titles stay the caller's; this class tells which
// columns are visible, where they stand, what an occurrence puts in each cell,
// and whether an existing row describes an occurrence.
//
// Columns: option 71 lists column indices (0..9, see getColumnId); the place
// of a number in that list is the column's position in the table. The visible
// column map is fixed at the first public call, like the contact map of the
// base; a bad number in option 71 throws out of that call and leaves the
// entity initialised with no column visible.
//
// Cells follow the contact classes of the base: plain and full Form C cells
// come from an untrimmed term map, partial Form C cells from the trimmed pins
// of its triple. Comparisons with row cells are exact, unit by unit.
//
// Members marked hidden are working steps of the library's own, as in the
// graphic entity.
//
// Thread safety: one object, with its option set, by one thread at a time.
// Operations on distinct objects with distinct option sets may run on several
// threads at once.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ohmutils/OhmUtilsExport.h"
#include "ohmutils/xref/OhmUtXrefGraphicEntity.h"

class OHMUTILS_EXPORT OhmUtXrefTableEntity : public OhmUtXrefGraphicEntity {
 public:
  // The columns a table can show; the numbers are part of the boundary.
  enum ColumnId {
    ColumnNone = 0,
    ColumnTerm1 = 1,         // terminal before the symbol
    ColumnTerm2 = 2,         // terminal behind the symbol
    ColumnReference = 3,     // reference text
    ColumnSymbol = 4,        // symbol text
    ColumnSheet = 5,         // the sheet's SHEET value
    ColumnSheetDwgName = 6,  // the sheet's SHEETDWGNAME value
    ColumnDwgName = 7,       // drawing file name without folder and extension
    ColumnDwgPath = 8,       // drawing path
    ColumnAux1 = 9,          // the caller's own; no value from this class
    ColumnAux2 = 10,         // the caller's own; no value from this class
  };
  using VisColumnIdMap = std::map<ColumnId, std::int32_t>;

  // `pinList` as for the graphic entity; no column is visible until init.
  OhmUtXrefTableEntity(OhmNoRxUtilsSettingOverride& settingOverride, const std::u16string& pinList);
  // Copies the base and the visible column map; shares the option set.
  OhmUtXrefTableEntity(const OhmUtXrefTableEntity& other);
  ~OhmUtXrefTableEntity() override;

  // The column's position in the table, or -1 if it isn't visible.
  std::int32_t getVisibleColumnIndex(ColumnId column);
  // Whether `cells` (one per visible column, in table order) describe the
  // occurrence; false for a wrong cell count or a value that can't be worked out.
  bool isCompOccMatchingRow(const OhmDsComponentOcc& occurrence, const std::vector<std::u16string>& cells);

 protected:
  // The graphic entity's init, then the visible column map from option 71.
  void init() override;
  // The graphic entity's options, then 71 and 72 from their xdata.
  void getXrefOptionEntOverride(const ZdDbEntity* entity,
                                OhmNoRxUtilsSettingOverride::SettingMap& overrides) const override;

 private:
  // Option 72 cut at ","; empty when the option is.
  void getAllTableColumnNames(std::vector<std::u16string>& names) const;
  // The column of a column index 0..9; ColumnNone for any other number.
  ColumnId getColumnId(std::int32_t columnIndex) const;
  // Option 71 as numbers; throws on a piece that is no number.
  void getTableColumnIndexFilters(std::vector<std::int32_t>& columnIndices) const;
  void getVisColumnIdMap(VisColumnIdMap& visColumnIdMap) const;
  void updateVisColumnIdMap();

  // The cell of a plain contact, and of every column that doesn't depend on
  // the contact class; false (output empty, or " " for a contact-map symbol)
  // for a value that can't be worked out.
  bool getTableCellValue(const OhmDsComponentOcc& occurrence, ColumnId column, std::u16string& value);
  // The NO side and NC side values of a full Form C contact's terminal and
  // symbol columns; false for other contacts and other columns.
  bool getFullFormCTableCellValue(const OhmDsComponentOcc& occurrence, ColumnId column, std::u16string& noValue,
                                  std::u16string& ncValue);
  // The terminal and symbol cells of a partial Form C contact; false otherwise.
  bool getPartialFormCTableCellValue(const OhmDsComponentOcc& occurrence, ColumnId column, std::u16string& value);
  // `value` becomes the cell, or empty without one; whether there is one.
  [[gnu::visibility("hidden")]] static bool assignCell(const std::optional<std::u16string_view>& cell,
                                                       std::u16string& value);
  // The three above from a classified contact and the style read once, as
  // views of the occurrence, of constants or of the entity's working space
  // (valid until the next call); nothing where the value can't be worked out.
  [[gnu::visibility("hidden")]] std::optional<std::u16string_view> cellView(const OhmDsComponentOcc& occurrence,
                                                                            const Contact& contact,
                                                                            GraphicalStyle style, ColumnId column);
  [[gnu::visibility("hidden")]] std::optional<std::pair<std::u16string_view, std::u16string_view>> fullFormCCellViews(
      const Contact& contact, GraphicalStyle style, ColumnId column) const;
  [[gnu::visibility("hidden")]] std::optional<std::u16string_view> partialFormCCellView(const Contact& contact,
                                                                                        GraphicalStyle style,
                                                                                        ColumnId column) const;
  // Whether the column takes part in row matching.
  bool isColumnApplicableToRowCheck(ColumnId column) const;
  [[gnu::visibility("hidden")]] static bool isColumnApplicableToRowCheck(ColumnId column, GraphicalStyle style);
  // Whether one applicable cell holds the occurrence's value for its column.
  [[gnu::visibility("hidden")]] bool isCellMatching(const OhmDsComponentOcc& occurrence, const Contact& contact,
                                                    GraphicalStyle style, ColumnId column, const std::u16string& cell);

  VisColumnIdMap mVisColumnIdMap;
  // What a row check runs through, worked out with the map: the entries that
  // take part in some style, with their positions, in the map's order up to
  // the first position that lies beyond a row, and whether there is one;
  // no row matches once the check gets there.
  struct RowCheck {
    std::vector<std::pair<ColumnId, std::size_t>> cells;
    bool endsBeyondRow = false;
  };
  RowCheck mRowCheck;
  std::u16string mCellText;  // working space of cellView

  friend class OhmUtXrefTableRows;
  friend struct OhmUtXrefTableEntityTestAccess;
};
