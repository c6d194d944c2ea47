#pragma once

#include <map>
#include <string>

namespace cimhttp {

/// Who may speak with the program's web server, and how. Without all of it: everybody, in plain text.
struct WebAccess {
    enum class LeastVersion { kTls12, kTls13 };

    std::string certificate; ///< PEM file with the server's chain; empty: no TLS
    std::string key;         ///< PEM file
    LeastVersion leastVersion = LeastVersion::kTls12;
    std::string clientAuthorities; ///< PEM file; a client must show a certificate that one of these has signed
    std::map<std::string, std::string> users; ///< hashes of passwords as crypt(5) has them, by name; none: no login

    /// What a web configuration file of Prometheus' exporters says, as far as it is about these; files that it names
    /// are looked for beside it. Throws Failure(kUsage) with the line of anything else.
    static WebAccess InFile(const std::string& path);
};

} // namespace cimhttp
