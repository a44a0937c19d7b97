// A cross-reference project: the file `ohm xref` reads. It holds the option
// set, the drawing the texts stand in, the occurrence records of each coil's
// contacts, and the cross-reference entities: a block reference in a DXF
// drawing named by its handle, or a block described inline by its xdata
// options and attribute tags. The schema is in the README; LoadProject checks
// it all and names the line and column of the first thing that is wrong.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "ohmutils/xref/OhmDsComponentOcc.h"
#include "ohmutils/xref/OhmNoRxUtilsSettingOverride.h"
#include "project/ProjectUpdate.h"

// One contact of a coil, with the label that the output shows for it.
struct ContactRecord {
  std::string label;
  OhmDsComponentOcc occurrence;
};

struct EntitySpec {
  std::string name;
  std::string coil;          // a key of Project::coils
  std::string drawingFile;   // the DXF file (POSIX, resolved); empty for an inline entity
  std::uint64_t handle = 0;  // the block reference's handle in drawingFile
  std::vector<std::pair<std::u16string, std::u16string>> xdata;  // inline: option xdata by application name
  std::vector<std::u16string> attributes;                        // inline: attribute tags, in order
  std::u16string hostDrawing;                                    // the drawing the texts stand in (Windows form)
  std::vector<std::vector<std::u16string>> rows;                 // existing table rows to match
};

struct Project {
  std::string file;
  OhmNoRxUtilsSettingOverride::SettingMap settings;
  std::map<std::string, std::vector<ContactRecord>> coils;
  std::vector<EntitySpec> entities;
};

// The project in the file at `path` (POSIX). Throws CommandError with exit
// status 2 and "FILE:LINE:COLUMN: what was expected" for a file that can't
// be read, isn't JSON or doesn't follow the schema.
Project LoadProject(const std::string& path);
// The same from the file's `text`; `path` names it in messages and is where
// its relative drawing names start.
Project ParseProject(const std::string& text, const std::string& path);

// The project that `ohm update` works on: a folder of DXF drawings (by
// name), or a project file that lists them in sheet order with its settings
// and conventions (schema in the README). Errors as LoadProject's.
ProjectDescription LoadUpdateProject(const std::string& path);
ProjectDescription ParseUpdateProject(const std::string& text, const std::string& path);
