#include "Program.h"

#include <boost/make_shared.hpp>

#include <exception>
#include <ostream>

#include "ClassCommand.h"
#include "ClassesCommand.h"
#include "CollectCommand.h"
#include "CommandLine.h"
#include "Connection.h"
#include "Failure.h"
#include "FailureLog.h"
#include "InfoCommand.h"
#include "InstancesCommand.h"
#include "Session.h"
#include "host/TRootObject.h"

namespace cimhttp {

namespace {

/// The host's logger while the program runs.
class LoggerScope {
  public:
    explicit LoggerScope(boost::shared_ptr<NQORVYX20::ILogger> logger) {
        NQORVYX20::TRootObject::SetCoreLogger(std::move(logger));
    }
    ~LoggerScope() { NQORVYX20::TRootObject::SetCoreLogger(boost::shared_ptr<NQORVYX20::ILogger>()); }
    LoggerScope(const LoggerScope&) = delete;
    LoggerScope& operator=(const LoggerScope&) = delete;
};

void RunCommand(const Options& options, Session& session, std::ostream& output) {
    switch (options.command) {
    case Options::Command::kInfo:
        RunInfoCommand(session, output);
        break;
    case Options::Command::kClasses:
        RunClassesCommand(session, options.name, output);
        break;
    case Options::Command::kClass:
        RunClassCommand(session, options.name, output);
        break;
    case Options::Command::kInstances:
        RunInstancesCommand(session, options, output);
        break;
    case Options::Command::kCollect: // connects by its document
    case Options::Command::kNone:
        break;
    }
}

/// Returns the exit status.
int RunConnected(const Options& options, FailureLog& log, std::ostream& output, std::ostream& errors) {
    if (options.command == Options::Command::kCollect) {
        return RunCollectCommand(Plugin(options.plugin), options, log, output, errors) ? 0 : Failure::kIncomplete;
    }
    const Connection connection = ConnectionOf(options);
    Session session(Plugin(options.plugin), connection, log);
    RunCommand(options, session, output);
    return 0;
}

int RunOptions(const Options& options, std::ostream& output, std::ostream& errors) {
    const auto log = boost::make_shared<FailureLog>(errors, options.log_level);
    const LoggerScope scope(log);
    const int status = RunConnected(options, *log, output, errors);
    output.flush();
    if (!output) {
        throw Failure(Failure::kOther, "the output could not be written");
    }
    if (status == 0 && log->ErrorCount() > 0 && !options.log_level) {
        errors << "cimhttp: not everything could be read; --log error shows what was left out\n";
    }
    return status;
}

} // namespace

int RunProgram(int argc, const char* const* argv, std::ostream& output, std::ostream& errors) {
    try {
        const ParsedCommandLine parsed = ParseCommandLine(argc, argv);
        if (!parsed.help.empty()) {
            output << parsed.help;
            return 0;
        }
        return RunOptions(parsed.options, output, errors);
    } catch (const Failure& failure) {
        errors << "cimhttp: " << failure.what() << '\n';
        return failure.Status();
    } catch (const std::exception& failure) {
        errors << "cimhttp: " << failure.what() << '\n';
        return Failure::kOther;
    }
}

} // namespace cimhttp
