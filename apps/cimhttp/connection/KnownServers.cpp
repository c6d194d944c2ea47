#include "connection/KnownServers.h"

#include "Failure.h"
#include "connection/TlsSettings.h"
#include "connection/UserDocument.h"
#include "connection/UserEntry.h"
#include "text/Ascii.h"

#include <algorithm>

namespace cimhttp {

namespace {

using nlohmann::ordered_json;

constexpr const char* kFingerprint = "sha256";
constexpr const char* kSince = "since";
constexpr const char* kSubject = "subject";

UserDocument Document(const std::string& path) { return {path, "a list of servers"}; }

/// Hosts are the same in any case.
std::string Key(const std::string& hostAndPort) { return AsciiLower(hostAndPort); }

KnownServer ReadServer(const UserEntry& entry, const std::string& place) {
    entry.CheckNames({kFingerprint, kSince, kSubject});
    const auto fingerprint = NormalFingerprint(entry.NeededText(kFingerprint));
    if (!fingerprint) {
        throw Failure(Failure::kUsage, place + ": " + kFingerprint + " is no SHA-256 fingerprint");
    }
    return {*fingerprint, entry.Text(kSince).value_or(""), entry.Text(kSubject).value_or("")};
}

KnownServers::Servers ServersIn(const UserDocument::Content& content, const std::string& path) {
    KnownServers::Servers servers;
    for (const auto& [name, entry] : content.object.items()) {
        const std::string place = path + ", server '" + name + "'";
        servers.emplace(Key(name), ReadServer(UserEntry(entry, place), place));
    }
    return servers;
}

ordered_json ToJson(const KnownServers::Servers& servers) {
    ordered_json document = ordered_json::object();
    for (const auto& [name, server] : servers) {
        document[name] = {{kFingerprint, server.fingerprint}, {kSince, server.since}, {kSubject, server.subject}};
    }
    return document;
}

} // namespace

std::optional<KnownServers> KnownServers::OfUser() {
    const auto path = UserDocument::PathOfUser("known_servers.json");
    return path ? std::optional<KnownServers>(KnownServers(*path)) : std::nullopt;
}

KnownServers::Servers KnownServers::Read() const { return ServersIn(Document(path_).Read(), path_); }

std::optional<KnownServer> KnownServers::Find(const std::string& hostAndPort) const {
    const Servers servers = Read();
    const auto found = servers.find(Key(hostAndPort));
    return found == servers.end() ? std::nullopt : std::optional(found->second);
}

void KnownServers::Keep(const std::string& hostAndPort, const KnownServer& server) const {
    Document(path_).Update([&](const UserDocument::Content& content) {
        Servers servers = ServersIn(content, path_);
        servers[Key(hostAndPort)] = server;
        return ToJson(servers);
    });
}

bool KnownServers::Forget(const std::string& hostAndPort) const {
    bool isForgotten = false;
    Document(path_).Update([&](const UserDocument::Content& content) {
        Servers servers = ServersIn(content, path_);
        isForgotten = servers.erase(Key(hostAndPort)) > 0;
        return ToJson(servers);
    });
    return isForgotten;
}

} // namespace cimhttp
