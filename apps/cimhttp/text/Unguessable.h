#pragma once

#include <string>

namespace cimhttp {

/// 32 hexadecimal digits that nobody guesses, others each time.
std::string UnguessableText();

} // namespace cimhttp
