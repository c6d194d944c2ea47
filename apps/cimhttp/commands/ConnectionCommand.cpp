#include "commands/ConnectionCommand.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <ostream>

#include "Failure.h"
#include "Options.h"
#include "commands/ListingWriter.h"
#include "connection/Connection.h"
#include "connection/ConnectionStore.h"
#include "connection/Session.h"
#include "output/Listing.h"
#include "text/TerminalText.h"

namespace cimhttp {

namespace {

constexpr const char* kExample = R"(cimhttp connection add lab --host server.example --tls --user reader
cimhttp connection test lab
cimhttp -c lab classes '*port')";

constexpr const char* kNotes = R"('add' keeps --host, --tls, --user and --timeout under the name; adding a known
name again replaces it. A password is kept only with --store-password, in plain
text, in a file that nobody else may read.

'list' shows all, 'remove' forgets one, 'test' connects to one and asks for the
number of its classes.

The connection with the name 'default' is used when no --host and no
--connection is given. All are in $XDG_CONFIG_HOME/cimhttp/connections.json, or
~/.config/cimhttp/connections.json.)";

[[noreturn]] void Refuse(const std::string& what) { throw Failure(Failure::kUsage, what); }

/// Names that need no quoting in a shell and do not look like options.
void CheckName(const std::string& name) {
    const auto is_plain = [](unsigned char letter) {
        return std::isalnum(letter) != 0 || letter == '_' || letter == '-' || letter == '.';
    };
    if (!std::all_of(name.begin(), name.end(), is_plain) || name.front() == '-') {
        Refuse("'" + name + "' is no name for a connection: it has letters, digits, '_', '.' and '-'");
    }
}

/// What the command line says; nothing is taken from the connections that there are.
SavedConnection GivenConnection(const Options& options, bool stores_password) {
    if (!options.host) {
        Refuse("which server? give --host");
    }
    if (stores_password && !options.user) {
        Refuse("whose password? give --user");
    }
    Options asked = options;
    if (!stores_password) {
        asked.password = ""; // nobody need be asked for it
    }
    const Connection connection = ConnectionOf(asked);
    SavedConnection saved{connection.host, connection.tls, options.user, {}, options.timeout};
    if (stores_password) {
        saved.password = connection.password;
    }
    return saved;
}

Cell TimeoutCell(const SavedConnection& connection) {
    if (!connection.timeout) {
        return Cell::Null();
    }
    return {NQORVYX20::TCIMValue(static_cast<std::uint32_t>(*connection.timeout)), std::to_string(*connection.timeout)};
}

} // namespace

CommandDescription ConnectionCommand::Describe() {
    return {"connection",
            "Keep connections under names, for --connection NAME",
            {{"ACTION", "add, list, remove or test", true, &action_},
             {"NAME", "The name of the connection", false, &name_}},
            {{"--store-password", "", "Keep the password, too, in plain text", &stores_password_}},
            {OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv},
            kExample,
            kNotes};
}

int ConnectionCommand::Run(const CommandContext& context) {
    if (action_ != "add" && action_ != "list" && action_ != "remove" && action_ != "test") {
        Refuse("connection does not know '" + action_ + "': it has add, list, remove and test");
    }
    if (name_.empty() != (action_ == "list")) {
        Refuse(name_.empty() ? "connection " + action_ + " needs a NAME" : "connection list takes no name");
    }
    if (context.options.format && action_ != "list") {
        Refuse("connection " + action_ + " has one form only; leave out --output");
    }
    const ConnectionStore store = ConnectionStore::NeededOfUser();
    if (action_ == "add") {
        Add(store, context);
    } else if (action_ == "list") {
        List(store, context);
    } else if (action_ == "remove") {
        Remove(store);
    } else {
        Test(context);
    }
    return 0;
}

void ConnectionCommand::Add(const ConnectionStore& store, const CommandContext& context) const {
    CheckName(name_);
    const SavedConnection given = GivenConnection(context.options, stores_password_); // asks the user, if need be
    store.Update([&](auto& connections) { connections[name_] = given; });
}

void ConnectionCommand::List(const ConnectionStore& store, const CommandContext& context) {
    Listing listing({Listing::Key("Name"), {"Server"}, {"User"}, {"Password"}, {"Timeout", Listing::Align::kRight}});
    for (const auto& [name, connection] : store.Read()) {
        listing.AddRow({name, Connection{connection.host, "", "", connection.tls}.Url(), connection.user.value_or(""),
                        connection.password ? "stored" : "", TimeoutCell(connection)});
    }
    const OutputFormat format = context.Format(*this);
    if (listing.Rows().empty() && format == OutputFormat::kTable) {
        context.output << "no connections\n";
    } else {
        WriteListing(listing, format, context);
    }
}

void ConnectionCommand::Remove(const ConnectionStore& store) const {
    store.Find(name_); // complains when there is none
    store.Update([&](auto& connections) { connections.erase(name_); });
}

void ConnectionCommand::Test(const CommandContext& context) const {
    Options options = context.options;
    if (options.host) {
        Refuse("connection test takes the server from the connection, not from --host");
    }
    options.connection = name_;
    const CommandContext named{options, context.output, context.errors};
    Session session = named.Connect();
    context.output << Printable(session.Server()) << " answers: " << session.ClassNames().size() << " classes\n";
}

} // namespace cimhttp
