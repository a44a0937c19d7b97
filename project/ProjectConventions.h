// How a project's drawings say what the cross-reference engine needs: which
// block references are coils and contacts, and where each contact's kind,
// line reference, pins and sheet come from. The defaults fit drawings made
// the usual way; a project file may change each of them (README, "ohm
// update").
//
// Plain data; copied into every worker that reads a drawing.
#pragma once

#include <cstdint>
#include <string>

// Line references from the position of a symbol on its sheet: the sheet is
// cut into horizontal lines `spacing` apart, counted down from `top`, the
// first one numbered `first`. A symbol's reference is its sheet followed by
// its line number in two digits (sheet 3, line 5: "305").
struct LineGrid {
  double top = 0.0;
  double spacing = 1.0;
  std::int32_t first = 0;
};

struct ProjectConventions {
  // The attribute that names a coil's tag, and a contact's coil (wildcards).
  std::u16string coilTagPattern = u"TAG1,TAG1F,TAG1*PART1";
  std::u16string contactCoilPattern = u"TAG2,TAG2F,TAG2*PART1";
  // A contact's kind: this attribute where the symbol carries it, else the
  // block name ("NONC"/"NCNO" in it: Form C; else "NC", else "NO").
  std::u16string kindAttribute = u"CONTACT";
  // A symbol's line reference: this attribute where it carries one, else the grid.
  std::u16string referenceAttribute = u"REF";
  // Pins: attributes named prefix + number (TERM01, TERM02, ...) in order;
  // the number is the pin's TERMCODE, the value its TERM.
  std::u16string pinPrefix = u"TERM";
  LineGrid grid;
  // The occurrence class (mType) the records of contacts carry; a plain XREF
  // tag takes 4, 8, 16, 32 and 64 only.
  std::int32_t occurrenceType = 8;
};
