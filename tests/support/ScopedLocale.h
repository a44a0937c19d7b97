// Names the user's locale for the length of a test: sets LC_ALL (which the
// locale stand-ins read at each call) and puts the old value back after.
#pragma once

#include <stdlib.h>

#include <optional>
#include <string>

class ScopedLocale {
 public:
  explicit ScopedLocale(const char* name) {
    if (const char* old = ::getenv("LC_ALL")) mOld = old;
    ::setenv("LC_ALL", name, 1);
  }
  ~ScopedLocale() {
    if (mOld) {
      ::setenv("LC_ALL", mOld->c_str(), 1);
    } else {
      ::unsetenv("LC_ALL");
    }
  }
  ScopedLocale(const ScopedLocale&) = delete;
  ScopedLocale& operator=(const ScopedLocale&) = delete;

 private:
  std::optional<std::string> mOld;
};
