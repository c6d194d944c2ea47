#pragma once

#include "connection/ConnectionStore.h"

#include <memory>
#include <string>
#include <vector>

namespace cimhttp {

/// One of several servers: a named connection.
struct FleetServer {
    std::string name;
    std::shared_ptr<const SavedConnection> connection;
};

/// Several servers out of the user's named connections: `rack1,rack2`, `rack*`, `@FILE`, or these separated by commas.
/// A pattern is one of a shell (`*`, `?`, `[…]`), in which case does not count. The file has a name or a pattern a
/// line; lines that are empty or begin with `#` say nothing.
class ServerList {
  public:
    /// Whether a text names several servers, and not one by its plain name. A pattern does, whatever it matches.
    static bool IsMeantBy(const std::string& text);

    /// The servers in the order in which the text names them, those of a pattern in the order of their names; each one
    /// once, where it comes first. Throws Failure(kUsage) for a name that there is not, a pattern that nothing matches,
    /// a file that cannot be read and a text without any name; it names what is wrong.
    static std::vector<FleetServer> Read(const std::string& text, const ConnectionStore& store);
};

} // namespace cimhttp
