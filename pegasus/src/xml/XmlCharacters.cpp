#include "xml/XmlCharacters.h"

#include "text/Hexadecimal.h"
#include "text/Utf8.h"

#include <algorithm>
#include <cstddef>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Pegasus::xml {

namespace {

constexpr std::size_t kBlock = 64;

/// Whether a whole block is ASCII and needs no closer look.
bool isPlainBlock(const char* block) noexcept {
#ifdef __SSE2__
    const auto part = [&](std::size_t i) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(block) + i); };
    const __m128i least = _mm_min_epu8(_mm_min_epu8(part(0), part(1)), _mm_min_epu8(part(2), part(3)));
    const __m128i ored = _mm_or_si128(_mm_or_si128(part(0), part(1)), _mm_or_si128(part(2), part(3)));
    const __m128i isNull = _mm_cmpeq_epi8(least, _mm_setzero_si128());
    return _mm_movemask_epi8(_mm_or_si128(ored, isNull)) == 0; // the highest bit of each byte
#else
    return std::all_of(block, block + kBlock, [](char c) { return c > 0 && c <= '\x7F'; });
#endif
}

} // namespace

bool isAcceptedCharacter(std::uint32_t codePoint) noexcept {
    return (codePoint != 0 && codePoint < 0xD800) || (codePoint > 0xDFFF && codePoint < 0xFFFE) ||
           (codePoint > 0xFFFF && codePoint < 0x110000);
}

std::size_t lengthOfCharacters(std::string_view text) noexcept {
    std::string_view rest = text;
    while (!rest.empty()) {
        if (rest.size() >= kBlock && isPlainBlock(rest.data())) {
            rest.remove_prefix(kBlock);
            continue;
        }
        const text::Utf8Character first = text::firstCharacter(rest);
        if (first.length == 0 || !isAcceptedCharacter(first.codePoint)) {
            break;
        }
        rest.remove_prefix(first.length);
    }
    return text.size() - rest.size();
}

std::string codePointText(std::uint32_t codePoint) {
    std::string text = "U+";
    for (unsigned shift = codePoint > 0xFFFFF ? 20 : codePoint > 0xFFFF ? 16 : 12;; shift -= 4) {
        text += text::hexDigit(codePoint >> shift & 0xFU);
        if (shift == 0) {
            return text;
        }
    }
}

} // namespace Pegasus::xml
