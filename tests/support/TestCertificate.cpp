#include "support/TestCertificate.h"

#include "support/IssuedCertificate.h"

#include <arpa/inet.h>

#include <filesystem>

namespace support {

namespace {

std::string AlternativeNames(const TestCertificate::Options& options) {
    std::string names;
    for (const std::string& name : options.dns_names) {
        names += (names.empty() ? "DNS:" : ",DNS:") + name;
    }
    for (const std::string& address : options.ip_addresses) {
        names += (names.empty() ? "IP:" : ",IP:") + address;
    }
    return names;
}

IssuedCertificate::Options ServerOptions(const TestCertificate::Options& options) {
    IssuedCertificate::Options server;
    server.common_name = options.common_name;
    server.extensions = {{"basicConstraints", "CA:FALSE"}};
    if (const std::string names = AlternativeNames(options); !names.empty()) {
        server.extensions.emplace_back("subjectAltName", names);
    }
    server.valid_from_day = options.not_yet_valid ? 1 : -2;
    server.valid_until_day = options.expired ? -1 : 2;
    return server;
}

bool IsAddress(const std::string& text) {
    in6_addr ignored{};
    return ::inet_pton(AF_INET, text.c_str(), &ignored) == 1 || ::inet_pton(AF_INET6, text.c_str(), &ignored) == 1;
}

} // namespace

TestCertificate::Options TestCertificate::For(const std::string& host_or_address) {
    Options options;
    (IsAddress(host_or_address) ? options.ip_addresses : options.dns_names).push_back(host_or_address);
    return options;
}

TestCertificate::TestCertificate(const Options& options) {
    const IssuedCertificate authority(IssuedCertificate::Authority("cimhttp test authority"));
    const IssuedCertificate server = options.self_signed ? IssuedCertificate(ServerOptions(options))
                                                         : IssuedCertificate(ServerOptions(options), authority);
    directory_.WriteFile("ca.pem", authority.Pem());
    directory_.WriteFile("server.pem", server.Pem());
    directory_.WriteFile("server.key", server.KeyPem());
    std::filesystem::create_directory(CaDirectory());
    directory_.WriteFile("hashed/" + authority.HashedName(), authority.Pem());
}

} // namespace support
