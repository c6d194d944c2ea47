#include "Command.h"

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
    return {Plugin(options.plugin), connection, log};
}

} // namespace cimhttp
