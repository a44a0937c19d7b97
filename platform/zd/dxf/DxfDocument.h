// Opening a DXF drawing file as a document of the host's session, as the
// host does when a user opens a drawing: the file is read into a database of
// its own, and the document manager (ZdDocManager.h) takes a new document of
// that database, named by the file's full name in Windows form. The manager
// owns the document; the document owns the database.
//
// Thread safety: the host's main thread only, like the document manager.
#pragma once

#include "OhmPlatformExport.h"
#include "zd/ZdErrorStatus.h"

OHM_PLATFORM_API_BEGIN

class ZdApDocument;

// Reads `fileName` (Windows form or POSIX, relative to the working folder or
// full) into a new database and opens it as a document; with `makeCurrent`
// it becomes the current document, otherwise the current one stays. eOk and
// the document; eInvalidInput for a null name, or the failure of
// ZdDbDatabase::readDwgFile (eFileNotFound, eFileAccessErr, eBadDxfFile),
// with null and no document opened.
Zeda::ErrorStatus openDxfDocument(const char16_t* fileName, bool makeCurrent, ZdApDocument*& document);

OHM_PLATFORM_API_END
