// The canned database library: raw data 234 is a small, empty project
// database that the suite writes out to check that a database engine works.
#include "ResourceVersion.h"

namespace {

// An SQLite file, made at build time.
constexpr unsigned char kCannedDatabase[] = {
#include "OhmCannedDatabase.inc"
};

}  // namespace

extern "C" const ResourceEntry OhmResourceDirectory[] = {
    {RT_RCDATA_ID, 234, kCannedDatabase, sizeof(kCannedDatabase)},
    kVersionResource,
    {0, 0, nullptr, 0},
};
