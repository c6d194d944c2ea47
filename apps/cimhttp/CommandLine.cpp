#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>

#include "Failure.h"
#include "HelpLayout.h"
#include "connection/Connection.h"
#include "connection/ProgramFolder.h"

namespace cimhttp {

namespace {

using NQORVYX20::ILogger;

constexpr const char* kPluginFile = "libcimhttp.nsp.so";

/// The value of a variable of the environment, empty when it is not set.
std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

/// The columns of a terminal; 0 for what is none or does not say.
std::size_t TerminalWidth(int descriptor) {
    winsize size{};
    return ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

/// 0 where the output goes to no terminal and COLUMNS says nothing.
std::size_t OutputWidth() {
    const std::size_t width = TerminalWidth(STDOUT_FILENO);
    if (width > 0) {
        return width;
    }
    return std::strtoul(Variable("COLUMNS").c_str(), nullptr, 10);
}

/// Colours are for terminals that have them and users who did not say otherwise (no-color.org).
bool UsesColor() { return ::isatty(STDOUT_FILENO) == 1 && Variable("NO_COLOR").empty() && Variable("TERM") != "dumb"; }

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

const std::map<std::string, OutputFormat> kFormats{{"table", OutputFormat::kTable},
                                                   {"plain", OutputFormat::kPlain},
                                                   {"json", OutputFormat::kJson},
                                                   {"csv", OutputFormat::kCsv},
                                                   {"mof", OutputFormat::kMof}};

std::vector<std::string> FormatNames() {
    std::vector<std::string> names;
    names.reserve(kFormats.size());
    for (const auto& [name, format] : kFormats) {
        names.push_back(name);
    }
    return names;
}

std::string NameOf(OutputFormat searched) {
    return std::find_if(kFormats.begin(), kFormats.end(), [&](const auto& entry) { return entry.second == searched; })
        ->first;
}

std::string Listed(const std::vector<OutputFormat>& formats) {
    std::string list;
    for (const OutputFormat format : formats) {
        list += (list.empty() ? "" : ", ") + NameOf(format);
    }
    return list;
}

/// The forms in a sentence.
std::string FormsText(const std::vector<OutputFormat>& formats) {
    return "Forms of the output (-o): " + Listed(formats) + "; " + NameOf(formats.front()) + " unless given.";
}

/// Folds help to the terminal, and tells what the user writes rather than what the parser makes of it.
class HelpFormatter : public CLI::Formatter {
  public:
    explicit HelpFormatter(HelpLayout layout) : layout_(layout) {
        label("Positionals", "Arguments");
        label("SUBCOMMAND", "COMMAND");
    }

    std::string make_description(const CLI::App* app) const override {
        return layout_.Prose(app->get_description()) + '\n';
    }

    std::string make_footer(const CLI::App* app) const override { return app->get_footer(); }

    std::string make_usage(const CLI::App* app, std::string name) const override {
        return layout_.Prose(CLI::Formatter::make_usage(app, std::move(name)));
    }

    std::string make_subcommand(const CLI::App* command) const override {
        return layout_.Entry(command->get_name(), command->get_description());
    }

    std::string make_option(const CLI::Option* option, bool is_positional) const override {
        const std::string name = is_positional ? option->get_name(true) : WrittenForm(*option);
        return layout_.Entry(name, option->get_description());
    }

  private:
    /// `-c, --connection NAME`
    static std::string WrittenForm(const CLI::Option& option) {
        std::string form = CLI::detail::find_and_replace(option.get_name(false, true), ",", ", ");
        if (!option.get_type_name().empty()) {
            form += ' ' + option.get_type_name();
        }
        return option.get_expected_max() > 1 ? form + " ..." : form;
    }

    HelpLayout layout_;
};

struct Parser {
    Options options;
    Command* chosen = nullptr;
    std::string password_file;
    CLI::App app{"Reads classes and instances of a remote CIM server through the cimhttp plug-in.", "cimhttp"};

    explicit Parser(const Commands& commands) {
        options.plugin = LibraryBesideProgram(kPluginFile);
        options.width = OutputWidth();
        options.uses_color = UsesColor();
        options.is_output_terminal = ::isatty(STDOUT_FILENO) == 1;
        options.error_stream_width = TerminalWidth(STDERR_FILENO);
        options.is_error_stream_terminal = ::isatty(STDERR_FILENO) == 1;
        const HelpLayout layout(options.width);
        app.formatter(std::make_shared<HelpFormatter>(layout));
        app.set_help_flag("-h,--help", "Show this help");
        app.footer(layout.Prose("cimhttp COMMAND --help tells more of a command, man cimhttp of all.\n\nExample:") +
                   layout.CommandLines("cimhttp --host server.example classes '*port'"));
        app.require_subcommand(1);
        app.fallthrough();
        AddConnectionOptions();
        AddOutputOption();
        for (const auto& command : commands) {
            AddCommand(*command, layout);
        }
    }

    void AddConnectionOptions() {
        static const std::map<std::string, ILogger::EVYXLogSeverity> kLevels{{"error", ILogger::eLogError},
                                                                             {"warning", ILogger::eLogWarning},
                                                                             {"info", ILogger::eLogInfo},
                                                                             {"debug", ILogger::eLogDebug}};
        app.add_option("--host", options.host,
                       "The server: a name, an address or a URL; localhost unless given, or the connection named "
                       "'default'")
            ->type_name("HOST");
        app.add_option("--connection,-c", options.connection, "The named connection to use, see 'connection'")
            ->type_name("NAME")
            ->excludes("--host");
        app.add_flag_function(
            "--tls", [this](std::int64_t count) { options.tls = count > 0; },
            "Use HTTPS on port 5989 instead of HTTP on 5988 (--tls=false the other way round); the server is not "
            "verified");
        app.add_option("--user", options.user, "The user to log in as")->type_name("NAME");
        app.add_option("--password-file", password_file,
                       "A file whose first line is the password; without it the variable CIMHTTP_PASSWORD counts, and "
                       "then you are asked")
            ->type_name("FILE");
        app.add_option("--timeout", options.timeout,
                       "How long to wait for an answer, 120 unless given; connecting takes 20 of them at most")
            ->type_name("SECONDS")
            ->check(CLI::Range(kShortestTimeout, kLongestTimeout).description(""));
        app.add_option("--plugin", options.plugin, "The plug-in to load")->type_name("FILE");
        app.add_option_function<ILogger::EVYXLogSeverity>(
               "--log", [this](const ILogger::EVYXLogSeverity& level) { options.log_level = level; },
               "Write the log to the error stream: error, warning, info or debug")
            ->transform(CLI::CheckedTransformer(kLevels, CLI::ignore_case).description(""))
            ->type_name("LEVEL");
    }

    void AddOutputOption() {
        app.add_option_function<std::string>(
               "--output,-o", [this](const std::string& name) { options.format = kFormats.at(name); },
               "The form of the output: table, plain, json, csv or mof, as far as the command has it")
            ->transform(CLI::IsMember(FormatNames(), CLI::ignore_case).description(""))
            ->type_name("FORM");
    }

    void CheckFormat() const {
        const CommandDescription description = chosen->Describe();
        const auto& formats = description.formats;
        if (options.format && std::find(formats.begin(), formats.end(), *options.format) == formats.end()) {
            throw Failure(Failure::kUsage,
                          description.name + " does not write " + NameOf(*options.format) + ": " +
                              (formats.empty() ? "it has one form only" : "it has " + Listed(formats)));
        }
    }

    void ReadPasswords() {
        if (!password_file.empty()) {
            options.password = ReadPasswordFile(password_file);
        }
        if (const char* const variable = std::getenv("CIMHTTP_PASSWORD")) {
            options.password_variable = variable;
        }
    }

    void AddCommand(Command& command, const HelpLayout& layout) {
        const CommandDescription description = command.Describe();
        auto* const sub = app.add_subcommand(description.name, description.help)->group("Commands");
        sub->callback([this, &command] { chosen = &command; });
        sub->footer(Footer(description, layout));
        for (const CommandArgument& argument : description.arguments) {
            sub->add_option(argument.name, *argument.target, argument.help)->required(argument.is_required);
        }
        for (const CommandOption& option : description.options) {
            std::visit([&](auto* target) { AddOption(*sub, option, *target); }, option.target);
        }
    }

    static std::string Footer(const CommandDescription& description, const HelpLayout& layout) {
        const std::string notes = description.notes.empty() ? "" : description.notes + "\n\n";
        const std::string forms = description.formats.empty() ? "" : FormsText(description.formats) + '\n';
        return layout.Prose(notes + forms + "cimhttp --help tells how to choose the server.\n\nExample:") +
               layout.CommandLines(description.example);
    }

    static void AddOption(CLI::App& sub, const CommandOption& option, bool& target) {
        sub.add_flag(option.name, target, option.help);
    }

    template <typename T>
    static void AddOption(CLI::App& sub, const CommandOption& option, T& target) {
        sub.add_option(option.name, target, option.help)->type_name(option.value_name)->allow_extra_args(false);
    }
};

} // namespace

ParsedCommandLine ParseCommandLine(int argc, const char* const* argv, const Commands& commands) {
    Parser parser(commands);
    try {
        parser.app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        return {parser.options, nullptr, parser.app.help()};
    } catch (const CLI::ParseError& error) {
        throw Failure(Failure::kUsage, FirstLine(error.what()) + " (see cimhttp --help)");
    }
    parser.CheckFormat();
    parser.ReadPasswords();
    return {parser.options, parser.chosen, std::string()};
}

} // namespace cimhttp
