#include "web/WebAccess.h"

#include "files/InputFile.h"
#include "files/YamlDocument.h"

#include <cstddef>
#include <filesystem>

namespace cimhttp {

namespace {

constexpr std::size_t kLargestFile = std::size_t{1} << 20U;
constexpr const char* kNeedsCertificates = "RequireAndVerifyClientCert";

class Reader {
  public:
    explicit Reader(const std::string& path)
        : folder_(std::filesystem::path(path).parent_path()), document_(InputFile(path).ReadAll(kLargestFile), path) {}

    WebAccess Read() {
        if (!document_.Root().IsNull()) {
            document_.ForMembers(document_.Root(), "the web configuration",
                                 {{"tls_server_config", [this](const YAML::Node& node) { ReadTls(node); }},
                                  {"http_server_config", [this](const YAML::Node& node) { ReadHttp(node); }},
                                  {"basic_auth_users", [this](const YAML::Node& node) { ReadUsers(node); }}});
        }
        return access_;
    }

  private:
    std::string File(const YAML::Node& node, const std::string& what) const {
        return (folder_ / document_.Text(node, what)).string();
    }

    void ReadTls(const YAML::Node& tls) {
        bool needsCertificates = false;
        document_.ForMembers(
            tls, "tls_server_config",
            {{"cert_file", [&](const YAML::Node& node) { access_.certificate = File(node, "cert_file"); }},
             {"key_file", [&](const YAML::Node& node) { access_.key = File(node, "key_file"); }},
             {"client_ca_file",
              [&](const YAML::Node& node) { access_.clientAuthorities = File(node, "client_ca_file"); }},
             {"client_auth_type", [&](const YAML::Node& node) { needsCertificates = NeedsCertificates(node); }},
             {"min_version", [&](const YAML::Node& node) { access_.leastVersion = VersionIn(node); }}});
        if (access_.certificate.empty() || access_.key.empty()) {
            document_.Fail(tls, "tls_server_config needs cert_file and key_file");
        }
        if (needsCertificates == access_.clientAuthorities.empty()) {
            document_.Fail(tls, std::string("client_ca_file goes with client_auth_type: ") + kNeedsCertificates);
        }
    }

    bool NeedsCertificates(const YAML::Node& node) const {
        const std::string type = document_.Text(node, "client_auth_type");
        if (type != kNeedsCertificates && type != "NoClientCert") {
            document_.Fail(node, "client_auth_type '" + type + "' is not supported: NoClientCert and " +
                                     kNeedsCertificates + " are");
        }
        return type == kNeedsCertificates;
    }

    WebAccess::LeastVersion VersionIn(const YAML::Node& node) const {
        const std::string version = document_.Text(node, "min_version");
        if (version != "TLS12" && version != "TLS13") {
            document_.Fail(node, "min_version '" + version + "' is not supported: TLS12 and TLS13 are");
        }
        return version == "TLS13" ? WebAccess::LeastVersion::kTls13 : WebAccess::LeastVersion::kTls12;
    }

    void ReadHttp(const YAML::Node& http) const {
        document_.ForMembers(http, "http_server_config", {{"http2", [&](const YAML::Node& node) {
                                                               document_.Truth(node, "http2"); // HTTP/1.1 it is
                                                           }}});
    }

    void ReadUsers(const YAML::Node& users) {
        for (const auto& [name, hash] : document_.MembersOf(users, "basic_auth_users")) {
            const std::string text = document_.Text(hash, "the hash of " + name + "'s password");
            if (text.compare(0, 2, "$2") != 0) {
                document_.Fail(hash, "the hash of " + name + "'s password is none of bcrypt, '$2y$...'");
            }
            access_.users.emplace(name, text);
        }
    }

    const std::filesystem::path folder_;
    const YamlDocument document_;
    WebAccess access_;
};

} // namespace

WebAccess WebAccess::InFile(const std::string& path) { return Reader(path).Read(); }

} // namespace cimhttp
