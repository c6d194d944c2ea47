#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace Pegasus::xml {

/// What is wrong with a text. Never leaves the library: the caller that knows the whole text adds where the mistake is,
/// and throws the API's exception.
struct DecodingError {
    enum class Kind {
        Content,    ///< the content of the element that was entered last is not accepted; its XML is well-formed
        Incomplete, ///< an element that has just ended lacks something, or is one too many
        Malformed,  ///< the text is not well-formed where it is read
        Limit       ///< it passes a limit of this library
    };

    Kind kind;
    std::string what;
    /// The text of the invalid value, as it was sent, cut; nothing where the mistake is elsewhere.
    std::optional<std::string> value;
};

/// The most of a text that a message shows where that is XML, or what should be.
constexpr std::size_t kLongestExcerpt = 60;

// Each throws a DecodingError with a text put together from `parts`. Long parts are cut: they come from the peer.

[[noreturn]] void throwBadContent(std::initializer_list<std::string_view> parts);
[[noreturn]] void throwIncomplete(std::initializer_list<std::string_view> parts);
[[noreturn]] void throwMalformed(std::initializer_list<std::string_view> parts);
[[noreturn]] void throwPastLimit(std::initializer_list<std::string_view> parts);

/// Throws a DecodingError for the text of an invalid value, which its message shows.
[[noreturn]] void throwBadValue(std::string_view what, std::string_view value);

} // namespace Pegasus::xml
