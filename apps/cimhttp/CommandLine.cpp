#include "CommandLine.h"

#include "Environment.h"
#include "Failure.h"
#include "HelpFormatter.h"
#include "OptionValues.h"
#include "VersionText.h"
#include "connection/Connection.h"
#include "connection/OperationStatistics.h"
#include "connection/OwnLibrary.h"
#include "connection/PasswordFile.h"
#include "text/NearestNames.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace cimhttp {

namespace {

using NQORVYX20::ILogger;

constexpr std::size_t kGreatestNumber = 1000000000; // of what a user counts
constexpr std::size_t kMostParallel = 1000;
constexpr const char* kPluginFile = "libcimhttp.nsp.so";

/// CLI11's texts can have several lines; a failure has one.
std::string FirstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

const Choices<OutputFormat> kFormats{{"table", OutputFormat::kTable}, {"plain", OutputFormat::kPlain},
                                     {"json", OutputFormat::kJson},   {"csv", OutputFormat::kCsv},
                                     {"mof", OutputFormat::kMof},     {"dot", OutputFormat::kDot}};

enum class UnitForm { kScaled, kExact };
const Choices<UnitForm> kUnitForms{{"scaled", UnitForm::kScaled}, {"exact", UnitForm::kExact}};

const Choices<ILogger::EVYXLogSeverity> kLevels{{"error", ILogger::eLogError},
                                                {"warning", ILogger::eLogWarning},
                                                {"info", ILogger::eLogInfo},
                                                {"debug", ILogger::eLogDebug}};

std::string ListedForms(const std::vector<OutputFormat>& formats) {
    std::vector<std::string> words;
    std::transform(formats.begin(), formats.end(), std::back_inserter(words),
                   [](OutputFormat format) { return WordFor(format, kFormats); });
    return Listed(words);
}

/// The forms in a sentence.
std::string FormsText(const std::vector<OutputFormat>& formats) {
    return "Forms of the output (-o): " + ListedForms(formats) + "; " + WordFor(formats.front(), kFormats) +
           " unless given.";
}

struct Parser {
    Options options;
    Command* chosen = nullptr;
    std::string passwordFile;
    std::string helpTopic;
    CLI::App* helpCommand = nullptr;
    std::optional<UnitForm> unitForm;
    CLI::App app{"Reads classes and instances of a remote CIM server through the cimhttp plug-in.", "cimhttp"};

    explicit Parser(const Commands& commands) {
        options.plugin = LibraryBesideProgram(kPluginFile);
        ReadEnvironment(options);
        const HelpLayout layout(options.width);
        app.formatter(std::make_shared<HelpFormatter>(layout));
        app.set_help_flag("-h,--help", "Show this help");
        app.set_version_flag("--version", build_information::VersionText("cimhttp"), "Show the program's version");
        app.footer(
            layout.Prose("cimhttp COMMAND --help tells more about a command, man cimhttp about all.\n\nExample:") +
            layout.CommandLines("cimhttp --host server.example classes '*port'"));
        app.require_subcommand(1);
        app.fallthrough();
        AddConnectionOptions();
        AddOutputOptions();
        for (const auto& command : commands) {
            AddCommand(app, *command, layout);
        }
        AddRecord(commands, layout);
        AddHelp(layout);
    }

    void AddHelp(const HelpLayout& layout) {
        helpCommand = app.add_subcommand("help", "Show this help, or that of a command")->group("Commands");
        helpCommand->add_option("COMMAND", helpTopic, "The command");
        helpCommand->footer(layout.Prose("Example:") + layout.CommandLines("cimhttp help instances"));
    }

    /// What --help says of the command that was asked about, or of the program.
    std::string HelpOfTopic() const {
        if (helpTopic.empty()) {
            return app.get_formatter()->make_help(&app, app.get_name(), CLI::AppFormatMode::Normal);
        }
        const auto commands =
            app.get_subcommands([this](const CLI::App* known) { return known->get_name() == helpTopic; });
        if (commands.empty()) {
            throw Failure(Failure::kUsage, NoSuchCommand(helpTopic) + "; see cimhttp --help");
        }
        return commands.front()->help(app.get_name());
    }

