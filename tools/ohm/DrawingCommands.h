// The drawing subcommands of ohm: classify, layouts and xdata. Each reads a
// DXF file, asks the library, prints to `out` (text, or JSON with `json`),
// and gives its exit status; bad input throws CommandError.
#pragma once

#include <optional>
#include <ostream>
#include <string>

// Every block reference and table, in model space, paper space and block
// definitions, with handle, place, block name and kind; with `kind` (a kind's
// name or number), those the library's block query gives for that kind.
int RunClassify(const std::string& file, const std::optional<std::string>& kind, bool json, std::ostream& out);
// The paper space layouts in tab order.
int RunLayouts(const std::string& file, bool json, std::ostream& out);
// The xdata of the object with `handle`, of every application or of `app`;
// 1 when it has none.
int RunXData(const std::string& file, const std::string& handle, const std::optional<std::string>& app, bool json,
             std::ostream& out);
