#include "Failure.h"
#include "Options.h"
#include "commands/CheckRequest.h"
#include "commands/ClassCheck.h"
#include "commands/Commands.h"
#include "commands/HealthCheck.h"
#include "connection/Connection.h"
#include "connection/Plugin.h"
#include "monitoring/CheckReport.h"
#include "waiting/BackgroundTask.h"
#include "waiting/Interrupt.h"
#include "waiting/ProgressWait.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <new>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>

namespace cimhttp {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kHealth = "health";

/// Less than what monitoring systems usually give a plug-in.
constexpr unsigned kUsualSeconds = 50;

/// Why a check has to end before its work does.
class EarlyEnd {
  public:
    void Set(const Failure& failure) {
        const std::lock_guard<std::mutex> lock(mutex_);
        failure_.emplace(failure);
    }

    std::optional<std::string> Reason() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return failure_ ? std::optional<std::string>(failure_->what()) : std::nullopt;
    }

  private:
    std::mutex mutex_;
    std::optional<Failure> failure_;
};

/// The work holds on to what an orderly end would take from it.
[[noreturn]] void EndUnknown(const std::string& reason, std::ostream& output) {
    try {
        CheckReport::WriteUnknown(reason, output);
        output.flush();
    } catch (...) {
        // where nobody reads the output, the status remains
    }
    std::_Exit(static_cast<int>(ServiceState::kUnknown));
}

/// `check CLASS` and `check health`: the plug-in interface of monitoring systems. Failures of every kind are one line
/// on the standard output and the status 3, since the program's own statuses mean something else to these.
class CheckCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {"check",
                "Check instances for a monitoring system such as Icinga or Nagios",
                {{"CLASS", "The class, or health: all elements that tell that they are not well", true,
                  &request_.className}},
                {{"--where", "PROPERTY=VALUE", "Check only instances with this value, as for 'instances'",
                  &request_.conditions},
                 {"--warning", "PROPERTY=RANGE",
                  "Warn about numbers outside a range, 10, 10:, ~:10 or 10:20, or with @ within it, also with a unit "
                  "(10GB:), or about what meets a condition such as 'Status!=OK'; may be given several times",
                  &request_.warnings},
                 {"--critical", "PROPERTY=RANGE", "What is critical, given as for --warning", &request_.criticals},
                 {"--ignore", "PATTERN",
                  "Leave out instances whose name, class or path matches, as known faults; they are counted; may be "
                  "given several times",
                  &request_.ignored}},
                {OutputFormat::kPlain},
                "cimhttp --host server.example check health --ignore 'Fan 3'\n"
                "cimhttp --host server.example check CIM_FileSystem --warning AvailableSpace=10GB:",
                "Writes a line with OK, WARNING, CRITICAL or UNKNOWN and a line for each instance that is not OK; the "
                "exit status is 0, 1, 2 or 3. Whatever cannot be read is unknown. --timeout is for the whole check, "
                "50 unless given. docs/monitoring.md has more."};
    }

    int Run(const CommandContext& context) override {
        const Options options = Unattended(context.options);
        const auto begin = Clock::now();
        const Connection connection = ConnectionOf(options);
        const auto time =
            options.timeout ? connection.timeout : std::min(connection.timeout, std::chrono::seconds(kUsualSeconds));
        const auto end = begin + time;
        const InterruptScope interrupts;
        EarlyEnd early;
        std::ostringstream written;
        ServiceState state = ServiceState::kUnknown;
        BackgroundTask task([&](const BackgroundTask::Notify& notify) {
            const auto onLate = [&](const Failure& failure) {
                early.Set(failure);
                notify();
                std::this_thread::sleep_until(Clock::time_point::max()); // the main thread ends the program
            };
            state = Check(options, connection, context.MakeProgressWait().EndingLateWorkBy(onLate), written);
        });
        while (!task.Wait(std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()))) {
            const auto reason = early.Reason();
            if (reason || Clock::now() >= end) {
                EndUnknown(reason.value_or("the check of " + connection.Url() + " has not ended within " +
                                           std::to_string(time.count()) + " s"),
                           context.output);
            }
        }
        Rethrow(task);
        context.output << written.str();
        return static_cast<int>(state);
    }

    int RunForFleet(const FleetContext& /*context*/) override {
        throw Failure(Failure::kUsage, "a check is of one server: name it, and let the monitoring system ask for each");
    }

    int Tell(const char* failure, int /*status*/, std::ostream& output, std::ostream& /*errors*/) const override {
        try {
            CheckReport::WriteUnknown(failure, output);
        } catch (const std::bad_alloc&) {
            output << NameOf(ServiceState::kUnknown) << " - " << kTooLittleMemory << '\n';
        }
        output.flush();
        return static_cast<int>(ServiceState::kUnknown);
    }

  private:
    static void Rethrow(const BackgroundTask& task) {
        try {
            task.Rethrow();
        } catch (const std::bad_alloc&) {
            throw Failure(Failure::kOther, kTooLittleMemory);
        } catch (const std::length_error&) { // a text or a list longer than any memory
            throw Failure(Failure::kOther, kTooLittleMemory);
        }
    }

    ServiceState Check(const Options& options, const Connection& connection, const ProgressWait& wait,
                       std::ostream& output) const {
        const bool isHealth = request_.className == kHealth;
        if (isHealth && !(request_.warnings.empty() && request_.criticals.empty())) {
            throw Failure(Failure::kUsage, "check health has no thresholds: leave out --warning and --critical");
        }
        const ClassCheck ofClass(request_);
        std::ostringstream remarks;
        const CommandContext unattended{options, output, remarks};
        const Session session = unattended.ConnectTo(Plugin(options.plugin), connection, wait);
        CheckReport report;
        AddRemarks(remarks.str(), report);
        return isHealth ? HealthCheck(request_).Run(session, options.textForm, report, output)
                        : ofClass.Run(session, options.textForm, report, output);
    }

    static void AddRemarks(const std::string& text, CheckReport& report) {
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            report.AddRemark(line);
        }
    }

    CheckRequest request_;
};

} // namespace

std::unique_ptr<Command> MakeCheckCommand() { return std::make_unique<CheckCommand>(); }

} // namespace cimhttp
