#include "CommandLine.h"

#include "Choices.h"
#include "Environment.h"
#include "Failure.h"
#include "HelpFormatter.h"
#include "connection/Connection.h"
#include "connection/OperationStatistics.h"
#include "connection/PasswordFile.h"
#include "connection/ProgramFolder.h"
#include "text/NearestNames.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace cimhttp {

namespace {

using NQORVYX20::ILogger;

constexpr std::size_t kGreatestNumber = 1000000000; // of what a user counts
constexpr const char *kPluginFile = "libcimhttp.nsp.so";

/// CLI11's texts can have several lines; a failure has one.
std::string FirstLine(const std::string &text) {
  return text.substr(0, text.find('\n'));
}

const Choices<OutputFormat> kFormats{
    {"table", OutputFormat::kTable}, {"plain", OutputFormat::kPlain},
    {"json", OutputFormat::kJson},   {"csv", OutputFormat::kCsv},
    {"mof", OutputFormat::kMof},     {"dot", OutputFormat::kDot}};

enum class UnitForm { kScaled, kExact };
const Choices<UnitForm> kUnitForms{{"scaled", UnitForm::kScaled},
                                   {"exact", UnitForm::kExact}};

const Choices<ILogger::EVYXLogSeverity> kLevels{
    {"error", ILogger::eLogError},
    {"warning", ILogger::eLogWarning},
    {"info", ILogger::eLogInfo},
    {"debug", ILogger::eLogDebug}};

std::string ListedForms(const std::vector<OutputFormat> &formats) {
  std::vector<std::string> words;
  std::transform(formats.begin(), formats.end(), std::back_inserter(words),
                 [](OutputFormat format) { return WordFor(format, kFormats); });
  return Listed(words);
}

/// The forms in a sentence.
std::string FormsText(const std::vector<OutputFormat> &formats) {
  return "Forms of the output (-o): " + ListedForms(formats) + "; " +
         WordFor(formats.front(), kFormats) + " unless given.";
}

struct Parser {
  Options options;
  Command *chosen = nullptr;
  std::string passwordFile;
  std::optional<UnitForm> unitForm;
  CLI::App app{"Reads classes and instances of a remote CIM server through the "
               "cimhttp plug-in.",
               "cimhttp"};

  explicit Parser(const Commands &commands) {
    options.plugin = LibraryBesideProgram(kPluginFile);
    ReadEnvironment(options);
    const HelpLayout layout(options.width);
    app.formatter(std::make_shared<HelpFormatter>(layout));
    app.set_help_flag("-h,--help", "Show this help");
    app.set_version_flag("--version", "cimhttp " CIMHTTP_VERSION,
                         "Show the program's version");
    app.footer(
        layout.Prose("cimhttp COMMAND --help tells more of a command, man "
                     "cimhttp of all.\n\nExample:") +
        layout.CommandLines("cimhttp --host server.example classes '*port'"));
    app.require_subcommand(1);
    app.fallthrough();
    AddConnectionOptions();
    AddOutputOptions();
    for (const auto &command : commands) {
      AddCommand(app, *command, layout);
    }
    AddRecord(commands, layout);
  }

  /// `record FILE` before any of the commands.
  void AddRecord(const Commands &commands, const HelpLayout &layout) {
    auto *const record = app.add_subcommand(
        "record", "Run another command, and record what the server answers");
    record->group("Commands");
    record
        ->add_option("FILE", options.recording,
                     "The file; what is in it already stays before it")
        ->required();
    record->require_subcommand(1);
    record->footer(
        layout.Prose(
            "FILE gets the requests and answers of the command as they are, "
            "without passwords; "
            "nobody else may read it. demo-server --replay FILE answers as the "
            "server did.\n\n"
            "cimhttp --help tells how to choose the server.\n\nExample:") +
        layout.CommandLines(
            "cimhttp --host server.example record server.rec info"));
    for (const auto &command : commands) {
      AddCommand(*record, *command, layout);
    }
  }

