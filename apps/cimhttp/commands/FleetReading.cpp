#include "commands/FleetReading.h"

#include "Failure.h"
#include "Options.h"
#include "commands/Command.h"
#include "commands/FleetContext.h"
#include "commands/FleetWriter.h"
#include "connection/Connection.h"
#include "connection/Plugin.h"
#include "connection/TraceFile.h"
#include "fleet/FleetRun.h"
#include "fleet/ServerFile.h"
#include "fleet/ServerLog.h"
#include "text/TerminalText.h"
#include "text/WordList.h"
#include "waiting/Interrupt.h"
#include "waiting/StatusLine.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <new>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace cimhttp {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kUnnoticed{400}; // a run that takes no longer shows no progress
constexpr std::size_t kNarrowestRoom = 20;           // for a line after the name of its server

bool IsFailure(int status) { return status != 0 && status != Failure::kIncomplete; }

/// What has come of one server, from the begin of the work until it is written.
struct Outcome {
    std::unique_ptr<ServerRecords> records;
    std::string remarks; ///< lines for the error stream
    std::string failure; ///< what was thrown
    int status = 0;
};

/// One reading of several servers.
class Reading {
  public:
    Reading(Command& command, const FleetContext& context, OutputFormat format,
            std::function<void(ServerOutcome&)> take)
        : command_(command),
          context_(context),
          plugin_(context.options.plugin), // is loaded before there are threads
          format_(format),
          take_(std::move(take)),
          outcomes_(context.servers.size()),
          line_(ShowsProgress() ? &context.errors : nullptr, context.options.errorStreamWidth) {}

    int Run() {
        const InterruptScope interrupts;
        const auto order = context_.options.asCompleted ? FleetRun::Order::kOfArrival : FleetRun::Order::kOfList;
        FleetRun(context_.servers.size(), context_.options.parallel.value_or(kUsualParallel), order)
            .Run({[this](std::size_t i) { Work(context_.servers[i], outcomes_[i]); },
                  [this](std::size_t i) { Take(outcomes_[i]); }, [this](std::size_t done) { LookAround(done); },
                  [this] { LeaveFleet(context_.errors); }});
        return StatusOfAll(statuses_);
    }

  private:
    bool ShowsProgress() const { return context_.options.isErrorStreamTerminal && !context_.options.logLevel; }

    /// In a thread of its own.
    void Work(const FleetServer& server, Outcome& outcome) const {
        const ServerLog::Scope scope(server.name);
        const auto budget = BudgetOf(server, context_.options);
        const auto deadline = Clock::now() + budget;
        try {
            Read(server, deadline, outcome);
        } catch (const Failure& failure) {
            const bool isLate = failure.Status() == Failure::kConnection && Clock::now() >= deadline;
            const auto seconds = static_cast<std::size_t>(budget.count());
            Fail(failure.what() + (isLate ? "; a server has " + Counted(seconds, "second", "seconds") +
                                                " for all that it is asked, --timeout gives more"
                                          : std::string()),
                 failure.Status(), outcome);
        } catch (const std::bad_alloc&) {
            Fail(kTooLittleMemory, Failure::kOther, outcome);
        } catch (const std::length_error&) {
            Fail(kTooLittleMemory, Failure::kOther, outcome);
        } catch (const std::exception& exception) {
            Fail(exception.what(), Failure::kOther, outcome);
        }
    }

    void Read(const FleetServer& server, Clock::time_point deadline, Outcome& outcome) const {
        outcome.records = std::make_unique<ServerRecords>(server.name, format_, spool_);
        std::ostringstream remarks;
        try {
            Options options = OptionsOf(server, context_.options);
            const std::size_t width = options.width;
            const std::size_t used = DisplayWidth(Printable(server.name)) + 2;
            options.width = width == 0 ? 0 : std::max(width, used + kNarrowestRoom) - used;
            options.deadline = deadline;
            outcome.status = command_.Run({options, outcome.records->Output(), remarks, outcome.records.get()});
        } catch (...) {
            outcome.remarks = remarks.str();
            throw;
        }
        outcome.remarks = remarks.str();
    }

    static void Fail(const std::string& text, int status, Outcome& outcome) {
        outcome.failure = text;
        outcome.status = status;
    }

