// The module's own use of the host's Lisp: evaluating an expression and
// making the module's Lisp-callable names known at attach.
#pragma once

#include "zd/ZdValueNode.h"

namespace ohm_internal {

// The status this library gives itself when no document is current.
inline constexpr int kNoCurrentDocument = -5004;

// Evaluates `expression` through "veval-str+" while a document is current.
// The host's status with the reply (the caller's to release) in *reply;
// kNoCurrentDocument and *reply untouched without a current document.
int LispEvalString(const char16_t* expression, ZdValueNode** reply);

// Makes `name` known to the Lisp with "(vl-zeda-defun 'name)"; the status of
// the evaluation (the reply is released).
int LispRegisterFunction(const char16_t* name);

// Registers the module's three Lisp-callable names, ignoring the results.
// Module attach only.
void LispRegisterFunctions();

}  // namespace ohm_internal
