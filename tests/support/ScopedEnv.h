// An environment variable set for the length of a scope (a test or part of
// one) and put back as it was after: the locale stand-ins read LC_ALL, the
// temporary folder TMPDIR, the tool its registry store, at each call.
#pragma once

#include <stdlib.h>

#include <optional>
#include <string>

class ScopedEnv {
 public:
  ScopedEnv(const char* name, const std::string& value) : mName(name) {
    if (const char* old = ::getenv(name)) mOld = old;
    ::setenv(name, value.c_str(), 1);
  }
  ~ScopedEnv() { mOld ? ::setenv(mName, mOld->c_str(), 1) : ::unsetenv(mName); }
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;

 private:
  const char* mName;
  std::optional<std::string> mOld;
};
