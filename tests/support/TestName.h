// The name of a parameterised test's case made from its description: every
// unit that GoogleTest doesn't allow in a name becomes '_'.
#pragma once

#include <cctype>
#include <string>

inline std::string TestName(std::string what) {
  for (char& c : what) c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
  return what;
}
