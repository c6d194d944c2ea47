#include "support/TestCertificate.h"

#include "support/IssuedCertificate.h"

#include <arpa/inet.h>

#include <filesystem>

namespace support {

namespace {

std::string AlternativeNames(const TestCertificate::Options& options) {
    std::string names;
    for (const std::string& name : options.dnsNames) {
        names += (names.empty() ? "DNS:" : ",DNS:") + name;
    }
    for (const std::string& address : options.ipAddresses) {
        names += (names.empty() ? "IP:" : ",IP:") + address;
    }
    return names;
}

IssuedCertificate::Options ServerOptions(const TestCertificate::Options& options) {
    IssuedCertificate::Options server;
    server.commonName = options.commonName;
    server.extensions = {{"basicConstraints", "CA:FALSE"}};
    if (const std::string names = AlternativeNames(options); !names.empty()) {
        server.extensions.emplace_back("subjectAltName", names);
    }
    server.validFromDay = options.notYetValid ? 1 : -2;
    server.validUntilDay = options.expired ? -1 : 2;
    return server;
}

bool IsAddress(const std::string& text) {
    in6_addr ignored{};
    return ::inet_pton(AF_INET, text.c_str(), &ignored) == 1 || ::inet_pton(AF_INET6, text.c_str(), &ignored) == 1;
}

} // namespace

TestCertificate::Options TestCertificate::For(const std::string& hostOrAddress) {
    Options options;
    (IsAddress(hostOrAddress) ? options.ipAddresses : options.dnsNames).push_back(hostOrAddress);
    return options;
}

TestCertificate::TestCertificate(const Options& options) {
    const IssuedCertificate authority(IssuedCertificate::Authority("cimhttp test authority"));
    const IssuedCertificate server = options.selfSigned ? IssuedCertificate(ServerOptions(options))
                                                        : IssuedCertificate(ServerOptions(options), authority);
    directory_.WriteFile("ca.pem", authority.Pem());
    directory_.WriteFile("server.pem", server.Pem());
    directory_.WriteFile("server.key", server.KeyPem());
    std::filesystem::create_directory(CaDirectory());
    directory_.WriteFile("hashed/" + authority.HashedName(), authority.Pem());
}

} // namespace support
