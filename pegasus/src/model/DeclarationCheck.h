#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Exception.h>

namespace Pegasus {
inline namespace bundled {
namespace detail {

/// Throws TypeMismatchException for a size without an array, and for a class without a reference.
inline void checkDeclaration(const CIMName& name, CIMType type, Boolean isArray, Uint32 arraySize,
                             const CIMName& referenceClass) {
    if (arraySize != 0 && !isArray) {
        throw TypeMismatchException(name.getString() + String(" has the size of an array and is none"));
    }
    if (!referenceClass.isNull() && type != CIMTYPE_REFERENCE) {
        throw TypeMismatchException(name.getString() + String(" has the class of a reference and is none"));
    }
}

} // namespace detail
} // namespace bundled
} // namespace Pegasus
