#include "provider/HostName.h"

#include "convert/LetterCase.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

namespace NQORVYX20 {

namespace {

std::string AddressText(int family, const void* address) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    return ::inet_ntop(family, address, text.data(), text.size()) == nullptr ? std::string() : text.data();
}

/// The text of an address, which may be given in any of its forms, such as 0x7f.1; empty for what is none.
std::optional<std::string> NormalAddress(const std::string& text) {
    in_addr four{};
    if (::inet_aton(text.c_str(), &four) != 0) {
        return AddressText(AF_INET, &four);
    }
    in6_addr six{};
    if (::inet_pton(AF_INET6, text.c_str(), &six) != 1) {
        return std::nullopt;
    }
    if (IN6_IS_ADDR_V4MAPPED(&six) != 0) {
        constexpr std::size_t kPrefix = 12;
        return AddressText(AF_INET, &six.s6_addr[kPrefix]);
    }
    return AddressText(AF_INET6, &six);
}

std::string WithoutBrackets(const std::string& host) {
    const bool isBracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
    return isBracketed ? host.substr(1, host.size() - 2) : host;
}

} // namespace

std::string NormalHost(const std::string& host) {
    std::string normal = LowerCase(WithoutBrackets(host.empty() ? "localhost" : host));
    normal.erase(normal.find_last_not_of('.') + 1);
    return NormalAddress(normal.substr(0, normal.find('%'))).value_or(normal);
}

bool IsPlainHost(const std::string& host) {
    constexpr char kDelete = 0x7f;
    return std::none_of(host.begin(), host.end(), [](char character) {
        return (character >= 0 && character <= ' ') || character == kDelete || character == '\\';
    });
}

} // namespace NQORVYX20
