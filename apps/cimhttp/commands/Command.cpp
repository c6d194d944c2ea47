#include "commands/Command.h"

#include <ostream>
#include <utility>

#include "Options.h"
#include "connection/Connection.h"
#include "connection/Plugin.h"
#include "connection/Session.h"
#include "text/TerminalText.h"
#include "waiting/Attendant.h"
#include "waiting/Interrupt.h"

namespace cimhttp {

OutputFormat CommandContext::Format(Command& command) const {
    return options.format.value_or(command.Describe().formats.front());
}

Session CommandContext::Connect() const {
    const Connection connection = ConnectionOf(options);
    return ConnectTo(Plugin(options.plugin), connection);
}

Session CommandContext::ConnectTo(const Plugin& plugin, const Connection& connection) const {
    const auto end = [&stream = errors] {
        stream << "cimhttp: interrupted" << std::endl;
        EndByInterrupt();
    };
    return ConnectTo(plugin, connection, MakeAttendant(end));
}

Session CommandContext::ConnectTo(const Plugin& plugin, const Connection& connection,
                                  const Attendant& attendant) const {
    Session session(plugin, connection, attendant);
    if (connection.tls) {
        errors << "cimhttp: encrypted, but nobody has verified that this is " << Printable(connection.host) << '\n';
    }
    return session;
}

Attendant CommandContext::MakeAttendant(std::function<void()> on_interrupt) const {
    return {errors, ShowsProgress(), options.error_stream_width, std::move(on_interrupt)};
}

bool CommandContext::ShowsProgress() const { return options.is_error_stream_terminal && !options.log_level; }

} // namespace cimhttp
