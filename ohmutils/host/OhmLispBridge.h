// The bridge to the suite's Lisp code in the host: a call that keeps the
// user from breaking it, and the operations that ask the Lisp side to check
// and take drawing file locks, release them, look a file up and verify the
// wire records. The locks live on the Lisp side; these operations only pack
// a request, pass it over and unpack the reply.
//
// Ownership: every request is built, owned and released here; every reply is
// released here after reading. The caller's lists are changed only as each
// operation says. Run these on the thread that may call the host's Lisp.
#pragma once

#include "mfc/CString.h"
#include "mfc/CStringArray.h"
#include "mfc/CStringList.h"
#include "ohmutils/OhmUtilsExport.h"
#include "zd/ZdValueNode.h"

// Calls the Lisp function the request names with the user's break forbidden
// for the call, and the break state left as it was found. The host's status;
// the reply (the caller's to release) in *reply.
OHMUTILS_EXPORT int Ohm_zdedInvoke(const ZdValueNode* request, ZdValueNode** reply);

// Asks the lock check about `files` (an empty array asks about none). True
// with `files` replaced by the paths the reply names ("/" made "\"); false
// and `files` unchanged when the call fails or the reply is nil.
OHMUTILS_EXPORT bool OhmCheckFilesAvailability(CStringArray& files, bool first, bool second, bool third);

// Asks the Lisp side to release the locks of `files`. True and `files`
// unchanged when all were released (nil reply); false with `files` replaced
// by the paths the reply names ("/" made "\") when some weren't; false and
// `files` unchanged when the call fails.
OHMUTILS_EXPORT bool OhmUnlockFiles(CStringArray& files);

// Checks and takes the locks of `files` (not empty) while a document is
// current. True with `replyFiles` replaced by the leading strings of the
// reply, paths as the Lisp side wrote them; false with `replyFiles` emptied
// for a reply of another kind; false and `replyFiles` unchanged when nothing
// was called or the call failed. `guardUserBreak` calls through Ohm_zdedInvoke.
OHMUTILS_EXPORT bool LispCheckFileLockStatusAndLock(CStringList& files, bool lock, bool second, CStringList& replyFiles,
                                                    bool guardUserBreak);

// Asks the Lisp side to release the locks of `files` (not empty). True when
// the reply is nil (all released); false otherwise, or for an empty list.
OHMUTILS_EXPORT bool LispUpdUnlockFiles(CStringList& files, bool guardUserBreak);

// Asks the Lisp side to find `path` (not empty). True when it answered:
// `found` is then the path it found, or untouched for a nil answer (clear it
// first to tell them apart). False when nothing was called or the call failed.
OHMUTILS_EXPORT bool LispDoesFileExist(CString path, CString& found);

// LispDoesFileExist into a caller's buffer of `size` units: true with the
// path found (empty for a nil answer) copied with its terminator; false and
// the buffer untouched when the call fails or the path doesn't fit.
OHMUTILS_EXPORT bool LispDoesFileExistWrapper(LPCWSTR path, LPWSTR buffer, int size);

// Runs "wd_mdb2_WFRM2ALL_verify" while a document is current. True when the
// call completed, or when its request couldn't be built; false without a
// current document or when the call failed.
OHMUTILS_EXPORT bool RefreshWFRM2ALL();
