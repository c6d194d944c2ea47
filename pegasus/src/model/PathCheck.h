#pragma once

#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Exception.h>

namespace Pegasus {
inline namespace bundled {
namespace detail {

/// Throws TypeMismatchException unless the path is one of the class.
inline void checkClass(const CIMObjectPath& path, const CIMName& className) {
    if (path.getClassName() != className) {
        throw TypeMismatchException(String("the path ") + path.toString() + String(" is not of the class ") +
                                    className.getString());
    }
}

} // namespace detail
} // namespace bundled
} // namespace Pegasus
