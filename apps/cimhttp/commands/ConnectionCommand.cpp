#include "Failure.h"
#include "Options.h"
#include "commands/Commands.h"
#include "commands/ListingWriter.h"
#include "connection/Connection.h"
#include "connection/ConnectionStore.h"
#include "connection/KnownServers.h"
#include "connection/ServerSchema.h"
#include "connection/Session.h"
#include "output/Listing.h"
#include "text/TerminalText.h"
#include "text/WordList.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <ostream>

namespace cimhttp {

namespace {

constexpr const char* kExample = R"(cimhttp connection add lab --host server.example --tls --user reader
cimhttp connection test lab
cimhttp -c lab classes '*port')";

constexpr const char* kNotes = R"('add' keeps --host, --port, --namespace, --tls, --user, --timeout and what
verifies the server (--ca, --fingerprint, --verify) or you (--cert, --key) under
the name; adding a known name again replaces it. A password is kept only with
--store-password, in plain text, in a file that nobody else may read.

'list' shows all, 'remove' forgets one, 'test' connects to one and asks for the
number of its classes.

'known' shows the servers that you know by their certificates, because you were
asked and said yes; 'forget' forgets one of them, as in 'forget
server.example:5989', and you are asked again.

The connection with the name 'default' is used when no --host and no
--connection is given. All are in $XDG_CONFIG_HOME/cimhttp/connections.json, or
~/.config/cimhttp/connections.json, the known servers beside it in
known_servers.json.)";

[[noreturn]] void Refuse(const std::string& what) { throw Failure(Failure::kUsage, what); }

/// The files are found from another folder, too.
void MakeAbsolute(TlsSettings& settings) {
    for (auto* file : {&settings.ca, &settings.certificate, &settings.key}) {
        if (*file) {
            *file = std::filesystem::absolute(**file).string();
        }
    }
}

