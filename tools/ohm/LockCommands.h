// The drawing lock subcommands of ohm, through the library's Lisp bridge:
// the host takes a lock file beside each drawing, held by this process. So
// a lock lasts as long as the ohm process that took it: `lock` either checks
// (and gives back at once) or holds the locks while it runs a command.
#pragma once

#include <string>
#include <vector>

// Takes the locks of `drawings` (all or none with `allOrNone`; only checks
// with `checkOnly`), prints each drawing with "locked", "available" or "not
// available", then runs `command` (if any) while holding them and releases
// them. 0 when every drawing was had (and the command's status, when one
// ran); 1 when some drawing couldn't be had (the command isn't run).
int RunLock(const std::vector<std::string>& drawings, bool checkOnly, bool allOrNone,
            const std::vector<std::string>& command);
// Releases the locks this process holds of `drawings` and prints those it
// didn't hold, with "not held by this process". 0 when all were released.
int RunUnlock(const std::vector<std::string>& drawings);
