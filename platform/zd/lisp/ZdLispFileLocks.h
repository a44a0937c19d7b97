// The drawing file locks of the suite, as the host's counterparts of the
// suite's Lisp functions keep them. A lock is a file beside the drawing,
// "<drawing file name>.ohmlock", held open with an exclusive advisory lock
// (flock) by the process that holds it, so every process on the machine sees
// it, and the lock of a process that died without releasing it is
// recognisable as stale (the file is there, nobody holds it) and may be
// taken over. Taking a lock is atomic: of two processes that try at once,
// one gets it.
//
// Lisp functions registered here (a file list is RTLB, RTSTR paths in
// Windows form, RTLE):
//   wdupda_chkdwglockstatus_internal (files) lock all-or-none flag3 flag4
//     `lock` (RTT, or an RTSHORT other than 0) takes the locks; otherwise the
//     files are only checked. `all-or-none` (RTT) gives back the locks this
//     call took when any file can't be had, and answers nil. The later
//     flags are accepted and mean nothing to this host. The reply is a flat
//     chain of RTSTR nodes naming, in request order and as given, the files
//     this process holds (lock) or could take (check); RTNIL when none.
//     A drawing that doesn't exist can't be had.
//   c:ohm_upd_unlock_dwgs (files)
//     Releases the locks this process holds of those files. RTNIL when all
//     were released, else a flat chain of RTSTR nodes naming the files it
//     didn't hold, as given.
//
// Locks belong to the process: they are kept in a table guarded by a mutex
// and released by c:ohm_upd_unlock_dwgs or the end of the process.
#pragma once

#include <vector>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

enum class ZdDwgLockState {
  Free,           // no lock file
  HeldHere,       // this process holds the lock
  HeldElsewhere,  // another running process holds it
  Stale,          // a lock file that no running process holds
  NoDrawing,      // the drawing isn't there (or its path can't be mapped)
};

// The lock state of the drawing `drawing` (Windows form).
ZdDwgLockState zdDwgLockState(const char16_t* drawing);

// The open lock files of the locks this process holds. A lock lasts while
// any process holds its open file, so a child that inherits them (they are
// closed on exec unless the spawner clears that) holds the locks as long as
// it runs, whatever becomes of this process.
std::vector<int> zdHeldDwgLockDescriptors();

OHM_PLATFORM_API_END
