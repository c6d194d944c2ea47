// The demo CIM server: serves this machine's system, file systems, processes ... over CIM-XML until SIGTERM or SIGINT.

#include "VersionText.h"
#include "replay/ReplayListener.h"
#include "server/AccessLog.h"
#include "server/DemoServer.h"

#include <CLI/CLI.hpp>

#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int kMaxPort = 65535;
constexpr std::size_t kMaxVolumes = 10'000'000;
constexpr const char* kPasswordVariable = "DEMO_SERVER_PASSWORD";

struct Arguments {
    demo::DemoServerOptions server;
    std::string user;
    std::string passwordFile;
    std::string usersFile;
    std::string logFile;
    std::string certificateFile;
    std::vector<std::string> schemaFiles;
    /// As in "root/example=example.xml".
    std::vector<std::string> namespaces;
    /// A recording to answer from; nothing else is served then.
    std::string replayFile;
};

/// A namespace and a schema file, as in "root/example=example.xml".
struct NamespaceFile {
    std::string nameSpace;
    std::string file;
};

NamespaceFile SplitNamespace(const std::string& text) {
    const auto end = text.find('=');
    return {text.substr(0, end), end == std::string::npos ? "" : text.substr(end + 1)};
}

/// What is wrong with the argument of --namespace; empty for nothing.
std::string CheckNamespace(const std::string& text) {
    const auto [nameSpace, file] = SplitNamespace(text);
    if (nameSpace.empty() || file.empty()) {
        return text + " is not NAMESPACE=SCHEMA";
    }
    std::string unused = file;
    return CLI::ExistingFile(unused);
}

void Declare(CLI::App& app, Arguments& arguments) {
    app.add_option("--address", arguments.server.address, "Address to listen on")->capture_default_str();
    app.add_option("--http-port", arguments.server.httpPort, "Port for HTTP")
        ->check(CLI::Range(1, kMaxPort))
        ->capture_default_str();
    app.add_option("--https-port", arguments.server.httpsPort, "Port for HTTPS")
        ->check(CLI::Range(1, kMaxPort))
        ->capture_default_str();
    app.add_option("--volumes", arguments.server.volumes, "Number of storage volumes to make up")
        ->check(CLI::Range(std::size_t{0}, kMaxVolumes))
        ->capture_default_str();
    auto* const user = app.add_option("--user", arguments.user,
                                      "Serve only this user; the password comes from --password-file or the variable " +
                                          std::string(kPasswordVariable));
    app.add_option("--password-file", arguments.passwordFile, "File whose first line is the user's password")
        ->check(CLI::ExistingFile);
    app.add_option("--users", arguments.usersFile,
                   "Serve only the users in this file: lines name:password, or name:hash as openssl passwd -6 makes it")
        ->check(CLI::ExistingFile)
        ->excludes(user);
    app.add_option("--log", arguments.logFile,
                   "Write a line for each request to this file, or to standard output for -");
    app.add_option("--schema", arguments.schemaFiles,
                   "Add the classes and instances that this CIM-XML declaration file declares")
        ->check(CLI::ExistingFile)
        ->allow_extra_args(false);
    app.add_option("--namespace", arguments.namespaces,
                   "NAMESPACE=SCHEMA: add the classes and instances of this file to a namespace, which need not be "
                   "there yet")
        ->check(CheckNamespace)
        ->allow_extra_args(false);
    app.add_option("--interop", arguments.server.interop, "Name of the Interop namespace")->capture_default_str();
    auto* const certificate =
        app.add_option("--certificate", arguments.server.certificateFile,
                       "Serve HTTPS with the certificate in this PEM file, with its chain, instead of one made anew")
            ->check(CLI::ExistingFile);
    app.add_option("--key", arguments.server.keyFile,
                   "PEM file with the key of the certificate, if it is not in the same file")
        ->check(CLI::ExistingFile)
        ->needs(certificate);
    app.add_option("--client-ca", arguments.server.clientAuthorityFile,
                   "Serve over HTTPS only clients with a certificate that an authority in this PEM file has signed")
        ->check(CLI::ExistingFile);
    app.add_option("--certificate-out", arguments.certificateFile,
                   "Write the certificate of the HTTPS port to this file, for clients to trust");
    auto* const replay =
        app.add_option(
               "--replay", arguments.replayFile,
               "Answer from this file, in which cimhttp record has recorded another server, and serve nothing else")
            ->check(CLI::ExistingFile);
    for (const char* const other : {"--volumes", "--user", "--users", "--log", "--schema", "--namespace"}) {
        replay->excludes(other);
    }
}

/// A file with secrets that everybody may read or write is accepted, with a warning.
void WarnIfOpen(const std::string& file, const std::string& secrets) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0 || (status.st_mode & (S_IROTH | S_IWOTH)) == 0) {
        return;
    }
    std::ostringstream mode;
    mode << std::oct << std::setw(4) << std::setfill('0') << (status.st_mode & 07777U);
    std::cerr << "demo-server: warning: " << file << " holds " << secrets << ", and everybody may "
              << ((status.st_mode & S_IROTH) != 0 ? "read" : "write") << " it (mode " << mode.str() << "); chmod 600 "
              << file << " helps\n";
}

/// Connections that wait take descriptors, too, so the limit is raised as far as the system allows.
void RaiseDescriptorLimit() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
}

std::string ReadPassword(const std::string& file) {
    if (file.empty()) {
        const char* const password = std::getenv(kPasswordVariable);
        if (!password) {
            throw std::runtime_error(std::string("--user needs --password-file or the variable ") + kPasswordVariable);
        }
        return password;
    }
    std::ifstream stream(file);
    std::string password;
    if (!std::getline(stream, password)) {
        throw std::runtime_error("no password could be read from " + file);
    }
    WarnIfOpen(file, "passwords");
    return password;
}

