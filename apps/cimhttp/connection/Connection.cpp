#include "connection/Connection.h"

#include <strings.h>

#include <algorithm>
#include <array>

#include "Failure.h"
#include "Options.h"
#include "connection/ConnectionStore.h"
#include "connection/PasswordPrompt.h"
#include "text/TerminalText.h"

namespace cimhttp {

namespace {

constexpr const char* kDefaultConnection = "default";

template <std::size_t Count>
bool IsOneOf(const std::string& text, const std::array<const char*, Count>& words) {
    return std::any_of(words.begin(), words.end(),
                       [&](const char* word) { return ::strcasecmp(text.c_str(), word) == 0; });
}

/// A document's setting, empty where it has none.
class Settings {
  public:
    Settings(const std::map<std::string, std::string>& texts, const std::string& document)
        : texts_(texts), document_(document) {}

    bool Has(const std::string& name) const { return texts_.count(name) > 0; }

    std::string Text(const std::string& name) const { return Has(name) ? texts_.at(name) : std::string(); }

    std::optional<bool> Tls() const {
        constexpr std::array<const char*, 4> kYes{"true", "1", "yes", "on"};
        constexpr std::array<const char*, 4> kNo{"false", "0", "no", "off"};
        const std::string text = Text("ssl");
        if (text.empty()) {
            return std::nullopt;
        }
        if (!IsOneOf(text, kYes) && !IsOneOf(text, kNo)) {
            throw Failure(Failure::kUsage, document_ + ": ssl is '" + text +
                                               "'; true, 1, yes or on mean HTTPS, false, 0, no or off HTTP");
        }
        return IsOneOf(text, kYes);
    }

  private:
    const std::map<std::string, std::string>& texts_;
    const std::string& document_;
};

/// Adds a saved connection where the options say nothing. A user who is not the connection's gets no password from it.
void Add(const SavedConnection& saved, Options& options) {
    options.host = options.host ? options.host : saved.host;
    options.tls = options.tls ? options.tls : saved.tls;
    options.user = options.user ? options.user : saved.user;
    options.timeout = options.timeout ? options.timeout : saved.timeout;
    if (!options.password && options.user == saved.user) {
        options.password = saved.password;
    }
}

void AddChosenConnection(Options& options) {
    if (options.connection) {
        Add(ConnectionStore::NeededOfUser().Find(*options.connection), options);
    }
}

void AddDefaultConnection(Options& options) {
    const auto store = ConnectionStore::OfUser();
    if (options.host || !store) {
        return;
    }
    const auto connections = store->Read();
    const auto found = connections.find(kDefaultConnection);
    if (found != connections.end()) {
        Add(found->second, options);
    }
}

std::string PasswordOf(const Options& options, const std::string& user, const std::string& server) {
    if (options.password) {
        return *options.password;
    }
    if (options.password_variable) {
        return *options.password_variable;
    }
    const auto typed = options.is_error_stream_terminal
                           ? AskForPassword(Printable("Password of " + user + " on " + server + ": "))
                           : std::nullopt;
    if (!typed) {
        throw Failure(Failure::kUsage, "the user " + user +
                                           " needs a password: give --password-file FILE or set the variable "
                                           "CIMHTTP_PASSWORD");
    }
    return *typed;
}

/// Options that hold all that there is to know.
Connection ConnectionOfComplete(const Options& options) {
    const ServerName server = ParseServerName(options.host.value_or(kDefaultHost));
    if (options.tls && server.tls && *options.tls != *server.tls) {
        throw Failure(Failure::kUsage, "'" + *options.host + "' and " + (*options.tls ? "--tls" : "--tls=false") +
                                           " contradict each other");
    }
    Connection connection;
    connection.host = server.host;
    connection.tls = options.tls.value_or(server.tls.value_or(false));
    connection.user = options.user.value_or("");
    connection.timeout = std::chrono::seconds(options.timeout.value_or(kUsualTimeout));
    if (connection.user.empty() && !options.password.value_or("").empty()) {
        throw Failure(Failure::kUsage, "whose password? give --user");
    }
    if (!connection.user.empty()) {
        connection.password = PasswordOf(options, connection.user, connection.Url());
    }
    return connection;
}

} // namespace

std::string Connection::Url() const { return (tls ? "https://" : "http://") + host; }

Connection ConnectionOf(const Options& options) {
    Options merged = options;
    AddChosenConnection(merged);
    AddDefaultConnection(merged);
    return ConnectionOfComplete(merged);
}

Connection ConnectionOf(const Options& options, const std::map<std::string, std::string>& settings,
                        const std::string& document) {
    const Settings given(settings, document);
    Options merged = options;
    AddChosenConnection(merged);
    if (!merged.host && given.Has("address")) {
        merged.host = given.Text("address");
    }
    if (!merged.tls) {
        merged.tls = given.Tls();
    }
    if (!merged.user) {
        merged.user = given.Has("user") ? std::optional(given.Text("user")) : std::nullopt;
        if (!merged.password && merged.user && given.Has("pass")) {
            merged.password = given.Text("pass");
        }
    }
    AddDefaultConnection(merged);
    if (merged.host.value_or("").empty()) {
        throw Failure(Failure::kUsage, document + " names no server: give <network address=\"...\"/> there, or --host");
    }
    return ConnectionOfComplete(merged);
}

} // namespace cimhttp
