#include "text/Unguessable.h"

#include <iomanip>
#include <random>
#include <sstream>

namespace cimhttp {

std::string UnguessableText() {
    constexpr int kParts = 4;
    constexpr int kDigits = 8; // of each part
    std::random_device random;
    std::ostringstream text;
    text << std::hex << std::setfill('0');
    for (int i = 0; i < kParts; ++i) {
        text << std::setw(kDigits) << random();
    }
    return text.str();
}

} // namespace cimhttp
