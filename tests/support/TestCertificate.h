#pragma once

#include "support/TemporaryDirectory.h"

#include <string>
#include <vector>

namespace support {

/// A throw-away certification authority and one server certificate of it, as PEM files in a directory that goes with
/// the object.
class TestCertificate {
  public:
    struct Options {
        std::string commonName = "cimhttp test server";
        std::vector<std::string> dnsNames;    ///< alternative names of the server
        std::vector<std::string> ipAddresses; ///< alternative addresses, IPv4 or IPv6
        bool expired = false;                 ///< the validity ended yesterday
        bool notYetValid = false;             ///< the validity begins tomorrow
        bool selfSigned = false;              ///< signed by its own key instead of the authority's
    };

    /// A certificate that is good for one address or name.
    static Options For(const std::string& hostOrAddress);

    explicit TestCertificate(const Options& options);

    /// The authority's certificate: the trust store of a client that is to accept the server.
    std::string CaFile() const { return Path("ca.pem"); }
    /// A directory with the authority's certificate under its subject hash, the other form of a trust store.
    std::string CaDirectory() const { return Path("hashed"); }
    std::string CertificateFile() const { return Path("server.pem"); }
    std::string KeyFile() const { return Path("server.key"); }

  private:
    std::string Path(const char* name) const { return (directory_.Path() / name).string(); }

    TemporaryDirectory directory_;
};

} // namespace support
