#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace Pegasus::cimxml {

/// What is wrong with an answer. Never leaves the module: whoever knows the answer as a whole says where it is and
/// makes the API's exception of it.
struct DecodingError {
    enum class Kind {
        Content,    ///< the element that was entered last is not good CIM-XML; its XML is in order
        Incomplete, ///< an element that has just ended lacks something
        Malformed,  ///< it is no XML where it is read
        Limit       ///< it passes a limit of this library
    };

    Kind kind;
    std::string what;
    /// The text that is no value, as it was sent, cut; nothing where none is at fault.
    std::optional<std::string> value;
};

/// The beginning of a text, of so many bytes or a little less: whole characters.
std::string_view beginningOf(std::string_view text, std::size_t length) noexcept;

/// The most of a text that a message shows where that is XML, or what should be.
constexpr std::size_t kLongestExcerpt = 60;

// Each throws a DecodingError with a text put together from `parts`. Long parts are cut: they come from the peer.

[[noreturn]] void throwXmlError(std::initializer_list<std::string_view> parts);
[[noreturn]] void throwIncomplete(std::initializer_list<std::string_view> parts);
[[noreturn]] void throwMalformed(std::initializer_list<std::string_view> parts);
[[noreturn]] void throwPastLimit(std::initializer_list<std::string_view> parts);

/// For a text that is no value: says so, and shows it.
[[noreturn]] void throwBadValue(std::string_view what, std::string_view value);

} // namespace Pegasus::cimxml
