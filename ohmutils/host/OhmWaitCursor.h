// The wait cursor over the host's drawing view during a long operation of
// the suite. While it is on, a message filter answers the user's mouse moves
// by setting the wait cursor again, so the view can't put its own cursor
// back. The pair doesn't nest: the first end switches it off however many
// begins came before.
//
// State: one per process (filter in place, the wait cursor, the cursor it
// replaced). Thread safety: the host's user interface thread only.
#pragma once

#include "ohmutils/OhmUtilsExport.h"

// Shows the wait cursor and hooks the host's messages. True when this call
// switched it on; false, nothing changed, when it is on already or there is
// no drawing view. Still true when the host refuses the hook: the wait
// cursor then shows, and the next end does nothing.
OHMUTILS_EXPORT bool OhmBeginWaitCursor();

// Unhooks, puts the earlier cursor back and sends the view a mouse move at
// the pointer's place (twice). Does nothing when no begin hooked; with no
// drawing view any more, unhooks and restores without sending.
OHMUTILS_EXPORT void OhmEndWaitCursor();
