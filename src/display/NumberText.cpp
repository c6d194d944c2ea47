#include "display/NumberText.h"

#include <algorithm>

namespace NQORVYX20 {

std::string NumberText(Fraction::TNumber number, int decimals) {
    std::string reversed;
    for (int place = 0; number != 0 || place <= decimals; ++place) {
        if (place == decimals && decimals > 0) {
            reversed += '.';
        }
        reversed += static_cast<char>('0' + static_cast<int>(number % 10));
        number /= 10;
    }
    std::reverse(reversed.begin(), reversed.end());
    return reversed;
}

} // namespace NQORVYX20
