// Test seam of the host's Lisp: not host API.
#pragma once

#include <string>

#include "OhmPlatformExport.h"
#include "zd/lisp/ZdLisp.h"

OHM_PLATFORM_API_BEGIN

namespace zd_testing {

// Defines or replaces a Lisp function until resetLisp.
void defineLispFunction(const std::u16string& name, ZdLispFunction function);
// Removes a function (a registered one too) until resetLisp.
void undefineLispFunction(const std::u16string& name);
// The host's own functions only, user break allowed, counters at 0, no fault.
void resetLisp();
// The next zdedInvoke gives `status` and a null reply without calling anything.
void failNextInvoke(int status);
// How many zdedInvoke calls reached a function since resetLisp.
long lispCallCount();
// The function name of the last named request, exactly as the caller wrote it.
std::u16string lastInvokedName();
// How often the user-break state was changed (disable or enable) since resetLisp.
long usrbrkChangeCount();

}  // namespace zd_testing

OHM_PLATFORM_API_END
