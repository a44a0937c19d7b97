#include "ohmutils/xref/OhmUtXrefTableEntity.h"

#include <array>
#include <optional>

#include "ohmutils/util/OhmUtilsPaths.h"
#include "ohmutils/util/OhmUtilsStringSplit.h"
#include "ohmutils/xref/OhmDsOccurrence_internal.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "ohmutils/xref/OhmUtXrefTableEntity_internal.h"

namespace {

// Column index (the numbers of option 71) -> column.
constexpr std::array<OhmUtXrefTableEntity::ColumnId, 10> kColumnOfIndex = {
    OhmUtXrefTableEntity::ColumnAux1,    OhmUtXrefTableEntity::ColumnTerm1,
    OhmUtXrefTableEntity::ColumnSymbol,  OhmUtXrefTableEntity::ColumnTerm2,
    OhmUtXrefTableEntity::ColumnAux2,    OhmUtXrefTableEntity::ColumnReference,
    OhmUtXrefTableEntity::ColumnSheet,   OhmUtXrefTableEntity::ColumnSheetDwgName,
    OhmUtXrefTableEntity::ColumnDwgName, OhmUtXrefTableEntity::ColumnDwgPath,
};

}  // namespace

OhmUtXrefTableEntity::OhmUtXrefTableEntity(OhmNoRxUtilsSettingOverride& settingOverride, const std::u16string& pinList)
    : OhmUtXrefGraphicEntity(settingOverride, pinList) {
  mStyle = StyleTable;
}

OhmUtXrefTableEntity::OhmUtXrefTableEntity(const OhmUtXrefTableEntity& other) = default;

OhmUtXrefTableEntity::~OhmUtXrefTableEntity() = default;

// --- initialisation and visible columns ---------------------------------------

void OhmUtXrefTableEntity::init() {
  if (isInitialized()) return;
  OhmUtXrefGraphicEntity::init();
  updateVisColumnIdMap();
}

void OhmUtXrefTableEntity::getXrefOptionEntOverride(const ZdDbEntity* entity,
                                                    OhmNoRxUtilsSettingOverride::SettingMap& overrides) const {
  OhmUtXrefGraphicEntity::getXrefOptionEntOverride(entity, overrides);
  if (!entity) return;
  readXDataOptions(*entity,
                   {{u"KVA_WD_XREF_TBLINDEX", OhmCfgSetting::WD_XREF_TBLINDEX},
                    {u"KVA_WD_XREF_TBLFLDNAMS", OhmCfgSetting::WD_XREF_TBLFLDNAMS}},
                   overrides);
}

void OhmUtXrefTableEntity::getAllTableColumnNames(std::vector<std::u16string>& names) const {
  names.clear();
  std::u16string value;
  mSettingOverride.getSettingValue(OhmCfgSetting::WD_XREF_TBLFLDNAMS, value);
  if (!value.empty()) OhmUtilsSplitString(value, u',', names);
}

OhmUtXrefTableEntity::ColumnId OhmUtXrefTableEntity::getColumnId(std::int32_t columnIndex) const {
  if (columnIndex < 0 || columnIndex >= static_cast<std::int32_t>(kColumnOfIndex.size())) return ColumnNone;
  return kColumnOfIndex[static_cast<std::size_t>(columnIndex)];
}

void OhmUtXrefTableEntity::getTableColumnIndexFilters(std::vector<std::int32_t>& columnIndices) const {
  columnIndices.clear();
  std::u16string value;
  mSettingOverride.getSettingValue(OhmCfgSetting::WD_XREF_TBLINDEX, value);
  if (value.empty()) return;
  std::vector<std::u16string> pieces;
  OhmUtilsSplitString(value, u',', pieces);
  OhmUtilsCvtStringToIntArray(pieces, columnIndices);
}

// Every number takes up a position, known or not; a column named twice stands
// at its later position.
void OhmUtXrefTableEntity::getVisColumnIdMap(VisColumnIdMap& visColumnIdMap) const {
  visColumnIdMap.clear();
  std::vector<std::int32_t> columnIndices;
  getTableColumnIndexFilters(columnIndices);
  std::int32_t position = 0;
  for (const std::int32_t columnIndex : columnIndices) {
    const ColumnId column = getColumnId(columnIndex);
    if (column != ColumnNone) visColumnIdMap[column] = position;
    ++position;
  }
}

