#include "connection/ConnectionStore.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>
#include <vector>

#include "Failure.h"
#include "connection/Connection.h"
#include "connection/FileLock.h"
#include "connection/InputFile.h"
#include "output/OutputFile.h"
#include "text/NearestNames.h"

namespace cimhttp {

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using nlohmann::ordered_json;

constexpr mode_t kOnlyOwner = 0600;
constexpr mode_t kNotForOthers = 077;
constexpr std::size_t kLargestFile = std::size_t{1} << 20U; // some thousand connections
constexpr std::chrono::seconds kPatience{10};               // with other processes, which need milliseconds

constexpr const char* kHost = "host";
constexpr const char* kTls = "tls";
constexpr const char* kUser = "user";
constexpr const char* kPassword = "password";
constexpr const char* kTimeout = "timeout";

/// Keeps new files and folders from others while it lives.
class PrivateFiles {
  public:
    PrivateFiles() : previous_(::umask(kNotForOthers)) {}
    ~PrivateFiles() { ::umask(previous_); }
    PrivateFiles(const PrivateFiles&) = delete;
    PrivateFiles& operator=(const PrivateFiles&) = delete;

  private:
    mode_t previous_;
};

[[noreturn]] void Refuse(const std::string& what) { throw Failure(Failure::kUsage, what); }

std::string Absolute(const char* path) { return path != nullptr && *path == '/' ? path : ""; }

/// Turns one entry of the document into a connection; `place` names it in complaints.
class EntryReader {
  public:
    EntryReader(const json& entry, std::string place) : entry_(entry), place_(std::move(place)) {
        if (!entry_.is_object()) {
            Refuse(place_ + " is not an object");
        }
    }

    SavedConnection Read() const {
        CheckKeys();
        SavedConnection connection;
        connection.host = Text(kHost).value_or("");
        if (connection.host.empty()) {
            Refuse(place_ + " names no host");
        }
        connection.tls = Tls();
        connection.user = Text(kUser);
        connection.password = Text(kPassword);
        connection.timeout = Timeout();
        return connection;
    }

  private:
    void CheckKeys() const {
        for (const auto& [key, value] : entry_.items()) {
            if (key != kHost && key != kTls && key != kUser && key != kPassword && key != kTimeout) {
                Refuse(place_ + " has an unknown setting '" + key + "'");
            }
        }
    }

    std::optional<std::string> Text(const char* key) const {
        const auto found = entry_.find(key);
        if (found == entry_.end()) {
            return std::nullopt;
        }
        if (!found->is_string()) {
            Refuse(place_ + ": " + key + " is not a text");
        }
        return found->get<std::string>();
    }

    bool Tls() const {
        const auto found = entry_.find(kTls);
        if (found != entry_.end() && !found->is_boolean()) {
            Refuse(place_ + ": " + kTls + " is neither true nor false");
        }
        return found != entry_.end() && found->get<bool>();
    }

    std::optional<unsigned> Timeout() const {
        const auto found = entry_.find(kTimeout);
        if (found == entry_.end()) {
            return std::nullopt;
        }
        const bool is_in_range = found->is_number_unsigned() && found->get<std::uint64_t>() >= kShortestTimeout &&
                                 found->get<std::uint64_t>() <= kLongestTimeout;
        if (!is_in_range) {
            Refuse(place_ + ": " + kTimeout + " is no number of seconds from " + std::to_string(kShortestTimeout) +
                   " to " + std::to_string(kLongestTimeout));
        }
        return found->get<unsigned>();
    }

    const json& entry_;
    std::string place_;
};

json Parse(const std::string& path, const std::string& content) {
    try {
        json document = json::parse(content);
        if (!document.is_object()) {
            Refuse(path + " is not a list of connections");
        }
        return document;
    } catch (const json::exception& error) { // also of a number that is too large
        // "[json.exception.parse_error.101] parse error at line 1, column 2: ..."
        const std::string what = error.what();
        const auto text = what.find("] ");
        Refuse(path + ": " + (text == std::string::npos ? what : what.substr(text + 2)));
    }
}

ordered_json ToJson(const SavedConnection& connection) {
    ordered_json entry{{kHost, connection.host}, {kTls, connection.tls}};
    if (connection.user) {
        entry[kUser] = *connection.user;
    }
    if (connection.password) {
        entry[kPassword] = *connection.password;
    }
    if (connection.timeout) {
        entry[kTimeout] = *connection.timeout;
    }
    return entry;
}

/// A file that others can read is no place for passwords.
void CheckPrivacy(const std::string& path, mode_t mode, const ConnectionStore::Connections& connections) {
    const bool holds_password = std::any_of(connections.begin(), connections.end(),
                                            [](const auto& entry) { return entry.second.password.has_value(); });
    if (holds_password && (mode & kNotForOthers) != 0) {
        Refuse(path + " holds a password and is open to others: chmod 600 it, and think of changing the password");
    }
}

} // namespace

std::optional<ConnectionStore> ConnectionStore::OfUser() {
    std::string folder = Absolute(std::getenv("XDG_CONFIG_HOME")); // a relative path does not count there
    if (folder.empty()) {
        const std::string home = Absolute(std::getenv("HOME"));
        folder = home.empty() ? "" : home + "/.config";
    }
    return folder.empty() ? std::nullopt
                          : std::optional<ConnectionStore>(ConnectionStore(folder + "/cimhttp/connections.json"));
}

ConnectionStore ConnectionStore::NeededOfUser() {
    const auto store = OfUser();
    if (!store) {
        Refuse("there is no folder for named connections: neither HOME nor XDG_CONFIG_HOME is set");
    }
    return *store;
}

ConnectionStore::Connections ConnectionStore::Read() const {
    if (::access(path_.c_str(), F_OK) != 0 && errno == ENOENT) {
        return {};
    }
    const InputFile file(path_);
    file.NeedRegular();
    Connections connections;
    const json document = Parse(path_, file.ReadAll(kLargestFile));
    for (const auto& [name, entry] : document.items()) {
        connections.emplace(name, EntryReader(entry, path_ + ", connection '" + name + "'").Read());
    }
    CheckPrivacy(path_, file.Mode(), connections);
    return connections;
}

void ConnectionStore::Update(const std::function<void(Connections&)>& change) const {
    const PrivateFiles scope;
    MakeFolder();
    const FileLock lock(path_ + ".lock", kPatience);
    Connections connections = Read();
    change(connections);
    Write(connections);
}

void ConnectionStore::MakeFolder() const {
    const fs::path folder = fs::path(path_).parent_path();
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        throw Failure(Failure::kOther, folder.string() + " cannot be made: " + error.message());
    }
}

void ConnectionStore::Write(const Connections& connections) const {
    ordered_json document = ordered_json::object();
    for (const auto& [name, connection] : connections) {
        document[name] = ToJson(connection);
    }
    OutputFile(path_, kOnlyOwner).Replace([&](std::ostream& stream) { stream << document.dump(4) << '\n'; });
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
