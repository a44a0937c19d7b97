#include "ohmutils/xref/OhmUtXrefTableRows.h"

#include <algorithm>
#include <cstdint>

#include "ohmutils/xref/OhmUtXrefTableEntity_internal.h"

std::size_t OhmUtXrefTableRows::rowWidth(const OhmUtXrefTableEntity& entity) {
  std::int32_t last = -1;
  for (const auto& [column, position] : entity.mVisColumnIdMap) last = std::max(last, position);
  return static_cast<std::size_t>(last + 1);
}

std::vector<OhmUtXrefTableRows::Row> OhmUtXrefTableRows::getRows(OhmUtXrefTableEntity& entity,
                                                                 const OhmDsComponentOcc& occurrence) {
  entity.init();
  const std::size_t width = rowWidth(entity);
  if (width == 0) return {};
  const bool fullFormC = entity.isFullFormCContact(occurrence);
  const bool partialFormC = !fullFormC && entity.isPartialFormCContact(occurrence);
  Row first(width), second(width);
  for (const auto& [column, position] : entity.mVisColumnIdMap) {
    std::u16string& cell = first[static_cast<std::size_t>(position)];
    std::u16string& ncCell = second[static_cast<std::size_t>(position)];
    if (fullFormC && ohm_internal::isContactColumn(column)) {
      entity.getFullFormCTableCellValue(occurrence, column, cell, ncCell);
      continue;
    }
    if (partialFormC && ohm_internal::isContactColumn(column)) {
      entity.getPartialFormCTableCellValue(occurrence, column, cell);
    } else {
      entity.getTableCellValue(occurrence, column, cell);
    }
    ncCell = cell;
  }
  if (!fullFormC) return {std::move(first)};
  return {std::move(first), std::move(second)};
}

OhmUtXrefTableRows::Row OhmUtXrefTableRows::getTitles(OhmUtXrefTableEntity& entity) {
  entity.init();
  Row titles(rowWidth(entity));
  std::vector<std::u16string> names;
  entity.getAllTableColumnNames(names);
  for (std::int32_t index = 0; index < static_cast<std::int32_t>(names.size()); ++index) {
    const auto visible = entity.mVisColumnIdMap.find(entity.getColumnId(index));
    if (visible != entity.mVisColumnIdMap.end())
      titles[static_cast<std::size_t>(visible->second)] = names[static_cast<std::size_t>(index)];
  }
  return titles;
}
