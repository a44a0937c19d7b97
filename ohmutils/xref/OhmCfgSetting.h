// OhmCfgSetting: the suite's option numbers, as far as the cross-reference
// engine reads them. The numbers are fixed (callers store and pass them); the
// suite's enumeration is larger, and any other signed 32-bit number is a valid
// key of an option map that the engine simply never reads.
#pragma once

#include <cstdint>

class OhmCfgSetting {
 public:
  // Number of an option. The xdata application name that overrides each one
  // on a drawing entity is KVA_ followed by the enumerator's name.
  enum WD_M_ATTRIB : std::int32_t {
    WD_XREF_FORMAT = 14,        // format for an occurrence in the host drawing; absent: empty text
    WD_XREF_ALTFORMAT = 47,     // format for an occurrence in any other drawing; absent: empty text
    WD_XREF_STYLE = 60,         // presentation: "0" text, "1" graphic, "2" table; else no entity
    WD_XREF_TXTBTWN = 65,       // text between references; absent: ","
    WD_XREF_GRAPHIC = 66,       // what stands for the symbol: "0", "1" or "2"; absent: "0"
    WD_XREF_GRAPHICSTYLE = 67,  // first ("0") or second ("1") family of symbol texts; absent: "0"
    WD_XREF_CONTACTMAP = 68,    // comma list of names for NO, NC and Form C contacts; absent: none
    WD_XREF_TBLINDEX = 71,      // comma list of integer column indices; absent: no filter
    WD_XREF_TBLFLDNAMS = 72,    // comma list of column names; absent: none
  };
};
