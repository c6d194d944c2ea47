#pragma once

#include "host/TCIMValue.h"

#include <string>

namespace cimhttp {

/// The value of a key in a path, which holds no types, as one of the type that its class declares; as it is where it is
/// none.
NQORVYX20::TCIMValue TypedKey(const NQORVYX20::TCIMValue& value, NQORVYX20::TCIMValue::TCIMType type);

/// A key that a user writes as it stands in a path; null where there may be several ways to write it.
NQORVYX20::TCIMValue WrittenKey(const std::string& text, NQORVYX20::TCIMValue::TCIMType type);

} // namespace cimhttp
