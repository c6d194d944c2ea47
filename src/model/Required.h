#pragma once

#include "host/TVYXException.h"

#include <boost/shared_ptr.hpp>

namespace NQORVYX20 {

/// What a pointer refers to that a caller must not leave empty. Where assertions are on, an empty one ends in the
/// pointer's own assertion, otherwise in TVYXException with this code.
template <typename T>
T& Required(const boost::shared_ptr<T>& pointer, TVYXStatusCode::EStatusCode code) {
    T* const object = pointer.operator->(); // asserts
    if (object == nullptr) {
        throw TVYXException(code);
    }
    return *object;
}

} // namespace NQORVYX20