void OhmUtXrefTableEntity::updateVisColumnIdMap() {
  mRowCheck = {};
  getVisColumnIdMap(mVisColumnIdMap);
  // A row has as many cells as the map has entries.
  const std::size_t rowSize = mVisColumnIdMap.size();
  for (const auto& [column, position] : mVisColumnIdMap) {
    if (position < 0 || static_cast<std::size_t>(position) >= rowSize) {
      mRowCheck.endsBeyondRow = true;
      break;
    }
    if (isColumnApplicableToRowCheck(column, GraphicalStyle1))
      mRowCheck.cells.emplace_back(column, static_cast<std::size_t>(position));
  }
}

std::int32_t OhmUtXrefTableEntity::getVisibleColumnIndex(ColumnId column) {
  init();
  const auto found = mVisColumnIdMap.find(column);
  return found == mVisColumnIdMap.end() ? -1 : found->second;
}

// --- cell values ----------------------------------------------------------------

namespace {

constexpr std::u16string_view kFilledCell = u" ";

}  // namespace

bool OhmUtXrefTableEntity::assignCell(const std::optional<std::u16string_view>& cell, std::u16string& value) {
  value.assign(cell.value_or(std::u16string_view()));
  return cell.has_value();
}

bool OhmUtXrefTableEntity::getTableCellValue(const OhmDsComponentOcc& occurrence, ColumnId column,
                                             std::u16string& value) {
  value.clear();
  // Only the symbol depends on what initialisation reads (the pin list's triples).
  if (column == ColumnSymbol) init();
  const Contact& contact = classify(occurrence);
  const GraphicalStyle style = getGraphicalStyle();
  const bool found = assignCell(cellView(occurrence, contact, style, column), value);
  // The filled cell stands also where the contact map has no name.
  if (!found && column == ColumnSymbol && style == GraphicalContactMap) value.assign(1, u' ');
  return found;
}

bool OhmUtXrefTableEntity::getFullFormCTableCellValue(const OhmDsComponentOcc& occurrence, ColumnId column,
                                                      std::u16string& noValue, std::u16string& ncValue) {
  noValue.clear();
  ncValue.clear();
  init();
  const auto cells = fullFormCCellViews(classify(occurrence), getGraphicalStyle(), column);
  if (!cells) return false;
  noValue.assign(cells->first);
  ncValue.assign(cells->second);
  return true;
}

bool OhmUtXrefTableEntity::getPartialFormCTableCellValue(const OhmDsComponentOcc& occurrence, ColumnId column,
                                                         std::u16string& value) {
  value.clear();
  init();
  return assignCell(partialFormCCellView(classify(occurrence), getGraphicalStyle(), column), value);
}

std::optional<std::u16string_view> OhmUtXrefTableEntity::cellView(const OhmDsComponentOcc& occurrence,
                                                                  const Contact& contact, GraphicalStyle style,
                                                                  ColumnId column) {
  auto term = [&contact](std::int32_t number) -> std::optional<std::u16string_view> {
    const std::u16string* found = termOf(contact.terms, number);
    if (!found) return std::nullopt;
    return *found;
  };
  switch (column) {
    case ColumnTerm1:
      return term(1);
    case ColumnTerm2:
      return term(2);
    case ColumnReference:
      generateXrefText(occurrence, mReference, false);
      return mReference;
    case ColumnSymbol: {
      const std::u16string* symbol = plainSymbol(contact, style);
      if (!symbol) return std::nullopt;
      // A contact-map symbol cell is never empty, so that a table shows it was filled.
      if (symbol->empty() && style == GraphicalContactMap) return kFilledCell;
      return *symbol;
    }
    case ColumnSheet:
      return ohm_internal::lookupProperty(occurrence.mSheetProperties, OhmDsKeys::SHEET);
    case ColumnSheetDwgName:
      return ohm_internal::lookupProperty(occurrence.mSheetProperties, OhmDsKeys::SHEETDWGNAME);
    case ColumnDwgName: {
      ZdString name;
      mCellText.clear();
      if (OhmUtilsGetFileNameWithoutExt(ZdString(occurrence.mOccID.mDwgPath), name)) mCellText = name.str();
      return mCellText;
    }
    case ColumnDwgPath:
      return occurrence.mOccID.mDwgPath;
    default:
      return std::nullopt;
  }
}

