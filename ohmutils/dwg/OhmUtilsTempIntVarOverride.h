// OhmUtilsTempIntVarOverride: sets a 16-bit integer system variable of the
// host for as long as the object lives and gives it back its old value at the
// end; a scope guard for work that needs a host variable at a certain value.
//
// Whether the object restores is fixed at construction: only when the old
// value could be read as a 16-bit integer. Copies restore too, each on its own.
// Nothing is reported and nothing thrown; a failed write leaves the variable
// as it is.
#pragma once

#include "ohmutils/OhmUtilsExport.h"
#include "zd/ZdString.h"

class OHMUTILS_EXPORT OhmUtilsTempIntVarOverride {
 public:
  // Reads the variable `name`, then sets it to `value` (also when the read
  // failed; the value is handed on unchecked).
  OhmUtilsTempIntVarOverride(const ZdString& name, int value);
  // Copies name, old value and the restore flag; touches no host variable.
  OhmUtilsTempIntVarOverride(const OhmUtilsTempIntVarOverride& other);
  OhmUtilsTempIntVarOverride& operator=(const OhmUtilsTempIntVarOverride& other);
  // Writes the old value back if it was read.
  ~OhmUtilsTempIntVarOverride();

 private:
  // The variable's 16-bit value, widened with its sign; false (value
  // untouched) when it can't be read or has another type.
  static bool getRbValue(const ZdString& name, int& value);
  // Sets the variable as a 16-bit integer; false when that fails.
  static bool setRbValue(const ZdString& name, int value);

  ZdString mName;
  int mOldValue = 0;
  bool mRestore = false;
};
