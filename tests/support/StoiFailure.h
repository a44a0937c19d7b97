// What a call raises where the library reads numbers as std::stoi does:
// "invalid" for std::invalid_argument, "out of range" for std::out_of_range,
// each with the standard text checked; "none" when it raises nothing.
#pragma once

#include <stdexcept>
#include <string>

template <class Call>
std::string StoiFailure(Call call) {
  try {
    call();
  } catch (const std::out_of_range& e) {
    return e.what() == std::string("stoi argument out of range") ? "out of range" : e.what();
  } catch (const std::invalid_argument& e) {
    return e.what() == std::string("invalid stoi argument") ? "invalid" : e.what();
  }
  return "none";
}
