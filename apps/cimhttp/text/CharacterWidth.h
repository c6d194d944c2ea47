#pragma once

#include <cstddef>

namespace cimhttp {

/// The columns that a character takes on a terminal: 2 for East Asian wide characters and most emoji, 0 for combining
/// marks and other characters that show nothing by themselves, 1 for all others. Does not depend on the locale.
std::size_t CharacterWidth(char32_t character);

} // namespace cimhttp
