// What `ohm xref` finds for each entity of a project: the factory's
// presentation, and by presentation the attribute texts, the graphic lines
// or the table rows with the matches of existing rows. RunXref works on
// every entity even when one fails; a failed entity carries its reason.
// A report names contacts by views of the project's labels, so the project
// must outlive its reports; a label is held once however often it is shown.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Project.h"
#include "ohmutils/xref/OhmUtXrefEntity.h"

struct GraphicLine {
  std::string_view contact;
  std::u16string text;
};

struct TableRow {
  std::string_view contact;
  std::vector<std::u16string> cells;
};

// An existing row of the project and the contacts whose occurrence it describes.
struct RowMatch {
  std::size_t row = 0;  // counted from 1, as the project lists them
  std::vector<std::string_view> contacts;
};

struct EntityReport {
  std::string name;
  OhmUtXrefEntity::Style style = OhmUtXrefEntity::StyleNone;
  std::string error;                                                  // empty when the entity was worked out
  std::vector<std::pair<std::u16string, std::u16string>> attributes;  // text: tag, joined texts
  std::vector<GraphicLine> lines;                                     // graphic
  std::vector<std::u16string> titles;                                 // table
  std::vector<TableRow> rows;
  std::vector<RowMatch> matches;
};

// Runs the factory and the presentation of every entity of the project.
// Throws CommandError (status 2) for a drawing or handle that can't be had.
std::vector<EntityReport> RunXref(const Project& project);

// The presentation's name: "text", "graphic", "table" or "none".
const char* StyleName(OhmUtXrefEntity::Style style);
