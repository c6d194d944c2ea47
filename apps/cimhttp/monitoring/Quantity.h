#pragma once

#include "HostTypes.h"
#include "monitoring/UnitScale.h"

#include <optional>
#include <string>

namespace cimhttp {

/// A number of a server with its unit.
struct Quantity {
    long double number = 0; ///< in `unit`
    UnitScale unit;

    long double InBase() const { return unit.InBase(number); }
};

/// The quantity that an element of a value is, from its text as it is, and from its text for people with the number
/// unscaled: `17179869184 B`, `2300 MHz`, `2350 × 0.01 °C`. Nothing for what is not a finite number.
std::optional<Quantity> QuantityOf(const std::string& plain, const std::string& exact);

/// Whether a property holds numbers, and whether these stand for texts by a value map or by the names of bits.
bool HasNumbers(const NQORVYX20::ICIMPropertyDecl& property);
bool HasValueMap(const NQORVYX20::ICIMPropertyDecl& property);

/// Whether a property only counts up: its qualifier Counter says so.
bool IsCounter(const NQORVYX20::ICIMPropertyDecl& property);

/// A finite number as performance data has it: in decimal, without an exponent.
std::string NumberText(long double number);

} // namespace cimhttp
