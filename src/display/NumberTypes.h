#pragma once

#include "host/TCIMValue.h"

namespace NQORVYX20 {

// Which types of single values are numbers, and of what kind.

inline bool IsUnsigned(TCIMValue::TCIMType::ECIMType type) {
    using ECIMType = TCIMValue::TCIMType::ECIMType;
    return type == ECIMType::eCIMUint8 || type == ECIMType::eCIMUint16 || type == ECIMType::eCIMUint32 ||
           type == ECIMType::eCIMUint64;
}

inline bool IsSigned(TCIMValue::TCIMType::ECIMType type) {
    using ECIMType = TCIMValue::TCIMType::ECIMType;
    return type == ECIMType::eCIMSint8 || type == ECIMType::eCIMSint16 || type == ECIMType::eCIMSint32 ||
           type == ECIMType::eCIMSint64;
}

inline bool IsReal(TCIMValue::TCIMType::ECIMType type) {
    return type == TCIMValue::TCIMType::eCIMReal32 || type == TCIMValue::TCIMType::eCIMReal64;
}

} // namespace NQORVYX20