    /// `record FILE` before any of the commands.
    void AddRecord(const Commands& commands, const HelpLayout& layout) {
        auto* const record = app.add_subcommand("record", "Run another command, and record what the server answers");
        record->group("Commands");
        record->add_option("FILE", options.recording, "The file; the recording is added at its end")->required();
        record->require_subcommand(1);
        record->footer(layout.Prose("FILE gets the requests and answers of the command as they are, without passwords; "
                                    "only you may read it. demo-server --replay FILE answers as the server did.\n\n"
                                    "cimhttp --help tells how to choose the server.\n\nExample:") +
                       layout.CommandLines("cimhttp --host server.example record server.rec info"));
        for (const auto& command : commands) {
            AddCommand(*record, *command, layout);
        }
    }

    void AddConnectionOptions() {
        AddText("--host", "HOST", options.host,
                "The server: a name, an address or a URL; localhost unless given, or the connection named 'default'");
        AddText("--connection,-c", "NAME", options.connection,
                "The named connection to use, see 'connection'; several as a pattern, 'rack*', as a list, a,b, or as "
                "@FILE with a name or pattern a line")
            ->excludes("--host");
        AddWholeNumber(app, "--parallel", "N", "Of several servers, connect to this many at once; 32 unless given", 1,
                       kMostParallel, options.parallel);
        AddFlag(app, "--as-completed",
                "Write several servers in the order in which they are done, not that of the list",
                [this](bool isSet) { options.asCompleted = isSet; });
        AddWholeNumber(app, "--port", "N", "Its port; 5988 unless given, with --tls 5989", 1, kHighestPort,
                       options.port);
        AddText("--namespace,-n", "NAME", options.nameSpace,
                std::string("The namespace on the server; ") + kUsualNamespace + " unless given");
        AddTlsOptions();
        AddText("--user,-u", "NAME", options.user,
                "The user to log in as; without --tls, anybody on the way to another machine can read the password, "
                "and a line says so");
        AddText("--password-file", "FILE", passwordFile,
                "A file whose first line is the password, - for standard input; without it the variable "
                "CIMHTTP_PASSWORD counts, and then you are asked");
        AddWholeNumber(app, "--timeout", "SECONDS",
                       "How long to wait for an answer, 120 unless given; connecting takes 20 at most. Of several "
                       "servers, each has this time for all that it is asked",
                       kShortestTimeout, kLongestTimeout, options.timeout);
        AddFlag(app, "--strict",
                "Refuse an answer of which a part cannot be read, instead of showing the rest with status 7",
                [this](bool isSet) { options.strict = isSet; });
        AddText("--plugin", "FILE", options.plugin, "The plug-in to load");
        AddText("--trace", "FILE", options.trace,
                "Write all that is sent and received to this file, with times and without passwords");
        AddFlag(app, "--stats", "At the end, write to the error stream what each kind of operation took",
                [this](bool isSet) { options.statistics = isSet ? std::make_shared<OperationStatistics>() : nullptr; });
        AddChoice(app, "--log", "LEVEL", "Write the log to the error stream: " + Listed(kLevels), kLevels,
                  options.logLevel);
    }

    void AddTlsOptions() {
        AddFlag(app, "--tls",
                "Use HTTPS instead of HTTP, which --tls=false uses; on a terminal, you are asked whether to trust a "
                "server that is not known",
                [this](bool isSet) { options.tls = isSet; });
        AddText("--ca", "FILE", options.tlsSettings.ca,
                "Verify the server by the authorities in this PEM file, or in the files of this folder");
        AddText("--fingerprint", "SHA256", options.tlsSettings.fingerprint,
                "Accept no other certificate of the server than the one with this fingerprint")
            ->excludes("--ca");
        AddText("--cert", "FILE", options.tlsSettings.certificate,
                "A PEM file with your own certificate, for a server that asks for one");
        AddText("--key", "FILE", options.tlsSettings.key, "The PEM file with its key, unless that is in the same");
        AddFlag(app, "--verify",
                "Refuse a server that neither --ca, --fingerprint nor an earlier answer of yours verifies",
                [this](bool isSet) { options.tlsSettings.verify = isSet; });
    }

