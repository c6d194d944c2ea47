#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Pegasus::cimxml {

/// The code point that a reference stands for, given without its '&' and ';': one of XML's five entities, or a
/// character in base 10 or 16. Nothing for every other text, and for characters that XML does not allow.
std::optional<std::uint32_t> codePointOf(std::string_view reference) noexcept;

/// Where characters stand in a document.
enum class TextPlace { Content, CData, AttributeValue };

/// What the characters at `raw` stand for: references resolved, every line end a '\n', white space in an attribute's
/// value blanks (XML 1.0, 2.11 and 3.3.3). Overwrites them with it; it is never longer. The references are known ones,
/// each with its ';'.
std::string_view resolveText(char* raw, std::size_t size, TextPlace place) noexcept;

} // namespace Pegasus::cimxml
