#pragma once

#include "display/Fraction.h"

#include <array>
#include <string>
#include <string_view>

namespace NQORVYX20 {

/// For powers of 1000 from 1 on, of 1024, and of 1/1000.
constexpr std::array<std::string_view, 7> kLargePrefixes{"", "k", "M", "G", "T", "P", "E"};
constexpr std::array<std::string_view, 7> kBinaryPrefixes{"", "Ki", "Mi", "Gi", "Ti", "Pi", "Ei"};
constexpr std::array<std::string_view, 5> kSmallPrefixes{"", "m", "µ", "n", "p"};

/// A number with the largest prefix that leaves it at least 1, in steps of 1000 or of 1024: exact where four digits
/// will do, with that prefix or, of 1024s, with a smaller one; otherwise with one decimal place.
std::string PrefixedText(const Fraction& number, unsigned step, const std::string& symbol);

/// A number without prefix: whole, exact with four digits at most, or with one decimal place.
std::string PlainText(const Fraction& number);

/// A number's text followed by its unit; the text alone for an empty symbol.
std::string WithUnit(std::string number, std::string_view prefix, const std::string& symbol);

} // namespace NQORVYX20