    template <typename Text>
    CLI::Option* AddText(const std::string& name, const std::string& valueName, Text& target, const std::string& help) {
        return app.add_option(name, target, help)->type_name(valueName);
    }

    void AddOutputOptions() {
        AddChoice(app, "--output,-o", "FORM",
                  "The form of the output: " + Listed(kFormats) + ", as far as the command has it", kFormats,
                  options.format);
        AddChoice(app, "--units", "FORM",
                  "Numbers with units as people write them, scaled (2.3 GHz), or as they are, exact (2300 MHz); scaled "
                  "unless given",
                  kUnitForms, unitForm);
        AddFlag(app, "--verbose", "Mark a number for which its value map has no text, as in '17 (not in the map)'",
                [this](bool isSet) { options.textForm.saysWhatIsNot = isSet; });
    }

    /// What is wrong with the command line and where to read of it, in one line.
    std::string Complaint(const CLI::ParseError& error) const {
        const auto commands = app.get_subcommands();
        const CLI::App* const command = commands.empty() ? nullptr : commands.front();
        const auto unknown = app.remaining(true);
        const std::string text = unknown.empty() ? OwnWords(error) : ComplaintAbout(unknown.front(), command);
        const bool isGeneral = app.get_option_no_throw(text.substr(0, text.find_first_of(": "))) != nullptr;
        return text + "; see cimhttp " + (command == nullptr || isGeneral ? "" : command->get_name() + ' ') + "--help";
    }

    /// The parser's own complaint, which begins with the name of an option or an argument.
    static std::string OwnWords(const CLI::ParseError& error) {
        const std::string text = FirstLine(error.what());
        const std::string name = text.substr(0, text.find_first_of(": "));
        const std::string lastWord = text.substr(text.rfind(' ') + 1);
        if (dynamic_cast<const CLI::ExcludesError*>(&error) != nullptr) {
            return name + " and " + lastWord + " exclude each other: give one of them";
        }
        if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
            return lastWord == "missing" ? name + " needs a value"
                                         : name + " is given " + lastWord + " times: once is enough";
        }
        return text == "A subcommand is required" ? "a command is missing" : text;
    }

    std::string ComplaintAbout(const std::string& word, const CLI::App* command) const {
        if (!word.empty() && word.front() == '-') {
            const std::string option = word.substr(0, word.find('='));
            return "there is no option " + option + DidYouMean(NearestNames(option, OptionNames(command), 1));
        }
        if (command != nullptr) {
            return command->get_name() + " has no use for '" + word + "'";
        }
        return NoSuchCommand(word);
    }

    std::string NoSuchCommand(const std::string& word) const {
        std::vector<std::string> names;
        for (const CLI::App* known : app.get_subcommands({})) {
            names.push_back(known->get_name());
        }
        return "there is no command '" + word + "'" + DidYouMean(NearestNames(word, names));
    }

    /// `--host`, for example, those of a command with it.
    std::vector<std::string> OptionNames(const CLI::App* command) const {
        std::vector<std::string> names;
        for (const CLI::App* owner : {&app, command}) {
            if (owner == nullptr) {
                continue;
            }
            for (const CLI::Option* option : owner->get_options()) {
                for (const std::string& name : option->get_lnames()) {
                    names.push_back("--" + name);
                }
            }
        }
        return names;
    }

