#pragma once

#include "host/TCIMReference.h"

#include <string>

namespace cimhttp {

/// Without keys, a reference is to a class.
inline bool HasKeys(const NQORVYX20::TCIMReference& reference) {
    bool hasKeys = false;
    reference.EnumerateKeyValues([&](const std::string&, const NQORVYX20::TCIMValue&) {
        hasKeys = true;
        return false;
    });
    return hasKeys;
}

} // namespace cimhttp
