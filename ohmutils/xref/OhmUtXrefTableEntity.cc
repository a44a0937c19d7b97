#include "ohmutils/xref/OhmUtXrefTableEntity.h"

#include <array>

#include "ohmutils/util/OhmUtilsPaths.h"
#include "ohmutils/util/OhmUtilsStringSplit.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "ohmutils/xref/OhmDsOccurrence_internal.h"
#include "ohmutils/xref/OhmUtXrefTableEntity_internal.h"

namespace {

// Column index (the numbers of option 71) -> column.
constexpr std::array<OhmUtXrefTableEntity::ColumnId, 10> kColumnOfIndex = {
    OhmUtXrefTableEntity::ColumnAux1,      OhmUtXrefTableEntity::ColumnTerm1,
    OhmUtXrefTableEntity::ColumnSymbol,    OhmUtXrefTableEntity::ColumnTerm2,
    OhmUtXrefTableEntity::ColumnAux2,      OhmUtXrefTableEntity::ColumnReference,
    OhmUtXrefTableEntity::ColumnSheet,     OhmUtXrefTableEntity::ColumnSheetDwgName,
    OhmUtXrefTableEntity::ColumnDwgName,   OhmUtXrefTableEntity::ColumnDwgPath,
};


// Copies the map's value for `key` into `value`; false without the key.
bool copyTerm(OhmUtXrefGraphicEntity::TermMap& termMap, std::int32_t key, std::u16string& value) {
  const auto found = termMap.find(key);
  if (found == termMap.end()) return false;
  value = found->second;
  return true;
}

}  // namespace

OhmUtXrefTableEntity::OhmUtXrefTableEntity(OhmNoRxUtilsSettingOverride& settingOverride,
                                           const std::u16string& pinList)
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

void OhmUtXrefTableEntity::updateVisColumnIdMap() { getVisColumnIdMap(mVisColumnIdMap); }

std::int32_t OhmUtXrefTableEntity::getVisibleColumnIndex(ColumnId column) {
  init();
  const auto found = mVisColumnIdMap.find(column);
  return found == mVisColumnIdMap.end() ? -1 : found->second;
}

// --- cell values ----------------------------------------------------------------

bool OhmUtXrefTableEntity::getTableCellValue(const OhmDsComponentOcc& occurrence, ColumnId column,
                                             std::u16string& value) {
  value.clear();
  TermMap termMap;
  getCompOccTermMap(occurrence, termMap, false);
  switch (column) {
    case ColumnTerm1: return copyTerm(termMap, 1, value);
    case ColumnTerm2: return copyTerm(termMap, 2, value);
    case ColumnReference: generateXrefText(occurrence, value, false); return true;
    case ColumnSymbol: {
      const bool found = getSymbolTextForContact(occurrence, value);
      // A contact-map cell is never empty, so that a table shows it was filled.
      if (value.empty() && getGraphicalStyle() == GraphicalContactMap) value.assign(1, u' ');
      return found;
    }
    case ColumnSheet: value = ohm_internal::lookupProperty(occurrence.mSheetProperties, OhmDsKeys::SHEET); return true;
    case ColumnSheetDwgName:
      value = ohm_internal::lookupProperty(occurrence.mSheetProperties, OhmDsKeys::SHEETDWGNAME);
      return true;
    case ColumnDwgName: {
      ZdString name;
      if (OhmUtilsGetFileNameWithoutExt(ZdString(occurrence.mOccID.mDwgPath), name)) value = name.str();
      return true;
    }
    case ColumnDwgPath: value = occurrence.mOccID.mDwgPath; return true;
    default: return false;
  }
}

bool OhmUtXrefTableEntity::getFullFormCTableCellValue(const OhmDsComponentOcc& occurrence, ColumnId column,
                                                      std::u16string& noValue, std::u16string& ncValue) {
  noValue.clear();
  ncValue.clear();
  if (!isFullFormCContact(occurrence)) return false;
  TermMap termMap;
  getCompOccTermMap(occurrence, termMap, false);
  switch (column) {
    case ColumnTerm1: return copyTerm(termMap, 2, noValue) && copyTerm(termMap, 3, ncValue);
    case ColumnTerm2: return copyTerm(termMap, 1, noValue) && copyTerm(termMap, 1, ncValue);
    case ColumnSymbol: return getSymbolTextForFullFormCContact(occurrence, noValue, ncValue);
    default: return false;
  }
}

bool OhmUtXrefTableEntity::getPartialFormCTableCellValue(const OhmDsComponentOcc& occurrence, ColumnId column,
                                                         std::u16string& value) {
  value.clear();
  if (!isPartialFormCContact(occurrence)) return false;
  const auto [common, no, nc] = identifyPartialFormCPins(occurrence);
  switch (column) {
    case ColumnTerm1:
      value = isValidContactForRelayCoilNO(occurrence.getProperty(OhmDsKeys::CONTACT)) ? no : nc;
      return true;
    case ColumnTerm2: value = common; return true;
    case ColumnSymbol: return getSymbolTextForPartialFormCContact(occurrence, value);
    default: return false;
  }
}

// --- row matching -----------------------------------------------------------------

bool OhmUtXrefTableEntity::isColumnApplicableToRowCheck(ColumnId column) const {
  switch (column) {
    case ColumnTerm1:
    case ColumnTerm2:
    case ColumnReference:
    case ColumnSheet:
    case ColumnSheetDwgName:
    case ColumnDwgName:
    case ColumnDwgPath: return true;
    case ColumnSymbol: return getGraphicalStyle() != GraphicalNone;
    default: return false;
  }
}

bool OhmUtXrefTableEntity::isCellMatching(const OhmDsComponentOcc& occurrence, ColumnId column,
                                          const std::u16string& cell) {
  std::u16string value;
  if (ohm_internal::isContactColumn(column) && isPartialFormCContact(occurrence)) {
    return getPartialFormCTableCellValue(occurrence, column, value) && cell == value;
  }
  if (ohm_internal::isContactColumn(column) && isFullFormCContact(occurrence)) {
    std::u16string ncValue;
    return getFullFormCTableCellValue(occurrence, column, value, ncValue) && (cell == value || cell == ncValue);
  }
  return getTableCellValue(occurrence, column, value) && cell == value;
}

bool OhmUtXrefTableEntity::isCompOccMatchingRow(const OhmDsComponentOcc& occurrence,
                                                const std::vector<std::u16string>& cells) {
  init();
  if (cells.size() != mVisColumnIdMap.size()) return false;
  for (const auto& [column, position] : mVisColumnIdMap) {
    if (position < 0 || static_cast<std::size_t>(position) >= cells.size()) return false;
    if (!isColumnApplicableToRowCheck(column)) continue;
    if (!isCellMatching(occurrence, column, cells[static_cast<std::size_t>(position)])) return false;
  }
  return true;
}
