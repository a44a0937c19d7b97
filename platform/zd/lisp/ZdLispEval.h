// The host's counterpart of the suite's "veval-str+": evaluates a Lisp
// expression given as text. This host understands one form,
// "(vl-zeda-defun 'name)", which makes `name` known to the Lisp as a
// function defined outside it (blanks around the name are dropped, case is
// kept); it answers T. Any other expression is an error (RTERROR, no reply).
//
// The names stay known for the life of the process.
//
// Thread safety: the host's Lisp runs on its main thread; the name list is guarded.
#pragma once

#include <string>
#include <vector>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

// The names made known by vl-zeda-defun, each once, in the order first seen.
std::vector<std::u16string> zdLispDefunNames();

OHM_PLATFORM_API_END
