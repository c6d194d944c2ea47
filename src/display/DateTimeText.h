#pragma once

#include <string>

namespace NQORVYX20 {

/// A date-time as people write it: a time stamp in its own offset, `2026-11-21 08:39:00 +01:00`, and an interval as a
/// span, `2 d 03:04:05` or `30 s`. Of one with asterisks, what is given: `2 d 03:04`. Where a larger field is missing
/// that a smaller one has, or the other way round makes no sense, the 25 characters.
std::string DateTimeText(const std::string& characters);

} // namespace NQORVYX20
