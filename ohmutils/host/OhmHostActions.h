// One-shot actions on the host and the desktop: opening a web page with the
// system's handler for its address, asking the host application to quit,
// and writing out the suite's canned project database. Stateless free
// functions; nothing is held across calls.
//
// Thread safety: the host's user interface thread only.
#pragma once

#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"

// Opens `address` with the system's file protocol handler, which chooses the
// browser (or whatever handles the address's scheme). Reports nothing.
OHMUTILS_EXPORT void OpenURL(CString address);

// Asks the host application, through its automation interface, to quit.
// Does nothing when the host offers no such interface. Reports nothing.
OHMUTILS_EXPORT void QuitZeda();

// Writes the canned database (raw data 234 of OHM_MBRES.dll) to the file
// "~ohm_ohm_test_~.mdb" in the user's temporary folder, replacing an older
// one. False, `path` unchanged, when the temporary folder can't be had or
// the joined path needs 260 units or more. Otherwise `path` is the file's
// path, and the result is true when the data was written, false when the
// library lacks the data (an empty file is left), and true when the library
// can't be loaded (no file is left): true doesn't prove the file exists.
OHMUTILS_EXPORT bool dumpCannedDatabase(CString& path);
