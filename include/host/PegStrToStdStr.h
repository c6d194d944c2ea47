#pragma once

#include <string>

namespace Pegasus {
class String;
}

namespace NQORVYX20 {

/// The UTF-8 form of a string of the remote client library.
std::string PegStrToStdStr(Pegasus::String text);

} // namespace NQORVYX20
