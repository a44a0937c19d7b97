// The update of a whole project: read every drawing (on several threads,
// keeping only the components of each), work out the cross-references, and
// write the changed attribute values back into the drawings that change.
//
// Writing holds the lock of each drawing it writes (the suite's drawing
// locks, through the library), replaces only the changed values in the
// file's own text, and writes the result beside the drawing and renames it
// over, so a drawing is either as it was or wholly updated. A drawing that
// another process holds, that changed since it was read, or whose new text
// would not read is left as it is and reported; the others are written.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "ohmutils/xref/OhmNoRxUtilsSettingOverride.h"
#include "project/DrawingComponents.h"
#include "project/ProjectConventions.h"
#include "project/UpdatePlan.h"

struct ProjectDescription {
  std::string root;                   // the folder that drawings are named from in messages
  std::vector<std::string> drawings;  // POSIX paths, in sheet order
  OhmNoRxUtilsSettingOverride::SettingMap settings = DefaultProjectSettings();
  ProjectConventions conventions;
};

// The DXF files of `folder` (not its subfolders), by name. Throws
// std::runtime_error for a folder that can't be listed or holds none.
ProjectDescription DescribeFolder(const std::string& folder);

struct UpdateOptions {
  bool write = false;    // false: work out the changes only
  bool recover = false;  // read damaged drawings in recover mode
  unsigned workers = 0;  // threads that read drawings; 0: one per core
  // Called after each drawing is read, with the number read and the total,
  // from the thread that read it; calls don't overlap.
  std::function<void(std::size_t, std::size_t)> progress;
};

struct ProjectUpdateResult {
  std::vector<DrawingComponents> drawings;  // in project order; components of each
  UpdatePlan plan;
  std::vector<std::size_t> written;  // drawings written back
};

ProjectUpdateResult UpdateProject(const ProjectDescription& project, const UpdateOptions& options);

// Reads the drawings' components, `workers` at a time; in project order.
std::vector<DrawingComponents> ReadProjectComponents(const ProjectDescription& project, const UpdateOptions& options);
