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

void OhmUtXrefTableEntity::updateVisColumnIdMap() { getVisColumnIdMap(mVisColumnIdMap); }

std::int32_t OhmUtXrefTableEntity::getVisibleColumnIndex(ColumnId column) {
  init();
  const auto found = mVisColumnIdMap.find(column);
  return found == mVisColumnIdMap.end() ? -1 : found->second;
}

// --- cell values ----------------------------------------------------------------

bool OhmUtXrefTableEntity::copyTermOf(const TermList& terms, std::int32_t number, std::u16string& value) {
  const std::u16string* term = termOf(terms, number);
  if (term) value = *term;
  return term != nullptr;
}

bool OhmUtXrefTableEntity::getTableCellValue(const OhmDsComponentOcc& occurrence, ColumnId column,
                                             std::u16string& value) {
  // Only the symbol depends on what initialisation reads (the pin list's triples).
  if (column == ColumnSymbol) init();
  return cellValue(occurrence, classifyContact(occurrence), getGraphicalStyle(), column, value);
}

bool OhmUtXrefTableEntity::getFullFormCTableCellValue(const OhmDsComponentOcc& occurrence, ColumnId column,
                                                      std::u16string& noValue, std::u16string& ncValue) {
  init();
  return fullFormCCellValues(classifyContact(occurrence), getGraphicalStyle(), column, noValue, ncValue);
}

bool OhmUtXrefTableEntity::getPartialFormCTableCellValue(const OhmDsComponentOcc& occurrence, ColumnId column,
                                                         std::u16string& value) {
  init();
  return partialFormCCellValue(classifyContact(occurrence), getGraphicalStyle(), column, value);
}

bool OhmUtXrefTableEntity::cellValue(const OhmDsComponentOcc& occurrence, const Contact& contact, GraphicalStyle style,
                                     ColumnId column, std::u16string& value) const {
  value.clear();
  auto copyTerm = [&contact](std::int32_t number, std::u16string& out) {
    return copyTermOf(contact.terms, number, out);
  };
  switch (column) {
    case ColumnTerm1:
      return copyTerm(1, value);
    case ColumnTerm2:
      return copyTerm(2, value);
    case ColumnReference:
      generateXrefText(occurrence, value, false);
      return true;
    case ColumnSymbol: {
      const bool found = symbolOfPlainContact(contact, style, value);
      // A contact-map cell is never empty, so that a table shows it was filled.
      if (value.empty() && style == GraphicalContactMap) value.assign(1, u' ');
      return found;
    }
    case ColumnSheet:
      value = ohm_internal::lookupProperty(occurrence.mSheetProperties, OhmDsKeys::SHEET);
      return true;
    case ColumnSheetDwgName:
      value = ohm_internal::lookupProperty(occurrence.mSheetProperties, OhmDsKeys::SHEETDWGNAME);
      return true;
    case ColumnDwgName: {
      ZdString name;
      if (OhmUtilsGetFileNameWithoutExt(ZdString(occurrence.mOccID.mDwgPath), name)) value = name.str();
      return true;
    }
    case ColumnDwgPath:
      value = occurrence.mOccID.mDwgPath;
      return true;
    default:
      return false;
  }
}

bool OhmUtXrefTableEntity::fullFormCCellValues(const Contact& contact, GraphicalStyle style, ColumnId column,
                                               std::u16string& noValue, std::u16string& ncValue) const {
  noValue.clear();
  ncValue.clear();
  if (!contact.fullFormC) return false;
  auto copyTerm = [&contact](std::int32_t number, std::u16string& out) {
    return copyTermOf(contact.terms, number, out);
  };
  switch (column) {
    case ColumnTerm1:
      return copyTerm(2, noValue) && copyTerm(3, ncValue);
    case ColumnTerm2:
      return copyTerm(1, noValue) && copyTerm(1, ncValue);
    case ColumnSymbol:
      return symbolsOfFullFormCContact(contact, style, noValue, ncValue);
    default:
      return false;
  }
}

bool OhmUtXrefTableEntity::partialFormCCellValue(const Contact& contact, GraphicalStyle style, ColumnId column,
                                                 std::u16string& value) const {
  value.clear();
  if (!contact.partialFormC) return false;
  switch (column) {
    case ColumnTerm1: {
      const auto [common, no, nc] = identifyPartialFormCPins(contact.terms);
      value = contact.kind == ContactKind::NO ? no : nc;
      return true;
    }
    case ColumnTerm2:
      value = std::get<0>(identifyPartialFormCPins(contact.terms));
      return true;
    case ColumnSymbol:
      return symbolOfPartialFormCContact(contact, style, value);
    default:
      return false;
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
                                          GraphicalStyle style, ColumnId column, const std::u16string& cell,
                                          std::u16string& scratch) const {
  if (ohm_internal::isContactColumn(column) && contact.partialFormC)
    return partialFormCCellValue(contact, style, column, scratch) && cell == scratch;
  if (ohm_internal::isContactColumn(column) && contact.fullFormC) {
    std::u16string ncValue;
    return fullFormCCellValues(contact, style, column, scratch, ncValue) && (cell == scratch || cell == ncValue);
  }
  return cellValue(occurrence, contact, style, column, scratch) && cell == scratch;
}

bool OhmUtXrefTableEntity::isCompOccMatchingRow(const OhmDsComponentOcc& occurrence,
                                                const std::vector<std::u16string>& cells) {
  init();
  if (cells.size() != mVisColumnIdMap.size()) return false;
  const GraphicalStyle style = getGraphicalStyle();
  // Classified only when a cell needs it, which leaves a row of a wrong shape
  // as cheap as before; a TERMCODE that is no number throws from here.
  std::optional<Contact> contact;
  std::u16string scratch;
  for (const auto& [column, position] : mVisColumnIdMap) {
    if (position < 0 || static_cast<std::size_t>(position) >= cells.size()) return false;
    if (!isColumnApplicableToRowCheck(column, style)) continue;
    if (!contact) contact = classifyContact(occurrence);
    if (!isCellMatching(occurrence, *contact, style, column, cells[static_cast<std::size_t>(position)], scratch))
      return false;
  }
  return true;
}
