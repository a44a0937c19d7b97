// Text helpers of the cross-reference tests that check the library against
// plain forms of its rules: random texts over a chosen alphabet, and the
// upper-case copy that folds a-z only.
#pragma once

#include <cstddef>
#include <random>
#include <string>

namespace xref_test {

// Up to maxLength units, each drawn from the alphabet.
inline std::u16string RandomText(std::mt19937& rng, const std::u16string& alphabet, std::size_t maxLength) {
  std::u16string text(rng() % (maxLength + 1), u' ');
  for (char16_t& unit : text) unit = alphabet[rng() % alphabet.size()];
  return text;
}

// a-z become A-Z; every other unit stays.
inline std::u16string Upper(std::u16string text) {
  for (char16_t& unit : text)
    if (unit >= u'a' && unit <= u'z') unit = static_cast<char16_t>(unit - 32);
  return text;
}

}  // namespace xref_test
