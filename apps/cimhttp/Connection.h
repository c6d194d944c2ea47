#pragma once

#include <map>
#include <string>

namespace cimhttp {

struct Options;

/// How to reach a server.
struct Connection {
    std::string host;
    std::string user; ///< empty: no credentials are sent
    std::string password;
    bool tls = false;
};

/// The connection that the options ask for. Throws Failure(kUsage) when they do not make one.
Connection ConnectionOf(const Options& options);

/// The same with the settings of a document, `address`, `user`, `pass` and `ssl`, where the command line says nothing.
/// A user given on the command line takes no password from the document, which holds that of somebody else. Failures
/// name the document.
Connection ConnectionOf(const Options& options, const std::map<std::string, std::string>& settings,
                        const std::string& document);

} // namespace cimhttp
