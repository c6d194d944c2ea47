#pragma once

#include "host/TCIMValue.h"

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>

namespace NQORVYX20 {

/// The number that a value of a signed integer type holds, read from its text, since that is the operation that every
/// host has. Nothing for a value that is no such number.
inline std::optional<std::int64_t> SignedNumber(const TCIMValue& value) {
    constexpr unsigned char kDecimal = 10;
    const std::string text = value.ToString(kDecimal);
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number);
    return parsed.ec == std::errc() && parsed.ptr == end ? std::optional(number) : std::nullopt;
}

} // namespace NQORVYX20
