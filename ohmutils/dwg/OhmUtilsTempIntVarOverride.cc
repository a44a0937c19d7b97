#include "ohmutils/dwg/OhmUtilsTempIntVarOverride.h"

#include "zd/ZdCodes.h"
#include "zd/ZdValueNode.h"
#include "zd/app/ZdSysVars.h"

OhmUtilsTempIntVarOverride::OhmUtilsTempIntVarOverride(const ZdString& name, int value) : mName(name) {
  mRestore = getRbValue(mName, mOldValue);
  setRbValue(mName, value);
}

OhmUtilsTempIntVarOverride::OhmUtilsTempIntVarOverride(const OhmUtilsTempIntVarOverride& other) = default;

OhmUtilsTempIntVarOverride& OhmUtilsTempIntVarOverride::operator=(const OhmUtilsTempIntVarOverride& other) {
  mName.assign(other.mName);
  mOldValue = other.mOldValue;
  mRestore = other.mRestore;
  return *this;
}

OhmUtilsTempIntVarOverride::~OhmUtilsTempIntVarOverride() {
  if (mRestore) setRbValue(mName, mOldValue);
}

// The node lives on the host's heap, so that a variable of another type (a
// text, say) is released with it.
bool OhmUtilsTempIntVarOverride::getRbValue(const ZdString& name, int& value) {
  ZdValueNode* node = zdutNewRb(RTSHORT);
  if (!node) return false;
  const bool read = zdedGetVar(name.kwszPtr(), node) == RTNORM && node->restype == RTSHORT;
  if (read) value = node->resval.rint;
  zdutRelRb(node);
  return read;
}

bool OhmUtilsTempIntVarOverride::setRbValue(const ZdString& name, int value) {
  ZdValueNode* list = zdutBuildList(RTSHORT, value, 0);
  if (!list) return false;
  const int status = zdedSetVar(name.kwszPtr(), list);
  zdutRelRb(list);
  return status == RTNORM;
}
