#pragma once

#include "commands/ServerRecords.h"
#include "fleet/ServerList.h"

#include <chrono>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace cimhttp {

class Command;
struct FleetContext;
struct Options;

/// How many servers are connected at once where nobody says otherwise.
constexpr std::size_t kUsualParallel = 32;

/// What came of one of several servers.
struct ServerOutcome {
    ServerRecords& records;
    bool hasFailed;      ///< there may be records nevertheless
    std::string failure; ///< a line without its end; empty where nothing was thrown
};

/// Runs a command for each of several servers, some at once, and writes what comes of it in the form that the command
/// has. What the command says on the error stream follows the results of the server, and names it. Returns the exit
/// status: that of the servers where they have the same; 7 where some results are not whole and no server has failed;
/// 8 otherwise. Throws Failure where the output cannot be written.
int ReadFleet(Command& command, const FleetContext& context, OutputFormat format);

/// As above, with something else that gets the outcomes, in the thread that calls, each before what the error stream
/// gets about the server.
int ReadFleet(Command& command, const FleetContext& context, OutputFormat format,
              const std::function<void(ServerOutcome&)>& take);

/// The exit status for servers with these: see above.
int StatusOfAll(const std::vector<int>& statuses);

/// Ends the program with the exception at hand, while threads still wait for servers: see FleetRun::Steps::leave.
[[noreturn]] void LeaveFleet(std::ostream& errors);

/// How long a server has for all that it is asked.
std::chrono::seconds BudgetOf(const FleetServer& server, const Options& options);

/// The options of one of several servers. Makes its file for the trace.
Options OptionsOf(const FleetServer& server, const Options& options);

} // namespace cimhttp
