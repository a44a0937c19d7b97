#include "zd/lisp/ZdLisp.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "win/CrtChar.h"
#include "zd/ZdCodes.h"
#include "zd/lisp/ZdLisp_testing.h"

namespace {

using FunctionTable = std::map<std::u16string, ZdLispFunction>;  // upper-case name -> function

struct LispState {
  std::mutex mutex;
  FunctionTable registered;  // the host's own, from ZdLispRegistrar
  FunctionTable functions;   // in force: registered plus what tests defined
  bool usrbrkDisabled = false;
  std::optional<int> nextFault;
  long calls = 0;
  long usrbrkChanges = 0;
  std::u16string lastName;
};

LispState& state() {
  static LispState s;
  return s;
}

// The name as the table keys it: leading blanks dropped, upper case.
std::u16string functionKey(const char16_t* name) {
  std::u16string_view view(name);
  while (!view.empty() && CrtIsSpace(view.front())) view.remove_prefix(1);
  return CrtUpperCopy(view);
}

void setUsrbrk(bool disabled) {
  LispState& s = state();
  std::lock_guard lock(s.mutex);
  s.usrbrkDisabled = disabled;
  ++s.usrbrkChanges;
}

}  // namespace

int zdedInvoke(const ZdValueNode* request, ZdValueNode** reply) {
  if (!request || !reply) return RTREJ;
  *reply = nullptr;
  if (request->restype != RTSTR || !request->resval.rstring) return RTERROR;
  ZdLispFunction function;
  {
    LispState& s = state();
    std::lock_guard lock(s.mutex);
    s.lastName = request->resval.rstring;
    if (s.nextFault) {
      const int status = *s.nextFault;
      s.nextFault.reset();
      return status;
    }
    const auto it = s.functions.find(functionKey(request->resval.rstring));
    if (it == s.functions.end()) return RTERROR;
    function = it->second;
    ++s.calls;
  }
  return function(request->rbnext, reply);
}

bool zdedIsUsrbrkDisabled() {
  LispState& s = state();
  std::lock_guard lock(s.mutex);
  return s.usrbrkDisabled;
}

void zdedDisableUsrbrk() { setUsrbrk(true); }
void zdedEnableUsrbrk() { setUsrbrk(false); }

ZdLispRegistrar::ZdLispRegistrar(const char16_t* name, ZdLispFunction function) {
  LispState& s = state();
  std::lock_guard lock(s.mutex);
  s.registered[functionKey(name)] = function;
  s.functions[functionKey(name)] = std::move(function);
}

namespace zd_testing {

void defineLispFunction(const std::u16string& name, ZdLispFunction function) {
  LispState& s = state();
  std::lock_guard lock(s.mutex);
  s.functions[functionKey(name.c_str())] = std::move(function);
}

void undefineLispFunction(const std::u16string& name) {
  LispState& s = state();
  std::lock_guard lock(s.mutex);
  s.functions.erase(functionKey(name.c_str()));
}

void resetLisp() {
  LispState& s = state();
  std::lock_guard lock(s.mutex);
  s.functions = s.registered;
  s.usrbrkDisabled = false;
  s.nextFault.reset();
  s.calls = 0;
  s.usrbrkChanges = 0;
  s.lastName.clear();
}

void failNextInvoke(int status) {
  LispState& s = state();
  std::lock_guard lock(s.mutex);
  s.nextFault = status;
}

long lispCallCount() {
  LispState& s = state();
  std::lock_guard lock(s.mutex);
  return s.calls;
}

std::u16string lastInvokedName() {
  LispState& s = state();
  std::lock_guard lock(s.mutex);
  return s.lastName;
}

long usrbrkChangeCount() {
  LispState& s = state();
  std::lock_guard lock(s.mutex);
  return s.usrbrkChanges;
}

}  // namespace zd_testing
