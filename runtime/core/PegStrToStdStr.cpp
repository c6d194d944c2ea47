#include "host/PegStrToStdStr.h"

#include <Pegasus/Common/String.h>

namespace NQORVYX20 {

std::string PegStrToStdStr(Pegasus::String text) {
    const auto utf8 = text.getCString();
    return std::string(static_cast<const char*>(utf8));
}

} // namespace NQORVYX20
