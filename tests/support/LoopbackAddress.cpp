#include "support/LoopbackAddress.h"

#include <unistd.h>

namespace support {

namespace {

/// A process ID has 22 bits, which leaves two: one keeps clear of 127.0.0.x, where real services listen.
constexpr unsigned kFirst = 0x80;
constexpr unsigned kSecond = 0xc0;

std::string AddressOfProcess(unsigned highBits) {
    const auto id = static_cast<unsigned>(::getpid());
    return "127." + std::to_string(highBits | ((id >> 16U) & 0x3fU)) + '.' + std::to_string((id >> 8U) & 0xffU) + '.' +
           std::to_string(id & 0xffU);
}

} // namespace

std::string LoopbackAddress() { return AddressOfProcess(kFirst); }

std::string SecondLoopbackAddress() { return AddressOfProcess(kSecond); }

} // namespace support
