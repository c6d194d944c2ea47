#pragma once

#include <string>

namespace support {

/// An address of 127.0.0.0/8 that no other running process has, so that test processes can listen on the same ports
/// side by side.
std::string LoopbackAddress();

/// One more such address.
std::string SecondLoopbackAddress();

} // namespace support
