#include "http/Endpoint.h"

#include <arpa/inet.h>

#include <utility>

namespace Pegasus::http {

namespace {

bool isLiteral(int family, const std::string& host) {
    in6_addr ignored{};
    // A zone ("%eth0") names the interface of a link-local address and is no part of it.
    return ::inet_pton(family, host.substr(0, host.find('%')).c_str(), &ignored) == 1;
}

std::string withoutBrackets(std::string host) {
    const bool bracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
    return bracketed ? host.substr(1, host.size() - 2) : host;
}

} // namespace

Endpoint::Endpoint(std::string host, Uint32 port)
    : host_(host.empty() ? "localhost" : withoutBrackets(std::move(host))), port_(port) {}

bool Endpoint::isAddressLiteral() const { return isLiteral(AF_INET, host_) || isLiteral(AF_INET6, host_); }

std::string Endpoint::text() const {
    const std::string name = isLiteral(AF_INET6, host_) ? '[' + host_ + ']' : host_;
    return name + ':' + std::to_string(port_);
}

} // namespace Pegasus::http
