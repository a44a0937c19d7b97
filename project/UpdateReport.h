// The cross-reference report of a project update as one self-contained HTML
// page, the list a panel builder prints: every coil with its contacts, sheet
// by sheet, each contact's place and kind, and the problems found.
#pragma once

#include <string>

#include "project/ProjectUpdate.h"

std::string HtmlReport(const ProjectUpdateResult& result);

// A handle as drawings show it: upper-case hexadecimal digits.
std::string HandleText(std::uint64_t handle);
