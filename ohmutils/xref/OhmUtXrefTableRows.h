// OhmUtXrefTableRows: fills the rows of a cross-reference table for a caller
// that keeps the table itself, such as a tool that prints one. A row has one
// cell per visible column, in table order, with the values the table entity
// compares rows against: a plain or partial Form C contact gives one row, a
// full Form C contact two (its NO side, then its NC side). Column titles come
// from option 72, by column index.
//
// The entity is initialised by the first call, as by any of its public
// operations; the exceptions of its options and of TERMCODE pass out.
#pragma once

#include <string>
#include <vector>

#include "ohmutils/OhmUtilsExport.h"
#include "ohmutils/xref/OhmUtXrefTableEntity.h"

class OHMUTILS_EXPORT OhmUtXrefTableRows {
 public:
  using Row = std::vector<std::u16string>;

  OhmUtXrefTableRows() = delete;
  // The rows an occurrence puts in the table; a cell whose value can't be
  // worked out holds what the entity gives then (empty, or " " for a
  // contact-map symbol). No rows when no column is visible.
  static std::vector<Row> getRows(OhmUtXrefTableEntity& entity, const OhmDsComponentOcc& occurrence);
  // The title of each visible column in table order: the name that option 72
  // gives its column index, empty where the option has none.
  static Row getTitles(OhmUtXrefTableEntity& entity);

 private:
  // The number of cells of a row: one past the last visible position.
  static std::size_t rowWidth(const OhmUtXrefTableEntity& entity);
};
