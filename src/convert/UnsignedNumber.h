#pragma once

#include "host/TCIMValue.h"

#include <cstdint>
#include <optional>

namespace NQORVYX20 {

/// The number that a value of an unsigned integer type holds; nothing for null and for a value of another type.
inline std::optional<std::uint64_t> UnsignedNumber(const TCIMValue& value) {
    using ECIMType = TCIMValue::TCIMType::ECIMType;
    if (value.IsNull()) {
        return std::nullopt;
    }
    switch (value.GetType()) {
    case ECIMType::eCIMUint8:
        return static_cast<unsigned char>(value);
    case ECIMType::eCIMUint16:
        return static_cast<unsigned short>(value);
    case ECIMType::eCIMUint32:
        return static_cast<unsigned int>(value);
    case ECIMType::eCIMUint64:
        return static_cast<unsigned long long>(value);
    default:
        return std::nullopt;
    }
}

} // namespace NQORVYX20
