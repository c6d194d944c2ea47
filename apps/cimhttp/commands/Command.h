#pragma once

#include "output/OutputFormat.h"

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace cimhttp {

struct Connection;
struct Options;
class ProgressWait;
class Command;
class Plugin;
class ServerRecords;
class Session;
struct FleetContext;

/// One positional argument of a command.
struct CommandArgument {
    std::string name; ///< as the help shows it, `NAME`
    std::string help;
    bool isRequired;
    std::string* target; ///< a member of the command
};

/// One option of a command. What it is given with goes to a member of the command: a flag to a bool, one value to a
/// text or a number, an option that may be repeated to a list.
struct CommandOption {
    using Target = std::variant<bool*, std::string*, std::vector<std::string>*, double*, std::optional<std::size_t>*>;

    std::string name;      ///< `--property`
    std::string valueName; ///< as the help shows it, `NAME`; empty for a flag
    std::string help;
    Target target;
};

/// What the command line knows of a command.
struct CommandDescription {
    std::string name;
    std::string help;
    std::vector<CommandArgument> arguments;
    std::vector<CommandOption> options;
    std::vector<OutputFormat> formats; ///< those that --output may ask for, the usual one first; never none
    std::string example;               ///< command lines, each a line
    std::string notes = {};            ///< more help, see HelpLayout::Prose
};

/// What a command runs with.
struct CommandContext {
    const Options& options;
    std::ostream& output;
    std::ostream& errors;
    ServerRecords* records = nullptr; ///< what takes the rows of one of several servers; null for the only one

    /// The form to write, which is one of those that the command describes; the first of them unless asked for.
    OutputFormat Format(Command& command) const;

    /// The form to write for a command with an option for wide CSV: with it, CSV need not be asked for. Throws
    /// Failure(kUsage) when another form is.
    OutputFormat Format(Command& command, bool isWide) const;

    /// A session with the server that the options name. The user may be asked whether to trust it, see Trusted(). Says
    /// on the error stream when the server is not verified, and when a password goes over the network in plain text.
    /// Throws Failure.
    Session Connect() const;

    /// A session with another connection than the options'.
    Session ConnectTo(const Plugin& plugin, const Connection& connection) const;
    Session ConnectTo(const Plugin& plugin, const Connection& connection, const ProgressWait& wait) const;

    /// Gives these warnings about a connection that was made otherwise.
    void WarnAbout(const Connection& connection) const;

    /// How to wait for a server, as the options say; for one of several servers, in the thread that asks.
    /// `onInterrupt`: see ProgressWait; without it, an interrupt ends the program as it ends others.
    ProgressWait MakeProgressWait(std::function<void()> onInterrupt) const;
    ProgressWait MakeProgressWait() const;

    /// Whether the error stream shows a line with the progress of the only server.
    bool ShowsProgress() const;
};

/// One thing that the program does. Its arguments are members, which the command line fills as Describe() says.
class Command {
  public:
    Command() = default;
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    virtual CommandDescription Describe() = 0;

    /// Returns the exit status. Throws Failure. May run in several threads at once, for a server each.
    virtual int Run(const CommandContext& context) = 0;

    /// Does so for several servers: runs for each of them, see ReadFleet(), unless a command has another way.
    virtual int RunForFleet(const FleetContext& context);

    /// Tells of a failure that ends the program, of the command line, too, before it is read: in a line on the error
    /// stream, unless a command does otherwise. Returns the exit status, usually that of the failure.
    virtual int Tell(const char* failure, int status, std::ostream& output, std::ostream& errors) const;
};

} // namespace cimhttp
