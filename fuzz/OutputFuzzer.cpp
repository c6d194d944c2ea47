// The answers of a server (see CimAnswers), shown on a terminal by the commands of the program, in each form that they
// have: whatever the server says, the terminal is neither steered nor deceived.
//
// The first line of the input says what is shown: its letters choose the command, the form, the width with the colours,
// and the options of the command.

#include "CimAnswers.h"
#include "Cost.h"
#include "Failure.h"
#include "LoopbackServer.h"
#include "Options.h"
#include "SilentLog.h"
#include "TerminalSafety.h"
#include "commands/Command.h"
#include "commands/Commands.h"
#include "text/TerminalText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <variant>

using cimhttp::Command;
using cimhttp::CommandDescription;

namespace {

constexpr std::uint16_t kHttpPort = 5988;
constexpr unsigned kTimeoutSeconds = 5;
constexpr const char* kClass = "A";
constexpr const char* kPath = "A.K=\"1\"";

/// The commands that show what a server says, and end.
constexpr std::array<std::string_view, 7> kCommands{"classes",    "tree",      "class",   "methods",
                                                    "qualifiers", "instances", "instance"};
constexpr std::array<std::size_t, 4> kWidths{0, 12, 80, 200};

LoopbackServer& Server() {
    static LoopbackServer server(kHttpPort);
    return server;
}

std::unique_ptr<Command> MakeCommand(std::string_view name) {
    auto commands = cimhttp::AllCommands();
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&](const auto& command) { return command->Describe().name == name; });
    return std::move(*found);
}

/// The letters of an input's first line, as numbers.
class Choices {
  public:
    explicit Choices(std::string_view line) : line_(line) {}

    std::size_t Next() {
        if (line_.empty()) {
            return 0;
        }
        const auto letter = static_cast<unsigned char>(line_.front());
        line_.remove_prefix(1);
        return letter % std::size_t{64};
    }

    template <typename List>
    const auto& OneOf(const List& list) {
        return list[Next() % list.size()];
    }

  private:
    std::string_view line_;
};

/// Gives a command what it must be given, and of the other things those that the bits choose.
void SetArguments(const CommandDescription& description, std::size_t bits) {
    for (const auto& argument : description.arguments) {
        if (argument.isRequired) {
            *argument.target = argument.name == "PATH" ? kPath : kClass;
        }
    }
    for (const auto& option : description.options) {
        if (bits % 2 != 0) {
            if (auto* const* const flag = std::get_if<bool*>(&option.target)) {
                **flag = true;
            } else if (auto* const* const text = std::get_if<std::string*>(&option.target)) {
                **text = kClass;
            }
        }
        bits /= 2;
    }
}

void Show(std::string_view line) {
    Choices choices(line);
    const auto command = MakeCommand(choices.OneOf(kCommands));
    cimhttp::Options options;
    options.host = Server().Address();
    options.timeout = kTimeoutSeconds;
    options.plugin = CIMHTTP_PLUGIN;
    options.format = choices.OneOf(command->Describe().formats);
    const std::size_t look = choices.Next();
    options.width = kWidths[look % kWidths.size()];
    options.usesColor = look / kWidths.size() % 2 != 0;
    options.isOutputTerminal = true;
    SetArguments(command->Describe(), choices.Next());
    std::ostringstream output;
    std::ostringstream errors;
    try {
        command->Run({options, output, errors});
    } catch (const cimhttp::Failure& failure) {
        errors << cimhttp::Printable(failure.what()) << '\n'; // as the program does
    }
    RequireSafeForTerminals(output.str(), options.usesColor);
    RequireSafeForTerminals(errors.str(), false);
}

} // namespace

/// Loads the libraries of the program, too, so that the fuzzing engine knows them from the beginning.
extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    SilentLog::Install();
    Show("");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(size != 0 ? reinterpret_cast<const char*>(data) : "", size);
    const std::size_t line = std::min(input.find('\n'), input.size());
    CimAnswers answers(input.substr(std::min(line + 1, input.size())));
    Server().SetAnswers([&](const std::string& request) { return answers.To(request); });
    {
        const CostGuard guard(kDialogueBounds, size);
        Show(input.substr(0, line));
    }
    Server().SetAnswers({});
    return 0;
}