/// What the command line says; nothing is taken from the connections that there are.
SavedConnection GivenConnection(const Options& options, bool storesPassword) {
    if (!options.host) {
        Refuse("which server? give --host");
    }
    if (storesPassword && !options.user) {
        Refuse("whose password? give --user");
    }
    Options asked = options;
    if (!storesPassword) {
        asked.password = ""; // nobody need be asked for it
    }
    const Connection connection = ConnectionOf(asked);
    SavedConnection saved{connection.host, connection.tls,  options.user,      {},
                          options.timeout, connection.port, options.nameSpace, connection.tlsSettings};
    MakeAbsolute(saved.tlsSettings);
    if (storesPassword) {
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

/// What the server is verified by, beside what is known of it.
Cell VerificationCell(const TlsSettings& settings) {
    if (settings.Verifies()) {
        return settings.ca ? *settings.ca : *settings.fingerprint;
    }
    return settings.verify.value_or(false) ? Cell("required") : Cell::Null();
}

/// A server as the user names it in `forget`.
std::string HostAndPort(const std::string& text) {
    const ServerName name = ParseServerName(text);
    Connection connection;
    connection.host = name.host;
    connection.tls = true;
    connection.port = name.port;
    return connection.HostAndPort();
}

KnownServers NeededServers() {
    const auto servers = KnownServers::OfUser();
    if (!servers) {
        Refuse("there is no folder for known servers: neither HOME nor XDG_CONFIG_HOME is set");
    }
    return *servers;
}

/// `connection add|list|remove|test [NAME]`: the user's named connections. `connection known|forget [SERVER]`: the
/// servers that the user knows by their certificates.
class ConnectionCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {"connection",
                "Keep connections under names, for --connection NAME, and show or forget known servers",
                {{"ACTION", "add, list, remove, test, known or forget", true, &action_},
                 {"NAME", "The name of the connection, or the server to forget", false, &name_}},
                {{"--store-password", "", "Keep the password, too, in plain text", &storesPassword_}},
                {OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv},
                kExample,
                kNotes};
    }

    int Run(const CommandContext& context) override {
        const bool isList = action_ == "list" || action_ == "known";
        const bool hasName = action_ == "add" || action_ == "remove" || action_ == "test" || action_ == "forget";
        if (!isList && !hasName) {
            Refuse("connection does not know '" + action_ + "': it has add, list, remove, test, known and forget");
        }
        if (name_.empty() != isList) {
            Refuse(name_.empty() ? "connection " + action_ + " needs a NAME"
                                 : "connection " + action_ + " takes no name");
        }
        if (context.options.format && !isList) {
            Refuse("connection " + action_ + " has one form only; leave out --output");
        }
        if (action_ == "known") {
            ListKnown(context);
        } else if (action_ == "forget") {
            Forget(context.options);
        } else {
            RunOnConnections(ConnectionStore::NeededOfUser(), context);
        }
        return 0;
    }

    int RunForFleet(const FleetContext& /*context*/) override {
        Refuse("'connection' is about one connection, which is its NAME: leave out --connection");
    }

  private:
    void RunOnConnections(const ConnectionStore& store, const CommandContext& context) {
        if (action_ == "add") {
            Add(store, context);
        } else if (action_ == "list") {
            List(store, context);
        } else if (action_ == "remove") {
            Remove(store);
        } else {
            Test(context);
        }
    }

    void Add(const ConnectionStore& store, const CommandContext& context) const {
        CheckConnectionName(name_);
        const SavedConnection given = GivenConnection(context.options, storesPassword_); // asks the user, if need be
        store.Update([&](auto& connections) { connections[name_] = given; });
    }

    void List(const ConnectionStore& store, const CommandContext& context) {
        Listing listing({Listing::Key("Name"),
                         {"Server"},
                         {"User"},
                         {"Password"},
                         {"Timeout", Listing::Align::kRight},
                         {"Namespace"},
                         {"Verification"},
                         {"Certificate"}});
        for (const auto& [name, connection] : store.Read()) {
            listing.AddRow({name, connection.Url(), connection.user.value_or(""), connection.password ? "stored" : "",
                            TimeoutCell(connection), connection.nameSpace, VerificationCell(connection.tlsSettings),
                            connection.tlsSettings.certificate});
        }
        Write(listing, "no connections\n", context);
    }

    void Remove(const ConnectionStore& store) const {
        store.Find(name_); // complains when there is none
        store.Update([&](auto& connections) { connections.erase(name_); });
    }

    void Test(const CommandContext& context) const {
        Options options = context.options;
        if (options.host) {
            Refuse("connection test takes the server from the connection, not from --host");
        }
        options.connection = name_;
        const CommandContext named{options, context.output, context.errors};
        Session session = named.Connect();
        context.output << Printable(session.Server())
                       << " answers: " << Counted(ServerSchema(session).ClassNames().size(), "class", "classes")
                       << '\n';
    }

    void ListKnown(const CommandContext& context) {
        Listing listing({Listing::Key("Server"), {"SHA256"}, {"Since"}, {"Subject"}});
        for (const auto& [name, server] : NeededServers().Read()) {
            listing.AddRow({name, server.fingerprint, server.since, server.subject});
        }
        Write(listing, "no known servers\n", context);
    }

    void Forget(const Options& options) const {
        if (options.host) {
            Refuse("connection forget takes the server as its NAME, not from --host");
        }
        const std::string server = HostAndPort(name_);
        const KnownServers servers = NeededServers();
        if (!servers.Find(server)) {
            Refuse("there is no known server " + server + "; 'cimhttp connection known' shows all");
        }
        servers.Forget(server);
    }

    void Write(const Listing& listing, const char* nothing, const CommandContext& context) {
        const OutputFormat format = context.Format(*this);
        if (listing.Rows().empty() && format == OutputFormat::kTable) {
            context.output << nothing;
        } else {
            WriteListing(listing, format, context);
        }
    }

    std::string action_;
    std::string name_; ///< empty where it is not given
    bool storesPassword_ = false;
};

} // namespace

std::unique_ptr<Command> MakeConnectionCommand() { return std::make_unique<ConnectionCommand>(); }

} // namespace cimhttp