  void AddConnectionOptions() {
    app.add_option("--host", options.host,
                   "The server: a name, an address or a URL; localhost unless "
                   "given, or the connection named "
                   "'default'")
        ->type_name("HOST");
    app.add_option("--connection,-c", options.connection,
                   "The named connection to use, see 'connection'")
        ->type_name("NAME")
        ->excludes("--host");
    app.add_option("--port", options.port,
                   "Its port; 5988 unless given, with --tls 5989")
        ->type_name("N")
        ->check(CLI::Range(1, kHighestPort).description(""));
    app.add_option("--namespace,-n", options.nameSpace,
                   std::string("The namespace on the server; ") +
                       kUsualNamespace + " unless given")
        ->type_name("NAME");
    AddTlsOptions();
    app.add_option("--user,-u", options.user,
                   "The user to log in as; without --tls, anybody on the way "
                   "to another machine can read the "
                   "password, and a line says so")
        ->type_name("NAME");
    app.add_option("--password-file", passwordFile,
                   "A file whose first line is the password; without it the "
                   "variable CIMHTTP_PASSWORD counts, and "
                   "then you are asked")
        ->type_name("FILE");
    app.add_option("--timeout", options.timeout,
                   "How long to wait for an answer, 120 unless given; "
                   "connecting takes 20 of them at most")
        ->type_name("SECONDS")
        ->check(CLI::Range(kShortestTimeout, kLongestTimeout).description(""));
    app.add_flag("--strict", options.strict,
                 "Refuse an answer of which a part cannot be read, instead of "
                 "showing the rest with status 7");
    app.add_option("--plugin", options.plugin, "The plug-in to load")
        ->type_name("FILE");
    AddText("--trace", "FILE", options.trace,
            "Write all that is sent and received to this file, with times and "
            "without passwords");
    app.add_flag_function(
        "--stats",
        [this](std::int64_t count) {
          options.statistics =
              count > 0 ? std::make_shared<OperationStatistics>() : nullptr;
        },
        "At the end, write to the error stream what each kind of operation "
        "took");
    AddChoice("--log", "LEVEL",
              "Write the log to the error stream: " + Listed(kLevels), kLevels,
              options.logLevel);
  }

  void AddTlsOptions() {
    AddFlag("--tls", options.tls,
            "Use HTTPS instead of HTTP (--tls=false the other way round); on a "
            "terminal, you are asked whether to "
            "trust a server that is not known");
    AddText("--ca", "FILE", options.tlsSettings.ca,
            "Verify the server by the authorities in this PEM file, or in the "
            "files of this folder");
    AddText("--fingerprint", "SHA256", options.tlsSettings.fingerprint,
            "Accept no other certificate of the server than the one with this "
            "fingerprint")
        ->excludes("--ca");
    AddText(
        "--cert", "FILE", options.tlsSettings.certificate,
        "A PEM file with your own certificate, for a server that asks for one");
    AddText("--key", "FILE", options.tlsSettings.key,
            "The PEM file with its key, unless that is in the same");
    AddFlag("--verify", options.tlsSettings.verify,
            "Refuse a server that neither --ca, --fingerprint nor an earlier "
            "answer of yours verifies");
  }

  void AddFlag(const std::string &name, std::optional<bool> &target,
               const std::string &help) {
    app.add_flag_function(
        name, [&target](std::int64_t count) { target = count > 0; }, help);
  }

  CLI::Option *AddText(const std::string &name, const std::string &valueName,
                       std::optional<std::string> &target,
                       const std::string &help) {
    return app.add_option(name, target, help)->type_name(valueName);
  }

  void AddOutputOptions() {
    AddChoice("--output,-o", "FORM",
              "The form of the output: " + Listed(kFormats) +
                  ", as far as the command has it",
              kFormats, options.format);
    AddChoice("--units", "FORM",
              "Numbers with units as people write them, scaled (2.3 GHz), or "
              "as they are, exact (2300 MHz); scaled "
              "unless given",
              kUnitForms, unitForm);
    app.add_flag("--verbose", options.textForm.saysWhatIsNot,
                 "Say of a number that its value map has no text for it, as in "
                 "'17 (not in the map)'");
  }

  template <typename T>
  void AddChoice(const std::string &name, const std::string &valueName,
                 const std::string &help, const Choices<T> &choices,
                 std::optional<T> &target) {
    app.add_option(
           name,
           [name, &choices, &target](const CLI::results_t &words) {
             target = Chosen(words.front(), choices);
             if (!target) {
               throw CLI::ValidationError(name.substr(0, name.find(',')),
                                          "there is no '" + words.front() +
                                              "'; give " + Listed(choices));
             }
             return true;
           },
           help)
        ->type_name(valueName);
  }

