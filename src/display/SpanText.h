#pragma once

#include "display/Fraction.h"

#include <string>

namespace NQORVYX20 {

/// A span of time in seconds as people write it: `250 ms`, `30 s`, `3 min`, `5 h`, `00:01:30`, `2 d 03:04:05`. Parts of
/// a second have one decimal place in the longer forms.
std::string SpanText(const Fraction& seconds);

/// A span made of its parts, with as many digits of the second's fraction as are given.
std::string ClockText(std::uint64_t days, unsigned hours, unsigned minutes, unsigned seconds,
                      const std::string& fraction);

} // namespace NQORVYX20
