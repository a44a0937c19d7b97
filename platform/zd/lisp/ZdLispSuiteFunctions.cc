// The host's counterparts of the suite's smaller Lisp functions that the
// library calls:
//   wd_fio_does_file_exist nil path
//     Looks `path` up as the host finds files (a path with a folder as
//     given, a bare name along the "ZEDA" search path). The full path found
//     as an RTSTR node, or RTNIL when it is nowhere.
//   wd_mdb2_WFRM2ALL_verify
//     The suite checks its project database's wire-from/to records here;
//     this host keeps no project database, so there is nothing to check,
//     and it answers T.
#include "zd/ZdCodes.h"
#include "zd/ZdString.h"
#include "zd/ZdValueNode.h"
#include "zd/app/ZdHostApplicationServices.h"
#include "zd/lisp/ZdLisp.h"

namespace {

int doesFileExist(const ZdValueNode* args, ZdValueNode** reply) {
  const ZdValueNode* path = args ? args->rbnext : nullptr;
  if (!path || path->restype != RTSTR || !path->resval.rstring) return RTERROR;
  ZdString found;
  const bool isThere = zddbHostApplicationServices()->findFile(found, path->resval.rstring) == 0;
  *reply = isThere ? zdutBuildList(RTSTR, found.kwszPtr(), 0) : zdutNewRb(RTNIL);
  return *reply ? RTNORM : RTERROR;
}

int verifyWireRecords(const ZdValueNode*, ZdValueNode** reply) {
  *reply = zdutNewRb(RTT);
  return *reply ? RTNORM : RTERROR;
}

const ZdLispRegistrar kDoesFileExist(u"wd_fio_does_file_exist", doesFileExist);
const ZdLispRegistrar kVerifyWireRecords(u"wd_mdb2_WFRM2ALL_verify", verifyWireRecords);

}  // namespace
