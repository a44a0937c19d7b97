// The host's Lisp, as far as other modules call it: zdedInvoke calls a Lisp
// function by name with a value list of arguments and gives a status and a
// reply list. Function names compare ignoring case, and leading blanks of a
// name are ignored (" fn" reaches "fn").
//
// The host's own Lisp functions (the counterparts of the suite's Lisp code
// that the library calls) are registered with ZdLispRegistrar objects at load;
// tests may define more or replace them (ZdLisp_testing.h).
//
// Ownership: the request stays the caller's; the reply is a new chain that the
// caller releases with zdutRelRb.
//
// Thread safety: the host runs Lisp on its main thread only; the stand-in's
// table is guarded, but a function runs without the lock held.
#pragma once

#include <functional>

#include "OhmPlatformExport.h"
#include "zd/ZdValueNode.h"

OHM_PLATFORM_API_BEGIN

// A Lisp function of the host: its arguments (the request behind the name
// node, may be null) and a reply to set; gives a status (RTNORM on success).
using ZdLispFunction = std::function<int(const ZdValueNode* args, ZdValueNode** reply)>;

// Calls the function named by the first node (RTSTR) of `request`. Sets
// *reply (null when there is none). RTNORM and the function's reply on
// success; the function's own status otherwise; RTERROR for a request without
// a name node or an unknown function; RTREJ for a null request or reply pointer.
int zdedInvoke(const ZdValueNode* request, ZdValueNode** reply);

// Whether the user may break a running Lisp call with Esc (false: may break).
bool zdedIsUsrbrkDisabled();
// Forbids / allows the user's break.
void zdedDisableUsrbrk();
void zdedEnableUsrbrk();

// Registers a host Lisp function at load; lives in a namespace-scope object.
class ZdLispRegistrar {
 public:
  ZdLispRegistrar(const char16_t* name, ZdLispFunction function);
};

OHM_PLATFORM_API_END
