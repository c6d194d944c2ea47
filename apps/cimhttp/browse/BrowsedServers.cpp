#include "browse/BrowsedServers.h"

#include "connection/ConnectionStore.h"

namespace cimhttp {

namespace {

ConnectionStore::Connections NamedConnections() {
    const auto store = ConnectionStore::OfUser();
    return store ? store->Read() : ConnectionStore::Connections();
}

/// What the command line says of one server is for no other.
void ForgetServer(Options& options) {
    options.host.reset();
    options.port.reset();
    options.tls.reset();
    options.nameSpace.reset();
    options.user.reset();
    options.password.reset();
    options.passwordVariable.reset();
    options.tlsSettings = {};
}

std::optional<std::string> UnlessEmpty(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

SavedConnection ConnectionTo(const BrowsedServers::NewServer& server) {
    Options given;
    given.server = server.name; // nobody is asked
    given.host = server.host;
    given.tls = server.tls ? std::optional(true) : std::nullopt; // the scheme or the port may say so, too
    given.user = UnlessEmpty(server.user);
    given.password = "";
    given.nameSpace = UnlessEmpty(server.nameSpace);
    const Connection connection = ConnectionOf(given);
    SavedConnection saved;
    saved.host = connection.host;
    saved.tls = connection.tls;
    saved.port = connection.port;
    saved.user = given.user;
    saved.nameSpace = given.nameSpace;
    return saved;
}

} // namespace

std::string BrowsedServers::NameOfFirst() const {
    return options_.host ? *options_.host : options_.connection.value_or("");
}

std::vector<BrowsedServers::Listed> BrowsedServers::List() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto hasPassword = [&](const std::string& name) { return OptionsFor(name).password.has_value(); };
    std::vector<Listed> servers;
    if (options_.host) {
        const std::string name = NameOfFirst();
        const Connection connection = ConnectionOf(OptionsFor(name));
        servers.push_back({name, connection.Url(), connection.nameSpace, connection.user, hasPassword(name)});
    }
    for (const auto& [name, saved] : NamedConnections()) {
        if (!IsFirst(name)) {
            servers.push_back({name, saved.Url(), saved.nameSpace.value_or(kUsualNamespace), saved.user.value_or(""),
                               saved.password || hasPassword(name)});
        }
    }
    return servers;
}

std::shared_ptr<BrowsedServer> BrowsedServers::Find(const std::string& name) {
    if (!IsFirst(name) && NamedConnections().count(name) == 0) {
        throw Failure(Failure::kNotFound, "there is no connection '" + name + "'");
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto known = servers_.find(name);
    if (known != servers_.end()) {
        return known->second;
    }
    return servers_.emplace(name, std::make_shared<BrowsedServer>(plugin_, OptionsFor(name))).first->second;
}

void BrowsedServers::Add(const NewServer& server) {
    CheckConnectionName(server.name);
    const SavedConnection connection = ConnectionTo(server);
    ConnectionStore::NeededOfUser().Update([&](auto& connections) {
        if (IsFirst(server.name) || !connections.emplace(server.name, connection).second) {
            throw Failure(Failure::kUsage, "there is a connection '" + server.name + "' already");
        }
    });
    if (!server.password.empty()) {
        SetPassword(server.name, server.password);
    }
}

void BrowsedServers::SetPassword(const std::string& name, const std::string& password) {
    const std::lock_guard<std::mutex> lock(mutex_);
    passwords_[name] = password;
    servers_.erase(name); // whose connection has another one
}

/// With the mutex locked.
Options BrowsedServers::OptionsFor(const std::string& name) const {
    Options own = Unattended(options_);
    own.server = name;
    if (!IsFirst(name)) {
        own.connection = name;
        if (name != NameOfFirst()) {
            ForgetServer(own);
        }
    }
    const auto password = passwords_.find(name);
    if (password != passwords_.end()) {
        own.password = password->second;
    }
    return own;
}

} // namespace cimhttp
