#include "Command.h"

#include <ostream>

#include "Connection.h"
#include "Options.h"
#include "Plugin.h"
#include "Session.h"

namespace cimhttp {

OutputFormat CommandContext::Format(Command& command) const {
    return options.format.value_or(command.Describe().formats.front());
}

Session CommandContext::Connect() const {
    const Connection connection = ConnectionOf(options);
    return ConnectTo(Plugin(options.plugin), connection);
}

Session CommandContext::ConnectTo(const Plugin& plugin, const Connection& connection) const {
    Session session(plugin, connection, log);
    if (connection.tls) {
        errors << "cimhttp: encrypted, but nobody has verified that this is " << connection.host << '\n';
    }
    return session;
}

} // namespace cimhttp