void WriteFile(const std::string& file, const std::string& text) {
    if (!(std::ofstream(file) << text << std::flush)) {
        throw std::runtime_error("cannot write " + file);
    }
}

std::ifstream Open(const std::string& file) {
    std::ifstream stream(file);
    if (!stream) {
        throw std::runtime_error("cannot read " + file);
    }
    return stream;
}

demo::SchemaSource ReadSource(const std::string& file) {
    std::ostringstream text;
    text << Open(file).rdbuf();
    return {file, text.str()};
}

demo::Users ReadUsers(const Arguments& arguments) {
    demo::Users users;
    if (!arguments.user.empty()) {
        users.Add(arguments.user, ReadPassword(arguments.passwordFile));
    }
    if (arguments.usersFile.empty()) {
        return users;
    }
    std::ifstream stream = Open(arguments.usersFile);
    users = demo::Users::Read(stream, arguments.usersFile);
    WarnIfOpen(arguments.usersFile, "passwords");
    return users;
}

/// The access log with its file.
class LogFile {
  public:
    /// Nothing is logged without a name. Appends to a file.
    explicit LogFile(const std::string& name) {
        if (name.empty()) {
            return;
        }
        if (name != "-") {
            file_.open(name, std::ios::app);
            if (!file_) {
                throw std::runtime_error("cannot write " + name);
            }
        }
        log_.emplace(name == "-" ? std::cout : file_);
    }

    demo::AccessLog* Get() { return log_ ? &*log_ : nullptr; }

  private:
    std::ofstream file_;
    std::optional<demo::AccessLog> log_;
};

/// The signals that end the program. Made before any thread, so that every thread inherits the mask and the signals
/// stay pending.
class EndSignals {
  public:
    EndSignals() {
        sigemptyset(&signals_);
        sigaddset(&signals_, SIGTERM);
        sigaddset(&signals_, SIGINT);
        pthread_sigmask(SIG_BLOCK, &signals_, nullptr);
    }

    void Wait() const {
        int signal = 0;
        sigwait(&signals_, &signal);
    }

  private:
    sigset_t signals_{};
};

void SayReady(const std::string& httpUrl, const std::string& httpsUrl) {
    std::cout << "demo-server: " << httpUrl << " ready\n"
              << "demo-server: " << httpsUrl << " ready" << std::endl;
}

demo::Recording ReadRecording(const std::string& file) {
    std::ostringstream text;
    text << Open(file).rdbuf();
    try {
        return demo::Recording(text.str());
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(file + ": " + error.what());
    }
}

void ReportUnrecorded(const std::string& request) {
    std::cerr << "demo-server: not recorded: " + request + '\n' << std::flush;
}

demo::Certificate CertificateFor(const demo::DemoServerOptions& options) {
    return options.certificateFile.empty() ? demo::Certificate(options.address)
                                           : demo::Certificate::Read(options.certificateFile, options.keyFile);
}

void Replay(const Arguments& arguments, const EndSignals& signals) {
    const demo::DemoServerOptions& options = arguments.server;
    demo::Recording recording = ReadRecording(arguments.replayFile);
    const demo::Certificate certificate = CertificateFor(options);
    const demo::TlsContext tls(certificate, options.clientAuthorityFile);
    const demo::ReplayListener http(recording, ReportUnrecorded, options.address, options.httpPort, nullptr);
    const demo::ReplayListener https(recording, ReportUnrecorded, options.address, options.httpsPort, &tls);
    if (!arguments.certificateFile.empty()) {
        WriteFile(arguments.certificateFile, certificate.Pem());
    }
    SayReady(http.Url(), https.Url());
    signals.Wait();
}

void Serve(Arguments arguments, const EndSignals& signals) {
    LogFile log(arguments.logFile);
    arguments.server.accessLog = log.Get();
    arguments.server.users = ReadUsers(arguments);
    for (const auto& file : arguments.schemaFiles) {
        arguments.server.schemas.push_back(ReadSource(file));
    }
    for (const auto& added : arguments.namespaces) {
        const auto [nameSpace, file] = SplitNamespace(added);
        arguments.server.namespaces[nameSpace].push_back(ReadSource(file));
    }
    const auto& keyFile =
        arguments.server.keyFile.empty() ? arguments.server.certificateFile : arguments.server.keyFile;
    WarnIfOpen(keyFile, "a private key");
    const demo::DemoServer server(std::move(arguments.server));
    if (!arguments.certificateFile.empty()) {
        WriteFile(arguments.certificateFile, server.CertificatePem());
    }
    SayReady(server.HttpUrl(), server.HttpsUrl());
    signals.Wait();
}

void Run(Arguments arguments) {
    const EndSignals signals;
    RaiseDescriptorLimit();
    if (arguments.replayFile.empty()) {
        Serve(std::move(arguments), signals);
    } else {
        Replay(arguments, signals);
    }
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("A small CIM server that shows this machine, in the namespace root/cimv2, and schemas of your own.",
                 "demo-server");
    app.set_version_flag("--version", build_information::VersionText("demo-server"), "Show the program's version");
    Arguments arguments;
    Declare(app, arguments);
    CLI11_PARSE(app, argc, argv);
    try {
        Run(std::move(arguments));
    } catch (const demo::SchemaError& error) {
        for (const auto& problem : error.Problems()) {
            std::cerr << "demo-server: " << problem << '\n';
        }
        return EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::cerr << "demo-server: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
