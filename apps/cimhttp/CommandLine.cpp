#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <map>

#include "Failure.h"
#include "ProgramFolder.h"

namespace cimhttp {

namespace {

using NQORVYX20::ILogger;

constexpr std::size_t kWidthWithoutTerminal = 120;
constexpr const char* kPluginFile = "libcimhttp.nsp.so";

constexpr const char* kCollectHelp =
    R"(The document names the server and the classes:

    <vyx version="1">
        <network address="server.example"/>
        <network user="operator"/>
        <network pass="secret"/>
        <network ssl="true"/>
        <class name="CIM_ComputerSystem"/>
    </vyx>

ssl is true, 1, yes or on for HTTPS. What --host, --tls, --user and
--password-file say counts more than the document, and a --user takes no
password from it. The password stands there in plain text: let only its owner
read the file (chmod 600), or leave it out and use --password-file or the
variable CIMHTTP_PASSWORD.

The exit status is 7 when a class could not be read: the error stream names it,
the others are written, and "complete" is false.)";

std::size_t OutputWidth() {
    winsize size{};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        return size.ws_col;
    }
    const char* const columns = std::getenv("COLUMNS");
    const unsigned long given = columns == nullptr ? 0 : std::strtoul(columns, nullptr, 10);
    return given > 0 ? given : kWidthWithoutTerminal;
}

std::string ReadPasswordFile(const std::string& path) {
    std::ifstream file(path);
    std::string password;
    if (!std::getline(file, password)) {
        throw Failure(Failure::kUsage, "the password file " + path + " cannot be read or is empty");
    }
    if (!password.empty() && password.back() == '\r') {
        password.pop_back();
    }
    return password;
}

/// CLI11's texts can have several lines; a failure has one.
std::string FirstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

struct Parser {
    Options options;
    std::string password_file;
    CLI::App app{"Reads classes and instances of a remote CIM server through the cimhttp plug-in.", "cimhttp"};

    Parser() {
        options.plugin = LibraryBesideProgram(kPluginFile);
        options.width = OutputWidth();
        options.is_error_stream_terminal = ::isatty(STDERR_FILENO) == 1;
        app.require_subcommand(1);
        app.fallthrough();
        AddConnectionOptions();
        AddCommands();
    }

    void AddConnectionOptions() {
        static const std::map<std::string, ILogger::EVYXLogSeverity> kLevels{{"error", ILogger::eLogError},
                                                                             {"warning", ILogger::eLogWarning},
                                                                             {"info", ILogger::eLogInfo},
                                                                             {"debug", ILogger::eLogDebug}};
        app.add_option("--host", options.host, "The server's name or address; localhost unless given");
        app.add_flag_function(
            "--tls", [this](std::int64_t count) { options.tls = count > 0; },
            "Use HTTPS on port 5989 instead of HTTP on 5988 (--tls=false the other way round); the server is not "
            "verified");
        app.add_option("--user", options.user, "The user to log in as");
        app.add_option("--password-file", password_file,
                       "A file whose first line is the password; without it the variable CIMHTTP_PASSWORD counts");
        app.add_option("--plugin", options.plugin, "The plug-in to load")->capture_default_str();
        app.add_option_function<ILogger::EVYXLogSeverity>(
               "--log", [this](const ILogger::EVYXLogSeverity& level) { options.log_level = level; },
               "Write the log to the error stream: error, warning, info or debug")
            ->transform(CLI::CheckedTransformer(kLevels, CLI::ignore_case).description(""))
            ->type_name("LEVEL");
    }

    void ReadPasswords() {
        if (!password_file.empty()) {
            options.password = ReadPasswordFile(password_file);
        }
        if (const char* const variable = std::getenv("CIMHTTP_PASSWORD")) {
            options.password_variable = variable;
        }
    }

    CLI::App* AddCommand(const char* name, const char* description, Options::Command command) {
        return app.add_subcommand(name, description)->callback([this, command] { options.command = command; });
    }

    void AddCollectCommand() {
        auto* const collect =
            AddCommand("collect", "Write the classes that a document names, with all instances, as JSON",
                       Options::Command::kCollect);
        collect->add_option("FILE", options.name, "The requested-class document")->required();
        collect->add_option("--out", options.out_file, "The file to write or replace; the standard output without it")
            ->type_name("FILE");
        collect->footer(kCollectHelp);
    }

    void AddCommands() {
        AddCommand("info", "Show the plug-in, its provider and the server", Options::Command::kInfo);
        AddCommand("classes", "List the names of the server's classes", Options::Command::kClasses)
            ->add_option("PATTERN", options.name, "Only names that match, such as 'CIM_*Port'; case does not matter");
        AddCommand("class", "Show a class as MOF", Options::Command::kClass)
            ->add_option("NAME", options.name, "The class")
            ->required();
        auto* const instances = AddCommand("instances", "Show the instances of a class", Options::Command::kInstances);
        instances->add_option("NAME", options.name, "The class")->required();
        instances->add_option("--property", options.properties, "Show only this property; may be given several times")
            ->type_name("NAME")
            ->allow_extra_args(false);
        instances->add_flag("--deep", options.deep, "Include the instances of subclasses");
        instances->add_flag("--raw", options.raw, "Show values as they are, not by their value maps and units");
        AddCollectCommand();
    }
};

} // namespace

ParsedCommandLine ParseCommandLine(int argc, const char* const* argv) {
    Parser parser;
    try {
        parser.app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        return {parser.options, parser.app.help()};
    } catch (const CLI::ParseError& error) {
        throw Failure(Failure::kUsage, FirstLine(error.what()) + " (see cimhttp --help)");
    }
    parser.ReadPasswords();
    return {parser.options, std::string()};
}

} // namespace cimhttp
