#pragma once

#include <string>

namespace NQORVYX20 {

/// A text from outside as a line of the log shows it: a question mark stands for each byte that is not printable ASCII,
/// and three dots for what is too long for a line.
std::string PrintableText(const std::string& text);

} // namespace NQORVYX20
