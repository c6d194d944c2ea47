#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace Pegasus::xml {

/// What is wrong with a text. Never leaves the library: whoever knows the text as a whole says where the mistake is,
/// and throws the API's exception.
struct DecodingError {
    enum class Kind {
        Content,    ///< what the element that was entered last says is not accepted; its XML is in order
        Incomplete, ///< an element that has just ended lacks something
        Malformed,  ///< it is no XML where it is read
        Limit       ///< it passes a limit of this library
    };

    Kind kind;
    std::string what;
    /// The text that is no value, as it was sent, cut; nothing where the mistake is not in such a text.
    std::optional<std::string> value;
};

/// The most of a text that a message shows where that is XML, or what should be.
constexpr std::size_t kLongestExcerpt = 60;

// Each throws a DecodingError with a text put together from `parts`. Long parts are cut: they come from the peer.

[[noreturn]] void throwBadContent(std::initializer_list<std::string_view> parts);
[[noreturn]] void throwIncomplete(std::initializer_list<std::string_view> parts);
[[noreturn]] void throwMalformed(std::initializer_list<std::string_view> parts);
[[noreturn]] void throwPastLimit(std::initializer_list<std::string_view> parts);

/// Throws a DecodingError for a text that is no value: says so, and shows it.
[[noreturn]] void throwBadValue(std::string_view what, std::string_view value);

} // namespace Pegasus::xml