  /// What is wrong with the command line and where to read of it, in one line.
  std::string Complaint(const CLI::ParseError &error) const {
    const auto commands = app.get_subcommands();
    const CLI::App *const command =
        commands.empty() ? nullptr : commands.front();
    const auto unknown = app.remaining(true);
    std::string text = FirstLine(error.what());
    if (!unknown.empty()) {
      text = ComplaintAbout(unknown.front(), command);
    } else if (error.get_name() == "RequiredError" &&
               text == "A subcommand is required") {
      text = "a command is missing";
    }
    const bool isGeneral =
        app.get_option_no_throw(text.substr(0, text.find(':'))) != nullptr;
    return text + "; see cimhttp " +
           (command == nullptr || isGeneral ? "" : command->get_name() + ' ') +
           "--help";
  }

  std::string ComplaintAbout(const std::string &word,
                             const CLI::App *command) const {
    if (!word.empty() && word.front() == '-') {
      const std::string option = word.substr(0, word.find('='));
      return "there is no option " + option +
             DidYouMean(NearestNames(option, OptionNames(command), 1));
    }
    if (command != nullptr) {
      return command->get_name() + " has no use for '" + word + "'";
    }
    std::vector<std::string> names;
    for (const CLI::App *known : app.get_subcommands({})) {
      names.push_back(known->get_name());
    }
    return "there is no command '" + word + "'" +
           DidYouMean(NearestNames(word, names));
  }

  /// `--host`, for example, those of a command with it.
  std::vector<std::string> OptionNames(const CLI::App *command) const {
    std::vector<std::string> names;
    for (const CLI::App *owner : {&app, command}) {
      if (owner == nullptr) {
        continue;
      }
      for (const CLI::Option *option : owner->get_options()) {
        for (const std::string &name : option->get_lnames()) {
          names.push_back("--" + name);
        }
      }
    }
    return names;
  }

  void CheckFormat() const {
    const CommandDescription description = chosen->Describe();
    const auto &formats = description.formats;
    if (options.format && std::find(formats.begin(), formats.end(),
                                    *options.format) == formats.end()) {
      throw Failure(Failure::kUsage, description.name + " does not write " +
                                         WordFor(*options.format, kFormats) +
                                         ": it has " + ListedForms(formats));
    }
  }

  void AddCommand(CLI::App &parent, Command &command,
                  const HelpLayout &layout) {
    const CommandDescription description = command.Describe();
    auto *const sub = parent.add_subcommand(description.name, description.help)
                          ->group("Commands");
    sub->callback([this, &command] { chosen = &command; });
    sub->footer(Footer(description, layout));
    for (const CommandArgument &argument : description.arguments) {
      sub->add_option(argument.name, *argument.target, argument.help)
          ->required(argument.isRequired);
    }
    for (const CommandOption &option : description.options) {
      std::visit([&](auto *target) { AddOption(*sub, option, *target); },
                 option.target);
    }
  }

  static std::string Footer(const CommandDescription &description,
                            const HelpLayout &layout) {
    const std::string notes =
        description.notes.empty() ? "" : description.notes + "\n\n";
    const std::string forms = description.formats.size() < 2
                                  ? ""
                                  : FormsText(description.formats) + '\n';
    return layout.Prose(
               notes + forms +
               "cimhttp --help tells how to choose the server.\n\nExample:") +
           layout.CommandLines(description.example);
  }

  static void AddOption(CLI::App &sub, const CommandOption &option,
                        bool &target) {
    sub.add_flag(option.name, target, option.help);
  }

  static void AddOption(CLI::App &sub, const CommandOption &option,
                        std::optional<std::size_t> &target) {
    sub.add_option(option.name, target, option.help)
        ->type_name(option.valueName)
        ->check(CLI::Range(std::size_t{0}, kGreatestNumber).description(""));
  }

  template <typename T>
  static void AddOption(CLI::App &sub, const CommandOption &option, T &target) {
    sub.add_option(option.name, target, option.help)
        ->type_name(option.valueName)
        ->allow_extra_args(false);
  }
};

} // namespace

ParsedCommandLine ParseCommandLine(int argc, const char *const *argv,
                                   const Commands &commands) {
  Parser parser(commands);
  try {
    parser.app.parse(argc, argv);
  } catch (const CLI::CallForHelp &) {
    return {parser.options, nullptr, parser.app.help(), {}};
  } catch (const CLI::CallForVersion &version) {
    return {parser.options, nullptr, std::string(version.what()) + '\n', {}};
  } catch (const CLI::ParseError &error) {
    throw Failure(Failure::kUsage, parser.Complaint(error));
  } catch (const std::invalid_argument
               &) { // the library's, about what is behind a flag's equals sign
    throw Failure(Failure::kUsage, "behind an option without a value, as in "
                                   "--tls=false, is true or false");
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