std::optional<std::pair<std::u16string_view, std::u16string_view>> OhmUtXrefTableEntity::fullFormCCellViews(
    const Contact& contact, GraphicalStyle style, ColumnId column) const {
  if (!contact.fullFormC) return std::nullopt;
  // A full Form C contact has exactly the terminals 1, 2 and 3, in this order.
  const std::u16string& t1 = *contact.terms[0].second;
  const std::u16string& t2 = *contact.terms[1].second;
  const std::u16string& t3 = *contact.terms[2].second;
  switch (column) {
    case ColumnTerm1:
      return std::pair<std::u16string_view, std::u16string_view>{t2, t3};
    case ColumnTerm2:
      return std::pair<std::u16string_view, std::u16string_view>{t1, t1};
    case ColumnSymbol: {
      const auto [no, nc] = fullFormCSymbols(contact, style);
      if (!no) return std::nullopt;
      return std::pair{std::u16string_view(*no), std::u16string_view(*nc)};
    }
    default:
      return std::nullopt;
  }
}

std::optional<std::u16string_view> OhmUtXrefTableEntity::partialFormCCellView(const Contact& contact,
                                                                              GraphicalStyle style,
                                                                              ColumnId column) const {
  if (!contact.partialFormC) return std::nullopt;
  switch (column) {
    case ColumnTerm1: {
      const PartialPins pins = partialFormCPins(contact.terms);
      return contact.kind == ContactKind::NO ? pins.no : pins.nc;
    }
    case ColumnTerm2:
      return partialFormCPins(contact.terms).common;
    case ColumnSymbol: {
      const std::u16string* symbol = partialFormCSymbol(contact, style);
      if (!symbol) return std::nullopt;
      return *symbol;
    }
    default:
      return std::nullopt;
  }
}

// --- row matching -----------------------------------------------------------------

bool OhmUtXrefTableEntity::isColumnApplicableToRowCheck(ColumnId column) const {
  return isColumnApplicableToRowCheck(column, getGraphicalStyle());
}

bool OhmUtXrefTableEntity::isColumnApplicableToRowCheck(ColumnId column, GraphicalStyle style) {
  switch (column) {
    case ColumnTerm1:
    case ColumnTerm2:
    case ColumnReference:
    case ColumnSheet:
    case ColumnSheetDwgName:
    case ColumnDwgName:
    case ColumnDwgPath:
      return true;
    case ColumnSymbol:
      return style != GraphicalNone;
    default:
      return false;
  }
}

bool OhmUtXrefTableEntity::isCellMatching(const OhmDsComponentOcc& occurrence, const Contact& contact,
                                          GraphicalStyle style, ColumnId column, const std::u16string& cell) {
  using ohm_internal::sameUnits;
  if (ohm_internal::isContactColumn(column) && contact.partialFormC) {
    const std::optional<std::u16string_view> value = partialFormCCellView(contact, style, column);
    return value && sameUnits(cell, *value);
  }
  if (ohm_internal::isContactColumn(column) && contact.fullFormC) {
    const auto values = fullFormCCellViews(contact, style, column);
    return values && (sameUnits(cell, values->first) || sameUnits(cell, values->second));
  }
  const std::optional<std::u16string_view> value = cellView(occurrence, contact, style, column);
  return value && sameUnits(cell, *value);
}

bool OhmUtXrefTableEntity::isCompOccMatchingRow(const OhmDsComponentOcc& occurrence,
                                                const std::vector<std::u16string>& cells) {
  init();
  if (cells.size() != mVisColumnIdMap.size()) return false;
  const GraphicalStyle style = getGraphicalStyle();
  // Classified only when a cell needs it, which leaves a row of a wrong shape
  // as cheap as before; a TERMCODE that is no number throws from here.
  const Contact* contact = nullptr;
  for (const auto& [column, position] : mRowCheck.cells) {
    if (!isColumnApplicableToRowCheck(column, style)) continue;  // the symbol, in GraphicalNone
    if (!contact) contact = &classify(occurrence);
    if (!isCellMatching(occurrence, *contact, style, column, cells[position])) return false;
  }
  return !mRowCheck.endsBeyondRow;
}
