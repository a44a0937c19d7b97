// Reading a DXF drawing (ASCII, R12 to 2018) into a drawing database: the
// header's version, code page and handle seed, the block records, the blocks
// with their entities, the entities of model and paper space, and the layout
// dictionary with its layouts. Entities keep handle, owner, layer and xdata;
// INSERT, ACAD_TABLE and TEXT become their classes, ATTRIB the attributes of
// the INSERT before them, every other type a ZdDbEntity of a class made by
// name (DxfEntityClasses.h).
//
// ZdDbDatabase::readDwgFile reads the file and calls this; fuzzing calls it
// directly. The whole text is read into a database of its own first, so a
// text that fails leaves the caller's database exactly as it was.
#pragma once

#include <string_view>

#include "zd/ZdErrorStatus.h"

class ZdDbDatabase;

// Reads DXF text in place of what `database` held. eOk; eBadDxfFile (not a
// readable ASCII DXF text) or eOutOfMemory with the database untouched.
Zeda::ErrorStatus readDxfDrawing(std::string_view text, ZdDbDatabase& database);
