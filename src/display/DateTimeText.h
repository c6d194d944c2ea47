#pragma once

#include <string>

namespace NQORVYX20 {

/// A date-time as people write it: a time stamp in its own offset, `2026-11-21 08:39:00 +01:00`, and an interval as a
/// span, `2 d 03:04:05` or `30 s`. Of one with asterisks, the fields that are given: `2 d 03:04`. Where they are not
/// the largest ones, or have only some of their digits, the 25 characters.
std::string DateTimeText(const std::string& characters);

} // namespace NQORVYX20
