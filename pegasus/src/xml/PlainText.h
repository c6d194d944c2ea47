#pragma once

#include "xml/ByteSet.h"

#include <cstddef>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Pegasus::xml {

/// The first byte of an element's text that does not stand for itself: '<', '&', or a carriage return. `end` when there
/// is none.
inline const char* findSpecial(const char* at, const char* end) noexcept {
#ifdef __SSE2__
    constexpr std::ptrdiff_t kBlock = sizeof(__m128i);
    for (; end - at >= kBlock; at += kBlock) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        const auto where = [&](char c) { return _mm_cmpeq_epi8(block, _mm_set1_epi8(c)); };
        const int found = _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(where('<'), where('&')), where('\r')));
        if (found != 0) {
            return at + __builtin_ctz(static_cast<unsigned>(found));
        }
    }
#endif
    static constexpr ByteSet kSpecial("<&\r");
    return kSpecial.findFirst(at, end);
}

} // namespace Pegasus::xml
