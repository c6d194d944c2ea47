#include "support/LoopbackAddress.h"

#include <unistd.h>

namespace support {

std::string LoopbackAddress() {
    // A process ID has 22 bits; bit 7 of the first part keeps clear of 127.0.0.x, where real services listen.
    const auto id = static_cast<unsigned>(::getpid());
    return "127." + std::to_string(128U | ((id >> 16U) & 0x7fU)) + '.' + std::to_string((id >> 8U) & 0xffU) + '.' +
           std::to_string(id & 0xffU);
}

} // namespace support