    /// The command that the line names, also where something else about the line is wrong; null for none.
    const Command* Asked(const Commands& commands) const {
        auto named = app.get_subcommands();
        while (!named.empty() && !named.front()->get_subcommands().empty()) { // record and its command
            named = named.front()->get_subcommands();
        }
        const auto found = std::find_if(commands.begin(), commands.end(), [&](const auto& command) {
            return !named.empty() && command->Describe().name == named.front()->get_name();
        });
        return found == commands.end() ? nullptr : found->get();
    }

    void CheckFormat() const {
        const CommandDescription description = chosen->Describe();
        const auto& formats = description.formats;
        if (options.format && std::find(formats.begin(), formats.end(), *options.format) == formats.end()) {
            throw Failure(Failure::kUsage, description.name + " does not write " + WordFor(*options.format, kFormats) +
                                               ": it has " + ListedForms(formats));
        }
    }

    void AddCommand(CLI::App& parent, Command& command, const HelpLayout& layout) {
        const CommandDescription description = command.Describe();
        auto* const sub = parent.add_subcommand(description.name, description.help)->group("Commands");
        sub->callback([this, &command] { chosen = &command; });
        sub->footer(Footer(description, layout));
        for (const CommandArgument& argument : description.arguments) {
            sub->add_option(argument.name, *argument.target, argument.help)->required(argument.isRequired);
        }
        for (const CommandOption& option : description.options) {
            std::visit([&](auto* target) { AddOption(*sub, option, *target); }, option.target);
        }
    }

    static std::string Footer(const CommandDescription& description, const HelpLayout& layout) {
        const std::string notes = description.notes.empty() ? "" : description.notes + "\n\n";
        const std::string forms = description.formats.size() < 2 ? "" : FormsText(description.formats) + '\n';
        return layout.Prose(notes + forms + "cimhttp --help tells how to choose the server.\n\nExample:") +
               layout.CommandLines(description.example);
    }

    static void AddOption(CLI::App& sub, const CommandOption& option, bool& target) {
        AddFlag(sub, option.name, option.help, [&target](bool isSet) { target = isSet; });
    }

    static void AddOption(CLI::App& sub, const CommandOption& option, std::optional<std::size_t>& target) {
        AddWholeNumber(sub, option.name, option.valueName, option.help, 0, kGreatestNumber, target);
    }

    static void AddOption(CLI::App& sub, const CommandOption& option, double& target) {
        AddValue(sub, option.name, option.valueName, option.help,
                 [&target](const std::string& text) -> std::optional<std::string> {
                     const auto number = FiniteNumberIn(text);
                     target = number.value_or(target);
                     return number ? std::nullopt : std::optional<std::string>("a number such as 5 or 0.5");
                 });
    }

    template <typename T>
    static void AddOption(CLI::App& sub, const CommandOption& option, T& target) {
        sub.add_option(option.name, target, option.help)->type_name(option.valueName)->allow_extra_args(false);
    }
};

} // namespace

ParsedCommandLine ParseCommandLine(int argc, const char* const* argv, const Commands& commands, const Command*& asked) {
    Parser parser(commands);
    try {
        parser.app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        return {parser.options, nullptr, parser.app.help(), {}};
    } catch (const CLI::CallForVersion& version) {
        return {parser.options, nullptr, std::string(version.what()) + '\n', {}};
    } catch (const CLI::ParseError& error) {
        asked = parser.Asked(commands);
        throw Failure(Failure::kUsage, parser.Complaint(error));
    }
    asked = parser.chosen;
    if (parser.helpCommand->parsed()) {
        return {parser.options, nullptr, parser.HelpOfTopic(), {}};
    }
    parser.CheckFormat();
    parser.options.textForm.isUnscaled = parser.unitForm == UnitForm::kExact;
    std::string warning;
    if (!parser.passwordFile.empty()) {
        const PasswordFile file = ReadPasswordFile(parser.passwordFile);
        parser.options.password = file.password;
        warning = file.warning;
    }
    return {parser.options, parser.chosen, std::string(), warning};
}

} // namespace cimhttp
