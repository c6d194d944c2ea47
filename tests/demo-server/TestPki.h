#pragma once

#include "support/TemporaryDirectory.h"

#include <string>

/// Certificates as `openssl` makes them, in PEM files that go with the object: a root authority, an intermediate one
/// that it has signed, and what that one has signed for a server and for a client.
class TestPki {
  public:
    /// Throws std::runtime_error when `openssl` fails.
    explicit TestPki(const std::string& serverAddress);

    std::string Root() const { return Path("root.pem"); }
    std::string Intermediate() const { return Path("intermediate.pem"); }
    /// The server's certificate alone, and with that of the intermediate authority behind it.
    std::string Server() const { return Path("server.pem"); }
    std::string ServerChain() const { return Path("chain.pem"); }
    std::string ServerKey() const { return Path("server.key"); }
    /// The client's certificate with that of the intermediate authority behind it.
    std::string Client() const { return Path("client-chain.pem"); }
    std::string ClientKey() const { return Path("client.key"); }

    /// Writes a file beside the others and returns its path.
    std::string Write(const std::string& name, const std::string& text) const {
        return directory_.WriteFile(name, text);
    }
    /// A file beside the others, which need not be there yet.
    std::string Path(const std::string& name) const { return (directory_.Path() / name).string(); }

    /// Runs `openssl`. Throws std::runtime_error when it fails.
    static void OpenSsl(const std::string& arguments);

  private:
    void SignWith(const std::string& issuer, const std::string& name, const std::string& extensions) const;

    support::TemporaryDirectory directory_;
};
