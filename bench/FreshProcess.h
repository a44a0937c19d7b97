// Peak memory of work done in a fresh process. A benchmark program runs
// itself again with a request in an environment variable; the child does the
// work and prints what it measured, its high-water mark first. A fresh
// process, since the benchmark's own keeps the freed memory of the runs
// before it; the child's own high-water mark, since the rusage of a child
// counts what it was before exec.
#pragma once

#include <string>

// The high-water mark of this process's resident memory, in kilobytes.
long HighWaterKilobytes();

// This process's resident memory now, in kilobytes.
long ResidentKilobytes();

// Runs this program again with `variable` set to `request` and returns what
// it printed on standard output; empty when it could not run.
std::string RunSelf(const char* variable, const std::string& request);
