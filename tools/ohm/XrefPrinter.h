// The two forms of `ohm xref` output: text for a person, JSON for other
// programs. Texts are shown quoted with JSON escapes, so that a leading
// blank or a "%%u" underline code is seen as it is.
#pragma once

#include <ostream>
#include <vector>

#include "XrefReport.h"

void PrintXrefText(std::ostream& out, const std::vector<EntityReport>& reports);
void PrintXrefJson(std::ostream& out, const std::vector<EntityReport>& reports);
