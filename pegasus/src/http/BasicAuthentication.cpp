#include "http/BasicAuthentication.h"

#include <algorithm>
#include <cstddef>
#include <openssl/evp.h>

namespace Pegasus::http {

namespace {

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

} // namespace

bool offersBasicAuthentication(const HttpFields& fields) {
    // A challenge is a scheme followed by parameters, and both challenges and parameters are separated by commas.
    for (std::string_view challenges : fields.findAll("WWW-Authenticate")) {
        while (!challenges.empty()) {
            if (equalsNoCase(firstWord(takeElement(challenges)), "Basic")) {
                return true;
            }
        }
    }
    return false;
}

std::string basicAuthorization(std::string_view user, std::string_view password) {
    const std::string plain = std::string(user).append(":").append(password);
    std::string encoded((plain.size() + 2) / 3 * 4 + 1, '\0'); // four characters for three bytes, and a final null
    const int size =
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(encoded.data()),
                        reinterpret_cast<const unsigned char*>(plain.data()), static_cast<int>(plain.size()));
    encoded.resize(static_cast<std::size_t>(size));
    return "Basic " + encoded;
}

} // namespace Pegasus::http
