// The host's counterpart of the suite's Lisp function "ohm_get_var", which
// answers a named global value of the suite: (ohm_get_var "GBL_wd_usr").
// The value comes from the suite's global manager (GblPm); the reply is one
// RTSTR node, or RTNIL when the name has no value. A call without a string
// argument is a Lisp error (RTERROR, no reply).
#include "zd/ZdCodes.h"
#include "zd/ZdValueNode.h"
#include "zd/app/GblPm.h"
#include "zd/lisp/ZdLisp.h"

namespace {

int ohmGetVar(const ZdValueNode* args, ZdValueNode** reply) {
  if (!args || args->restype != RTSTR || !args->resval.rstring) return RTERROR;
  const ZdValueNode* value = GblPm_GetGblValue(args->resval.rstring);
  const char16_t* text = value && value->restype == RTSTR ? value->resval.rstring : nullptr;
  *reply = text ? zdutBuildList(RTSTR, text, 0) : zdutNewRb(RTNIL);
  return *reply ? RTNORM : RTERROR;
}

const ZdLispRegistrar kOhmGetVar(u"ohm_get_var", ohmGetVar);

}  // namespace