    void Take(Outcome& outcome) {
        line_.Clear();
        failed_ += IsFailure(outcome.status) ? 1 : 0;
        if (!outcome.records) { // for want of memory
            throw Failure(Failure::kOther, kTooLittleMemory);
        }
        ServerOutcome result{*outcome.records, IsFailure(outcome.status), outcome.failure};
        take_(result);
        context_.output.flush(); // on a terminal, the remarks stand below
        WriteRemarks(outcome);
        statuses_.push_back(outcome.status);
        outcome = {};
    }

    void WriteRemarks(const Outcome& outcome) const {
        std::string text;
        ServerLines lines(outcome.records->Server(), ServerLines::Form::kRemarks,
                          [&](std::string_view line) { text += line; });
        lines.Append(outcome.remarks);
        lines.End();
        if (!outcome.failure.empty()) {
            lines.Append("cimhttp: " + Printable(outcome.failure) + '\n');
        }
        context_.errors << text << std::flush;
    }

    void LookAround(std::size_t done) {
        if (Interrupted()) {
            line_.Clear();
            context_.output.flush();
            context_.errors << "cimhttp: interrupted\n" << std::flush;
            EndByInterrupt();
        }
        const auto elapsed = Clock::now() - begin_;
        if (elapsed >= kUnnoticed) {
            line_.Show(std::to_string(done) + " of " + std::to_string(context_.servers.size()) + " servers, " +
                       (failed_ == 0 ? "" : std::to_string(failed_) + " failed, ") +
                       ElapsedText(std::chrono::duration_cast<std::chrono::seconds>(elapsed)));
        }
    }

    Command& command_;
    const FleetContext& context_;
    const Plugin plugin_;
    const OutputFormat format_;
    const std::shared_ptr<Spool> spool_ = std::make_shared<Spool>();
    const std::function<void(ServerOutcome&)> take_;
    std::vector<Outcome> outcomes_;
    std::vector<int> statuses_;
    StatusLine line_;
    std::size_t failed_ = 0;
    const Clock::time_point begin_ = Clock::now();
};

} // namespace

void LeaveFleet(std::ostream& errors) {
    int status = Failure::kOther;
    try {
        throw;
    } catch (const Failure& failure) {
        status = failure.Status();
        if (status != Failure::kClosedPipe) { // of which nobody is told
            errors << "cimhttp: " + Printable(failure.what()) + '\n' << std::flush;
        }
    } catch (...) {
        errors << std::string("cimhttp: ") + kTooLittleMemory + '\n' << std::flush;
    }
    std::_Exit(status);
}

int StatusOfAll(const std::vector<int>& statuses) {
    const auto isSame = [&](int status) { return status == statuses.front(); };
    if (std::all_of(statuses.begin(), statuses.end(), isSame)) {
        return statuses.front();
    }
    return std::any_of(statuses.begin(), statuses.end(), IsFailure) ? Failure::kSomeServers : Failure::kIncomplete;
}

std::chrono::seconds BudgetOf(const FleetServer& server, const Options& options) {
    return std::chrono::seconds(options.timeout.value_or(server.connection->timeout.value_or(kUsualTimeout)));
}

Options OptionsOf(const FleetServer& server, const Options& options) {
    Options own = options;
    own.server = server.name;
    own.connection = server.name;
    own.saved = server.connection;
    own.isInputTerminal = false; // nobody is asked
    if (options.recording) {
        const std::string file = ServerFile(*options.recording, server.name);
        PrepareRecording(file);
        own.trace = std::filesystem::absolute(file).string();
    } else if (options.trace) {
        own.trace = StartTrace(ServerFile(*options.trace, server.name));
    }
    return own;
}

int ReadFleet(Command& command, const FleetContext& context, OutputFormat format,
              const std::function<void(ServerOutcome&)>& take) {
    return Reading(command, context, format, take).Run();
}

int ReadFleet(Command& command, const FleetContext& context, OutputFormat format) {
    const CommandContext whole{context.options, context.output, context.errors};
    const auto writer = MakeFleetWriter(format, whole);
    bool hasRecords = false;
    const int status = ReadFleet(command, context, format, [&](ServerOutcome& outcome) {
        const auto parts = outcome.records.Take();
        hasRecords = hasRecords || !outcome.hasFailed || !parts.empty();
        writer->Write(outcome.records.Server(), parts);
    });
    if (hasRecords) {
        writer->End();
    }
    context.output.flush();
    return status;
}

} // namespace cimhttp
