#include "Program.h"

#include "CommandLine.h"
#include "Failure.h"
#include "FailureLog.h"
#include "LoggerScope.h"
#include "commands/Commands.h"
#include "commands/FleetContext.h"
#include "connection/OperationStatistics.h"
#include "connection/TraceFile.h"
#include "fleet/ServerFile.h"
#include "fleet/ServerList.h"
#include "fleet/ServerLog.h"
#include "fleet/SinkStream.h"
#include "output/OutputGuard.h"
#include "text/TerminalText.h"

#include <boost/make_shared.hpp>

#include <exception>
#include <filesystem>
#include <memory>
#include <new>
#include <ostream>
#include <stdexcept>

namespace cimhttp {

namespace {

/// Writes what operations took, if that is wanted, however a command ends.
class StatisticsAtEnd {
  public:
    StatisticsAtEnd(const Options& options, std::ostream& errors) : statistics_(options.statistics), errors_(errors) {}
    ~StatisticsAtEnd() {
        try {
            if (statistics_) {
                statistics_->Write(errors_);
            }
        } catch (...) {
            // for want of memory, of which the command has to tell
        }
    }
    StatisticsAtEnd(const StatisticsAtEnd&) = delete;
    StatisticsAtEnd& operator=(const StatisticsAtEnd&) = delete;

  private:
    const std::shared_ptr<OperationStatistics> statistics_;
    std::ostream& errors_;
};

void TellOfRecording(const std::string& file, std::ostream& errors) {
    errors << "cimhttp: " << Printable(file)
           << " gets all that the server tells, without passwords; look at it before you pass it on" << std::endl;
}

void StartRecording(const std::string& file, std::ostream& errors) {
    PrepareRecording(file);
    TellOfRecording(file, errors);
}

void CheckRecording(const Options& options) {
    if (options.recording && options.trace) {
        throw Failure(Failure::kUsage, "a recording is a trace, too: leave out --trace");
    }
}

/// Each server has a trace, or a recording, of its own.
void CheckServerFile(const std::optional<std::string>& file, const char* what) {
    if (file && !IsServerFilePattern(*file)) {
        throw Failure(Failure::kUsage, std::string(what) +
                                           " of several servers needs a file for each: give a name "
                                           "with {server} in it, such as " +
                                           *file + ".{server}");
    }
}

/// Runs the command for several servers.
int RunForFleet(Command& command, std::vector<FleetServer> servers, const Options& options, std::ostream& output,
                std::ostream& errors) {
    const SinkStream::Sink sink = SharedSink(errors); // the log's messages come from several threads
    SinkStream errorStream(sink);
    SinkStream logStream(sink);
    const LoggerScope scope(boost::make_shared<ServerLog>(boost::make_shared<FailureLog>(logStream, options.logLevel)));
    const StatisticsAtEnd statistics(options, errors);
    CheckRecording(options);
    CheckServerFile(options.trace, "a trace");
    CheckServerFile(options.recording, "a recording");
    if (options.recording) {
        TellOfRecording(*options.recording, errors);
    }
    const int status = command.RunForFleet({options, std::move(servers), output, errorStream});
    output.flush();
    return status;
}

/// Returns the exit status.
int RunCommand(Command& command, const Options& options, std::ostream& output, std::ostream& errors) {
    if (options.connection && ServerList::IsMeantBy(*options.connection)) {
        return RunForFleet(command, ServerList::Read(*options.connection, ConnectionStore::NeededOfUser()), options,
                           output, errors);
    }
    const LoggerScope scope(boost::make_shared<FailureLog>(errors, options.logLevel));
    const StatisticsAtEnd statistics(options, errors);
    Options prepared = options;
    CheckRecording(options);
    if (options.recording) {
        StartRecording(*options.recording, errors);
        prepared.trace = std::filesystem::absolute(*options.recording).string();
    } else if (options.trace) {
        prepared.trace = StartTrace(*options.trace);
    }
    const int status = command.Run({prepared, output, errors});
    output.flush();
    return status;
}

/// Takes no memory itself.
int ReportTooLittleMemory(std::ostream& errors) {
    errors << "cimhttp: " << kTooLittleMemory << std::endl;
    return Failure::kOther;
}

/// `asked`, here and below, is null where it is not known which command was asked for.
int Report(const std::exception& failure, int status, const Command* asked, std::ostream& output,
           std::ostream& errors) {
    if (asked != nullptr) {
        return asked->Tell(failure.what(), status, output, errors);
    }
    errors << "cimhttp: " << Printable(failure.what()) << std::endl;
    return status;
}

int ReportTooLittleMemory(const Command* asked, std::ostream& output, std::ostream& errors) {
    return asked == nullptr ? ReportTooLittleMemory(errors)
                            : asked->Tell(kTooLittleMemory, Failure::kOther, output, errors);
}

/// Throws only when memory runs out.
int RunReporting(int argc, const char* const* argv, std::ostream& output, std::ostream& errors) {
    const auto commands = AllCommands();
    const Command* asked = nullptr;
    try {
        const OutputGuard guard(output);
        const ParsedCommandLine parsed = ParseCommandLine(argc, argv, commands, asked);
        if (!parsed.help.empty()) {
            output << parsed.help << std::flush;
            return 0;
        }
        if (!parsed.warning.empty()) {
            errors << "cimhttp: " << Printable(parsed.warning) << std::endl;
        }
        return RunCommand(*parsed.command, parsed.options, output, errors);
    } catch (const Failure& failure) {
        const bool isHelpUnread = asked == nullptr && failure.Status() == Failure::kClosedPipe;
        return isHelpUnread ? failure.Status() : Report(failure, failure.Status(), asked, output, errors);
    } catch (const std::bad_alloc&) {
        return ReportTooLittleMemory(asked, output, errors);
    } catch (const std::length_error&) { // a text or a list longer than any memory
        return ReportTooLittleMemory(asked, output, errors);
    } catch (const std::exception& failure) {
        return Report(failure, Failure::kOther, asked, output, errors);
    }
}

} // namespace

int RunProgram(int argc, const char* const* argv, std::ostream& output, std::ostream& errors) {
    try {
        return RunReporting(argc, argv, output, errors);
    } catch (const std::bad_alloc&) {
        return ReportTooLittleMemory(errors);
    } catch (const std::length_error&) { // a text or a list longer than any memory
        return ReportTooLittleMemory(errors);
    }
}

} // namespace cimhttp
