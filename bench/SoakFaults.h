#pragma once

#include "support/ScriptedServer.h"

#include <random>
#include <string>

namespace bench {

using Generator = std::mt19937_64;

/// A number from 0 to `count` - 1.
std::size_t Pick(Generator& generator, std::size_t count);

/// Serves a connection as the server at port 5988 of an address would: some requests rightly, one wrongly, and then no
/// more. The generator chooses when and how.
void ServeWithFaults(support::Connection& client, const std::string& address, Generator& generator);

/// Does something else than a TLS handshake, and closes soon: a client that connects may not have a time-out yet.
void SendInsteadOfTls(support::Connection& client, Generator& generator);

} // namespace bench
