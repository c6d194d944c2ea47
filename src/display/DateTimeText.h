#pragma once

#include <string>
#include <string_view>

namespace NQORVYX20 {

/// Appends a date-time as people write it: a time stamp in its own offset, `2026-11-21 08:39:00 +01:00`, and an
/// interval as a span, `2 d 03:04:05` or `30 s`. Of one with asterisks, the fields that are given: `2 d 03:04`. Where
/// they are not the largest ones, or have only some of their digits, the 25 characters.
void AppendDateTimeText(std::string_view characters, std::string& text);

} // namespace NQORVYX20
