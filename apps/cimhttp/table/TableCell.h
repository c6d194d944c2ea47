#pragma once

#include <string>
#include <string_view>

namespace cimhttp {

/// What stands for null among texts for people: an en dash.
constexpr const char* kNullText = "–";

/// What a table or a list is to show at one place. Nothing in the text is trusted: what shows it makes it safe.
struct TableCell {
    std::string_view text;
    bool isNull = false; ///< kNullText is shown in the place of the text

    /// The whole text, safe to show.
    std::string Whole() const;

    /// As much of it as a table shows: a text of more than 64 KiB is cut off, with a mark that says how much is
    /// missing.
    std::string Front() const;

    /// True for a text that Front() cuts off.
    bool IsTooLong() const;
};

} // namespace cimhttp
