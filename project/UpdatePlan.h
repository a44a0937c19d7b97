// The cross-references of a whole project, worked out from its drawings'
// components: the new values of the coils' XREF, XREFNO and XREFNC
// attributes and of the contacts' XREF attributes, what the graphic and table
// presentations show, and the problems found. PlanUpdate only computes; it
// reads no file and writes none.
//
// Sheets are numbered across the project in drawing order; a contact takes
// part only when its coil exists once, its kind is known and it has pins.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ohmutils/xref/OhmNoRxUtilsSettingOverride.h"
#include "ohmutils/xref/OhmUtXrefEntity.h"
#include "project/DrawingComponents.h"
#include "project/TextRoom.h"

// One attribute value to replace: the block reference's handle and the
// attribute's tag. Its texts are views: the tag and the old value into the
// records of the drawings the plan was made from, the new value into the
// plan's own room; so the drawings must outlive the plan, as they must for
// the contacts' places.
struct AttributeChange {
  std::size_t drawing = 0;  // index into the project's drawings
  std::uint64_t handle = 0;
  std::u16string_view tag;
  std::u16string_view oldValue;
  std::u16string_view newValue;
};

// One contact as the report shows it: where its record lies and the number
// of its sheet. Its texts are read from the record when they are shown, from
// the drawings the plan was made from, so that a project's hundreds of
// thousands of places hold no strings.
struct ContactPlace {
  std::uint32_t drawing = 0;  // index into the project's drawings
  std::uint32_t contact = 0;  // index into that drawing's contacts
  std::uint64_t handle = 0;
  int sheet = 0;  // in the project's numbering, from 1

  std::u16string_view kind(const std::vector<DrawingComponents>& drawings) const;  // "NO", "NC" or "NONC"
  std::u16string sheetText() const;
  std::u16string reference(const std::vector<DrawingComponents>& drawings) const;
};

// A contact kind as presentations and the report name it: Form C for NONC.
std::u16string_view ShownKind(std::u16string_view kind);

struct CoilPlan {
  std::size_t drawing = 0;
  std::uint64_t handle = 0;
  std::u16string tag;
  std::u16string sheet;
  std::u16string reference;
  OhmUtXrefEntity::Style style = OhmUtXrefEntity::StyleNone;
  std::vector<ContactPlace> contacts;
  std::vector<std::pair<std::u16string, std::u16string>> lines;              // graphic: contact label, text
  std::vector<std::u16string> titles;                                        // table
  std::vector<std::pair<std::u16string, std::vector<std::u16string>>> rows;  // contact label, cells
  std::string error;  // the engine's failure for this coil; empty when none
};

struct ProjectProblem {
  std::size_t drawing = 0;
  std::uint64_t handle = 0;  // 0: the drawing's own problem
  int line = 0;
  std::string message;
};

struct UpdatePlan {
  std::vector<AttributeChange> changes;  // by drawing in project order; in each, coils' then contacts'
  std::vector<CoilPlan> coils;
  std::vector<ProjectProblem> problems;
  std::vector<TextRoom> newValues;  // where the changes' new values lie
};

// `workers` threads work out the coils' presentations; the result is the same for any number.
UpdatePlan PlanUpdate(const std::vector<DrawingComponents>& drawings,
                      const OhmNoRxUtilsSettingOverride::SettingMap& settings, unsigned workers = 1);

// The settings of a project that names none: references as " sheet.line",
// in other drawings " drawing:sheet.line" (the blank keeps a reference apart
// from the terminals before it in a contact line), separated by ";", the
// attribute text presentation, tables of From, Symbol, To, Reference, Sheet.
OhmNoRxUtilsSettingOverride::SettingMap DefaultProjectSettings();
