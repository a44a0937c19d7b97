#include "CommandError.h"

void FailBadInput(const std::string& message) { throw CommandError(kExitBadInput, message); }

void FailOperation(const std::string& message) { throw CommandError(kExitFailed, message); }
