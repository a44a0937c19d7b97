// Reading a DXF drawing (ASCII, R12 to 2018) into a drawing database: the
// header's version, code page and handle seed, the block records, the blocks
// with their entities, the entities of model and paper space, and the layout
// dictionary with its layouts. Entities keep handle, owner, layer and xdata;
// INSERT (ZdDbMInsertBlock when it has rows or columns), ACAD_TABLE and TEXT
// become their classes, ATTRIB the attributes of the INSERT before them,
// every other type a ZdDbEntity of a class made by name (DxfEntityClasses.h).
// The groups the database does not model stay on each object as a view into
// the file's text, which the database keeps (ZdDbObject::keptDxfGroups).
//
// The text is read one record at a time into a database of its own, so a
// text that fails leaves the caller's database exactly as it was. A refusal
// names its line; in recover mode a damaged file (no EOF, a section, table
// or block without its end, a table without its head, a bad group code that
// cuts the file short) is repaired where it can be, and every repair listed.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "OhmPlatformExport.h"
#include "zd/ZdErrorStatus.h"

OHM_PLATFORM_API_BEGIN

class ZdDbDatabase;

struct DxfReadOptions {
  bool recover = false;  // repair what can be repaired instead of refusing it
};

// What a read found beside its status.
struct DxfReadReport {
  int line = 0;                              // of the refusal; 0 when none or not in the text
  std::string problem;                       // what was expected there; empty when the read succeeded
  std::vector<std::string> repairs;          // "LINE: what was repaired", in file order (recover mode)
  std::vector<std::string> undefinedBlocks;  // names referred to but never defined, raw, each once
};

// Reads DXF text in place of what `database` held; the text is copied into
// the database. eOk; eBadDxfFile (not a readable ASCII DXF text) or
// eOutOfMemory with the database untouched.
Zeda::ErrorStatus readDxfDrawing(std::string_view text, ZdDbDatabase& database, const DxfReadOptions& options = {},
                                 DxfReadReport* report = nullptr);
// The same, taking the text over without a copy.
Zeda::ErrorStatus readDxfDrawingText(std::string text, ZdDbDatabase& database, const DxfReadOptions& options = {},
                                     DxfReadReport* report = nullptr);
// Reads the DXF file at `path` (POSIX). As readDxfDrawing, and eFileNotFound
// or eFileAccessErr when the bytes can't be had (a folder: eFileAccessErr,
// with the problem "is a folder, not a drawing").
Zeda::ErrorStatus readDxfDrawingFile(const std::string& path, ZdDbDatabase& database,
                                     const DxfReadOptions& options = {}, DxfReadReport* report = nullptr);

OHM_PLATFORM_API_END
