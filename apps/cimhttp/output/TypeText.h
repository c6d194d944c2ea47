#pragma once

#include "host/TCIMValue.h"

#include <string>

namespace cimhttp {

/// That of the elements of an array; of another value, its own.
NQORVYX20::TCIMValue::TCIMType::ECIMType ElementType(NQORVYX20::TCIMValue::TCIMType type);

/// `uint16`, for an array `uint16[]`.
std::string TypeText(NQORVYX20::TCIMValue::TCIMType type);

/// `uint16`, for an array of it too.
std::string ElementTypeText(NQORVYX20::TCIMValue::TCIMType type);

} // namespace cimhttp
