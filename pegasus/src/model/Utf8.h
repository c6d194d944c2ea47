#pragma once

#include <Pegasus/Common/Config.h>

#include <string>

namespace Pegasus::detail {

/// Appends a code point as UTF-8.
inline void appendUtf8(Uint32 codePoint, std::string& out) {
    const auto put = [&](Uint32 byte) { out += static_cast<char>(byte); };
    const auto putContinuation = [&](unsigned shift) { put(0x80U | (codePoint >> shift & 0x3FU)); };
    if (codePoint < 0x80) {
        put(codePoint);
    } else if (codePoint < 0x800) {
        put(0xC0U | codePoint >> 6U);
        putContinuation(0);
    } else if (codePoint < 0x10000) {
        put(0xE0U | codePoint >> 12U);
        putContinuation(6);
        putContinuation(0);
    } else {
        put(0xF0U | codePoint >> 18U);
        putContinuation(12);
        putContinuation(6);
        putContinuation(0);
    }
}

} // namespace Pegasus::detail
