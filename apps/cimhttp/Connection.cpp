#include "Connection.h"

#include <strings.h>

#include <algorithm>
#include <array>

#include "Failure.h"
#include "Options.h"

namespace cimhttp {

namespace {

constexpr const char* kDefaultHost = "localhost";

void CheckHost(const std::string& host) {
    const auto colon = host.find(':');
    if (colon != std::string::npos && host.find(':', colon + 1) == std::string::npos) {
        throw Failure(Failure::kUsage,
                      "the host takes no port ('" + host + "'): CIM servers listen on 5988, and with TLS on 5989");
    }
}

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

    std::string Host() const {
        std::string address = Text("address");
        if (address.empty()) {
            throw Failure(Failure::kUsage,
                          document_ + " names no server: give <network address=\"...\"/> there, or --host");
        }
        return address;
    }

    bool Tls() const {
        constexpr std::array<const char*, 4> kYes{"true", "1", "yes", "on"};
        constexpr std::array<const char*, 5> kNo{"", "false", "0", "no", "off"};
        const std::string text = Text("ssl");
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

std::string PasswordOf(const Options& options, const std::string& user) {
    if (options.password) {
        return *options.password;
    }
    if (!options.password_variable) {
        throw Failure(Failure::kUsage, "the user " + user +
                                           " needs a password: give --password-file FILE or set the variable "
                                           "CIMHTTP_PASSWORD");
    }
    return *options.password_variable;
}

} // namespace

Connection ConnectionOf(const Options& options) {
    Connection connection;
    connection.host = options.host.value_or(kDefaultHost);
    CheckHost(connection.host);
    connection.tls = options.tls.value_or(false);
    connection.user = options.user.value_or("");
    if (!connection.user.empty()) {
        connection.password = PasswordOf(options, connection.user);
    }
    return connection;
}

Connection ConnectionOf(const Options& options, const std::map<std::string, std::string>& settings,
                        const std::string& document) {
    const Settings given(settings, document);
    Options merged = options;
    if (!merged.host) {
        merged.host = given.Host();
    }
    if (!merged.tls) {
        merged.tls = given.Tls();
    }
    if (!merged.user) {
        merged.user = given.Text("user");
        if (!merged.password && given.Has("pass")) {
            merged.password = given.Text("pass");
        }
    }
    return ConnectionOf(merged);
}

} // namespace cimhttp
