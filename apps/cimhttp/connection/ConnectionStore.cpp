#include "connection/ConnectionStore.h"

#include "Failure.h"
#include "connection/Connection.h"
#include "connection/UserDocument.h"
#include "connection/UserEntry.h"
#include "text/Ascii.h"
#include "text/NearestNames.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace cimhttp {

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

constexpr mode_t kNotForOthers = 077;

constexpr const char* kHost = "host";
constexpr const char* kPort = "port";
constexpr const char* kTls = "tls";
constexpr const char* kNamespace = "namespace";
constexpr const char* kUser = "user";
constexpr const char* kPassword = "password";
constexpr const char* kTimeout = "timeout";
constexpr const char* kCa = "ca";
constexpr const char* kFingerprint = "fingerprint";
constexpr const char* kCertificate = "cert";
constexpr const char* kKey = "key";
constexpr const char* kVerify = "verify";

[[noreturn]] void Refuse(const std::string& what) { throw Failure(Failure::kUsage, what); }

UserDocument Document(const std::string& path) { return {path, "a list of connections"}; }

SavedConnection ReadConnection(const UserEntry& entry) {
    entry.CheckNames(
        {kHost, kPort, kTls, kNamespace, kUser, kPassword, kTimeout, kCa, kFingerprint, kCertificate, kKey, kVerify});
    SavedConnection connection;
    connection.host = entry.NeededText(kHost);
    connection.port = entry.Number(kPort, "number", 1, kHighestPort);
    connection.tls = entry.Flag(kTls).value_or(false);
    connection.nameSpace = entry.Text(kNamespace);
    connection.user = entry.Text(kUser);
    connection.password = entry.Text(kPassword);
    connection.timeout = entry.Number(kTimeout, "number of seconds", kShortestTimeout, kLongestTimeout);
    connection.tlsSettings = {entry.Text(kCa), entry.Text(kFingerprint), entry.Text(kCertificate), entry.Text(kKey),
                              entry.Flag(kVerify)};
    return connection;
}

template <typename Value>
void Add(const char* name, const std::optional<Value>& value, ordered_json& entry) {
    if (value) {
        entry[name] = *value;
    }
}

ordered_json ToJson(const SavedConnection& connection) {
    ordered_json entry{{kHost, connection.host}, {kTls, connection.tls}};
    Add(kPort, connection.port, entry);
    Add(kNamespace, connection.nameSpace, entry);
    Add(kUser, connection.user, entry);
    Add(kPassword, connection.password, entry);
    Add(kTimeout, connection.timeout, entry);
    Add(kCa, connection.tlsSettings.ca, entry);
    Add(kFingerprint, connection.tlsSettings.fingerprint, entry);
    Add(kCertificate, connection.tlsSettings.certificate, entry);
    Add(kKey, connection.tlsSettings.key, entry);
    Add(kVerify, connection.tlsSettings.verify, entry);
    return entry;
}

ordered_json ToJson(const ConnectionStore::Connections& connections) {
    ordered_json document = ordered_json::object();
    for (const auto& [name, connection] : connections) {
        document[name] = ToJson(connection);
    }
    return document;
}

/// A file that others can read is no place for passwords.
void CheckPrivacy(const std::string& path, mode_t mode, const ConnectionStore::Connections& connections) {
    const bool holdsPassword = std::any_of(connections.begin(), connections.end(),
                                           [](const auto& entry) { return entry.second.password.has_value(); });
    if (holdsPassword && (mode & kNotForOthers) != 0) {
        Refuse(path + " holds a password and is open to others: chmod 600 it, and think of changing the password");
    }
}

ConnectionStore::Connections ConnectionsIn(const UserDocument::Content& content, const std::string& path) {
    ConnectionStore::Connections connections;
    for (const auto& [name, entry] : content.object.items()) {
        std::string place = path;
        place.append(", connection '").append(name).append("'");
        connections.emplace(name, ReadConnection(UserEntry(entry, place)));
    }
    CheckPrivacy(path, content.mode, connections);
    return connections;
}

} // namespace

std::string SavedConnection::Url() const {
    Connection connection;
    connection.host = host;
    connection.tls = tls;
    connection.port = port;
    return connection.Url();
}

void CheckConnectionName(const std::string& name) {
    const auto isPlain = [](char letter) {
        return IsAsciiLetter(letter) || IsAsciiDigit(letter) || letter == '_' || letter == '-' || letter == '.';
    };
    if (name.empty() || !std::all_of(name.begin(), name.end(), isPlain) || name.front() == '-') {
        Refuse("'" + name + "' is no name for a connection: it has letters, digits, '_', '.' and '-'");
    }
}

std::optional<ConnectionStore> ConnectionStore::OfUser() {
    const auto path = UserDocument::PathOfUser("connections.json");
    return path ? std::optional<ConnectionStore>(ConnectionStore(*path)) : std::nullopt;
}

ConnectionStore ConnectionStore::NeededOfUser() {
    const auto store = OfUser();
    if (!store) {
        Refuse("there is no folder for named connections: neither HOME nor XDG_CONFIG_HOME is set");
    }
    return *store;
}

ConnectionStore::Connections ConnectionStore::Read() const { return ConnectionsIn(Document(path_).Read(), path_); }

void ConnectionStore::Update(const std::function<void(Connections&)>& change) const {
    Document(path_).Update([&](const UserDocument::Content& content) {
        Connections connections = ConnectionsIn(content, path_);
        change(connections);
        return ToJson(connections);
    });
}

SavedConnection ConnectionStore::Find(const std::string& name) const {
    const Connections connections = Read();
    const auto found = connections.find(name);
    if (found == connections.end()) {
        std::vector<std::string> names;
        std::transform(connections.begin(), connections.end(), std::back_inserter(names),
                       [](const auto& entry) { return entry.first; });
        Refuse("there is no connection '" + name + "'" + DidYouMean(NearestNames(name, names)) +
               "; 'cimhttp connection list' shows all");
    }
    return found->second;
}

} // namespace cimhttp
