#pragma once

#include <Pegasus/Common/String.h>

#include <string>

namespace NQORVYX20 {

/// The UTF-8 form of a string of the remote client library.
std::string PegStrToStdStr(Pegasus::String text);

} // namespace NQORVYX20
