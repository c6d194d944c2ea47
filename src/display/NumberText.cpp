#include "display/NumberText.h"

#include <array>

namespace NQORVYX20 {

std::string NumberText(Fraction::TNumber number, int decimals) {
    std::array<char, 64> text; // 2^128 has 39 digits; more decimals than that are zeros
    char* const end = text.data() + text.size();
    char* begin = end;
    for (int place = 0; number != 0 || place <= decimals; ++place) {
        if (place == decimals && decimals > 0) {
            *--begin = '.';
        }
        const Fraction::TNumber tens = Fraction::Quotient(number, 10);
        *--begin = static_cast<char>('0' + static_cast<int>(number - tens * 10));
        number = tens;
    }
    return {begin, end};
}

} // namespace NQORVYX20
