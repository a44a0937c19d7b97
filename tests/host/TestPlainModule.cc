// A module with code and no resources at all, for the version tests: a file
// that loads but has no version block.
extern "C" __attribute__((visibility("default"))) int OhmTestPlainModuleAnswer() { return 42; }
