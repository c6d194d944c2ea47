#include "xml/XmlReference.h"

#include "xml/DecodingError.h"

#include <array>
#include <charconv>
#include <optional>
#include <system_error>
#include <utility>

namespace Pegasus::xml {

namespace {

std::optional<std::uint32_t> characterIn(std::string_view digits, int base) {
    std::uint32_t codePoint = 0;
    const char* const end = digits.data() + digits.size();
    const auto [last, error] = std::from_chars(digits.data(), end, codePoint, base);
    if (error != std::errc() || last != end) {
        return std::nullopt;
    }
    return codePoint;
}

std::optional<std::uint32_t> characterNamed(std::string_view name) noexcept {
    constexpr std::array<std::pair<std::string_view, char>, 5> kEntities = {
        {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};
    for (const auto& [entity, character] : kEntities) {
        if (name == entity) {
            return static_cast<unsigned char>(character);
        }
    }
    return std::nullopt;
}

} // namespace

std::uint32_t characterOf(std::string_view reference) {
    const std::string_view name = reference.substr(1, reference.size() - 2);
    const auto character = name.substr(0, 2) == "#x"  ? characterIn(name.substr(2), 16)
                           : name.substr(0, 1) == "#" ? characterIn(name.substr(1), 10)
                                                      : characterNamed(name);
    if (!character) {
        throwMalformed({"it has the unknown reference ", reference});
    }
    return *character;
}

} // namespace Pegasus::xml
