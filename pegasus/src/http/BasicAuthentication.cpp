#include "http/BasicAuthentication.h"

#include "text/Ascii.h"

#include <boost/archive/iterators/base64_from_binary.hpp>
#include <boost/archive/iterators/transform_width.hpp>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Pegasus::http {

namespace {

/// Turns bytes into the characters that stand for six bits each.
using Base64 =
    boost::archive::iterators::base64_from_binary<boost::archive::iterators::transform_width<const char*, 6, 8>>;

/// Takes the part up to the next comma outside quotes from the front of a list.
std::string_view takeElement(std::string_view& list) {
    bool quoted = false;
    std::size_t end = 0;
    for (; end < list.size() && (quoted || list[end] != ','); ++end) {
        if (list[end] == '"') {
            quoted = !quoted;
        } else if (quoted && list[end] == '\\') {
            ++end;
        }
    }
    end = std::min(end, list.size());
    const std::string_view element = list.substr(0, end);
    list.remove_prefix(std::min(end + 1, list.size()));
    return element;
}

std::string_view firstWord(std::string_view text) {
    const std::size_t begin = std::min(text.find_first_not_of(" \t"), text.size());
    const std::size_t end = std::min(text.find_first_of(" \t", begin), text.size());
    return text.substr(begin, end - begin);
}

/// Calls for each element of the challenges until one returns true. A challenge is a scheme followed by parameters, and
/// both challenges and parameters are separated by commas.
template <typename Visit>
bool anyElement(const std::vector<std::string_view>& answers, Visit visit) {
    for (std::string_view challenges : answers) {
        while (!challenges.empty()) {
            if (visit(takeElement(challenges))) {
                return true;
            }
        }
    }
    return false;
}

/// The scheme with which an element begins; empty for one that is a parameter of the scheme before it.
std::string_view schemeOf(std::string_view element) {
    const std::string_view word = firstWord(element);
    const std::string_view rest = element.substr(static_cast<std::size_t>(word.data() - element.data()) + word.size());
    const bool isWord = std::all_of(
        word.begin(), word.end(), [](char c) { return text::isLetter(c) || text::isDigit(c) || c == '-' || c == '_'; });
    const std::string_view next = firstWord(rest);
    return isWord && next.substr(0, 1) != "=" ? word : std::string_view();
}

} // namespace

bool takesBasicAuthentication(const HttpFields& fields) {
    const auto answers = fields.findAll("WWW-Authenticate");
    return answers.empty() || anyElement(answers, [](std::string_view element) {
               return text::equalIgnoringCase(firstWord(element), "Basic");
           });
}

std::string offeredSchemes(const HttpFields& fields) {
    constexpr std::size_t kLongest = 100;
    std::string schemes;
    anyElement(fields.findAll("WWW-Authenticate"), [&](std::string_view element) {
        if (const std::string_view scheme = schemeOf(element); !scheme.empty()) {
            schemes.append(schemes.empty() ? "" : ", ").append(scheme);
        }
        return schemes.size() > kLongest;
    });
    return schemes.substr(0, kLongest);
}

std::string basicAuthorization(std::string_view user, std::string_view password) {
    const std::string plain = std::string(user).append(":").append(password);
    const char* const begin = plain.data();
    std::string encoded(Base64(begin), Base64(begin + plain.size()));
    encoded.resize((encoded.size() + 3) / 4 * 4, '='); // four characters for three bytes
    return "Basic " + encoded;
}

} // namespace Pegasus::http
