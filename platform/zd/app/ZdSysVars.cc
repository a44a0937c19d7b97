#include "zd/app/ZdSysVars.h"

#include <map>
#include <mutex>

#include "win/CrtChar.h"
#include "zd/ZdCodes.h"
#include "zd/app/ZdSysVars_testing.h"

namespace {

using zd_testing::SysVarValue;

struct SysVar {
  SysVarValue value;
  bool readOnly = false;
};

using SysVarTable = std::map<std::u16string, SysVar>;  // keyed by the upper-case name

SysVarTable initialVariables() {
  return {
      {u"ATTDIA", {short{0}}},
      {u"ATTREQ", {short{1}}},
      {u"CMDECHO", {short{1}}},
      {u"CMDDIA", {short{1}}},
      {u"EXPERT", {short{0}}},
      {u"FILEDIA", {short{1}}},
      {u"LUNITS", {short{2}}},
      {u"LUPREC", {short{4}}},
      {u"OSMODE", {short{0}}},
      {u"TILEMODE", {short{1}}},
      {u"DWGTITLED", {short{0}, true}},
      {u"TEXTSIZE", {2.5}},
      {u"CLAYER", {std::u16string(u"0")}},
      {u"DWGNAME", {std::u16string(u"Drawing1.dwg"), true}},
      {u"DWGPREFIX", {std::u16string(), true}},
  };
}

std::mutex gMutex;
SysVarTable gVariables = initialVariables();
bool gFailNextGet = false;
bool gFailNextSet = false;

short typeOf(const SysVarValue& value) {
  static constexpr short kTypes[] = {RTSHORT, RTLONG, RTREAL, RTSTR};
  return kTypes[value.index()];
}

// Fills the node's value from the variable; false when a string can't be allocated.
bool fillNode(const SysVarValue& value, ZdValueNode* node) {
  node->restype = typeOf(value);
  if (const auto* s = std::get_if<short>(&value)) node->resval.rint = *s;
  if (const auto* l = std::get_if<std::int32_t>(&value)) node->resval.rlong = *l;
  if (const auto* r = std::get_if<double>(&value)) node->resval.rreal = *r;
  if (const auto* text = std::get_if<std::u16string>(&value)) node->resval.rstring = zdutNewString(text->c_str());
  return node->restype != RTSTR || node->resval.rstring;
}

// The node's value in the variable's type; false when the type does not fit.
bool readNode(const ZdValueNode* node, SysVarValue& value) {
  if (node->restype != typeOf(value)) return false;
  switch (node->restype) {
    case RTSHORT:
      value = node->resval.rint;
      return true;
    case RTLONG:
      value = node->resval.rlong;
      return true;
    case RTREAL:
      value = node->resval.rreal;
      return true;
    default:
      value = std::u16string(node->resval.rstring ? node->resval.rstring : u"");
      return true;
  }
}

// Consumes a pending fault flag.
bool takeFault(bool& flag) {
  const bool fail = flag;
  flag = false;
  return fail;
}

}  // namespace

int zdedGetVar(const char16_t* name, ZdValueNode* result) {
  if (!name || !result) return RTREJ;
  std::lock_guard lock(gMutex);
  if (takeFault(gFailNextGet)) return RTERROR;
  const auto it = gVariables.find(CrtUpperCopy(name));
  if (it == gVariables.end()) return RTREJ;
  ZdValueNode filled = *result;
  if (!fillNode(it->second.value, &filled)) return RTERROR;
  *result = filled;
  return RTNORM;
}

int zdedSetVar(const char16_t* name, const ZdValueNode* value) {
  if (!name || !value) return RTREJ;
  std::lock_guard lock(gMutex);
  if (takeFault(gFailNextSet)) return RTERROR;
  const auto it = gVariables.find(CrtUpperCopy(name));
  if (it == gVariables.end() || it->second.readOnly) return RTREJ;
  SysVarValue updated = it->second.value;
  if (!readNode(value, updated)) return RTREJ;
  it->second.value = std::move(updated);
  return RTNORM;
}

namespace zd_testing {

void defineSysVar(const std::u16string& name, const SysVarValue& value, bool readOnly) {
  std::lock_guard lock(gMutex);
  gVariables[CrtUpperCopy(name)] = SysVar{value, readOnly};
}

void resetSysVars() {
  std::lock_guard lock(gMutex);
  gVariables = initialVariables();
  gFailNextGet = gFailNextSet = false;
}

void failNextGetVar() {
  std::lock_guard lock(gMutex);
  gFailNextGet = true;
}

void failNextSetVar() {
  std::lock_guard lock(gMutex);
  gFailNextSet = true;
}

}  // namespace zd_testing
