// What the table entity and the row filler share: which columns hold
// contact-side values (terminals and symbol), whose cells depend on the
// contact's Form C class.
#pragma once

#include "ohmutils/xref/OhmUtXrefTableEntity.h"

namespace ohm_internal {

inline bool isContactColumn(OhmUtXrefTableEntity::ColumnId column) {
  return column == OhmUtXrefTableEntity::ColumnTerm1 || column == OhmUtXrefTableEntity::ColumnTerm2 ||
         column == OhmUtXrefTableEntity::ColumnSymbol;
}

}  // namespace ohm_internal
