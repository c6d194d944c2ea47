#include "commands/Command.h"

#include "Failure.h"
#include "Options.h"
#include "commands/FleetContext.h"
#include "commands/FleetReading.h"
#include "connection/Connection.h"
#include "connection/Plugin.h"
#include "connection/ServerTrust.h"
#include "connection/Session.h"
#include "text/TerminalText.h"
#include "waiting/Interrupt.h"
#include "waiting/ProgressWait.h"

#include <ostream>
#include <utility>

namespace cimhttp {

OutputFormat CommandContext::Format(Command& command) const {
    return options.format.value_or(command.Describe().formats.front());
}

OutputFormat CommandContext::Format(Command& command, bool isWide) const {
    if (!isWide) {
        return Format(command);
    }
    if (options.format.value_or(OutputFormat::kCsv) != OutputFormat::kCsv) {
        throw Failure(Failure::kUsage, "--wide is a form of csv, which need not be asked for");
    }
    return OutputFormat::kCsv;
}

Session CommandContext::Connect() const {
    const Connection connection = ConnectionOf(options);
    return ConnectTo(Plugin(options.plugin), connection);
}

Session CommandContext::ConnectTo(const Plugin& plugin, const Connection& connection) const {
    return ConnectTo(plugin, connection, MakeProgressWait());
}

Session CommandContext::ConnectTo(const Plugin& plugin, const Connection& connection, const ProgressWait& wait) const {
    const Connection trusted = Trusted(plugin, connection, options, wait);
    Session session(plugin, trusted, wait);
    WarnAbout(trusted);
    return session;
}

void CommandContext::WarnAbout(const Connection& connection) const {
    const std::string host = Printable(connection.host);
    if (connection.tls && !IsVerified(connection)) {
        errors << "cimhttp: encrypted, but nobody has verified that this is " << host << '\n';
    }
    if (!connection.tls && !connection.user.empty() && !connection.IsLoopback()) {
        errors << "cimhttp: the password of " << Printable(connection.user) << " goes to " << host
               << " in plain text, for everybody on the way to read; --tls encrypts it\n";
    }
    errors.flush();
}

ProgressWait CommandContext::MakeProgressWait(std::function<void()> onInterrupt) const {
    if (options.server) {
        return {};
    }
    return {errors, ShowsProgress(), options.errorStreamWidth, std::move(onInterrupt)};
}

ProgressWait CommandContext::MakeProgressWait() const {
    return MakeProgressWait([&stream = errors] {
        stream << "cimhttp: interrupted" << std::endl;
        EndByInterrupt();
    });
}

bool CommandContext::ShowsProgress() const {
    return options.isErrorStreamTerminal && !options.logLevel && !options.server;
}

int Command::RunForFleet(const FleetContext& context) {
    return ReadFleet(*this, context, context.options.format.value_or(Describe().formats.front()));
}

int Command::Tell(const char* failure, int status, std::ostream& /*output*/, std::ostream& errors) const {
    if (status != Failure::kClosedPipe) { // that the reader of the output has gone is not reported
        errors << "cimhttp: " << Printable(failure) << std::endl;
    }
    return status;
}

} // namespace cimhttp
