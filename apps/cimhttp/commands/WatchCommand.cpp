#include "Failure.h"
#include "Options.h"
#include "commands/ChangeWriter.h"
#include "commands/Commands.h"
#include "commands/FleetContext.h"
#include "commands/FleetReading.h"
#include "commands/InstanceChanges.h"
#include "commands/InstanceReader.h"
#include "commands/Remarks.h"
#include "connection/Connection.h"
#include "connection/Session.h"
#include "fleet/FleetRun.h"
#include "fleet/ServerLines.h"
#include "fleet/ServerLog.h"
#include "fleet/SinkStream.h"
#include "text/TerminalText.h"
#include "waiting/Interrupt.h"
#include "waiting/ProgressWait.h"
#include "waiting/Repetition.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <mutex>
#include <new>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace cimhttp {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kLongestInterval = 24.0 * 60 * 60;
constexpr std::chrono::milliseconds kLookInterval{50}; // between two checks for an interrupt

/// False when the user interrupts it.
bool Sleep(Clock::duration time) {
    const auto end = Clock::now() + time;
    while (!Interrupted() && Clock::now() < end) {
        std::this_thread::sleep_for(std::min<Clock::duration>(kLookInterval, end - Clock::now()));
    }
    return !Interrupted();
}

/// The instances of a class, compared with those of the reading before.
class WatchedInstances : public RepeatedReading {
  public:
    /// Reads for the first time.
    WatchedInstances(const CommandContext& context, InstanceReader reader, const PluginAccess& access, bool isJson)
        : context_(context),
          reader_(std::move(reader)),
          now_(reader_.Read()),
          names_(NamesOf(now_.properties)),
          writer_(context, ValueTexts(access, context.options.textForm), names_, isJson) {
        writer_.Begin(now_.instances);
        now_.uncompared.Report(context.errors); // once: it would be the same again and again
        TakeIncidents();
    }

    void Read() override {
        InstanceReader::Reading later = reader_.Read();
        earlier_ = std::exchange(now_, std::move(later));
    }

    void Show(std::size_t round) override {
        writer_.Write(ChangesBetween(earlier_.instances, now_.instances, names_), round);
        TakeIncidents();
    }

    void Lose(const Failure& failure) override { writer_.Lose(failure); }
    void Regain() override { writer_.Regain(); }

    /// What could not be taken over in all readings.
    const IncidentTally& Incidents() const { return allIncidents_; }

  private:
    /// Says what could not be taken over, unless it is the same as before.
    void TakeIncidents() {
        const IncidentTally incidents = reader_.TakeIncidents();
        const std::string text = incidents.IsEmpty() ? "" : incidents.Text();
        if (text != lastIncidents_) {
            ReportIncidents(incidents, context_);
        }
        lastIncidents_ = text;
        allIncidents_.Add(incidents);
    }

    const CommandContext& context_;
    InstanceReader reader_;
    InstanceReader::Reading now_;
    InstanceReader::Reading earlier_{};
    std::vector<std::string> names_; // of the properties that are watched
    ChangeWriter writer_;
    IncidentTally allIncidents_;
    std::string lastIncidents_;
};

/// What is watched, and how.
struct Watch {
    std::string className;
    InstanceQuery query;
    bool isJson;
    Clock::duration interval;
    std::optional<std::size_t> count;
};

/// One of several servers, for a thread of its own. To begin with, the server may be away as it may be later.
class WatchedServer : public RepeatedReading {
  public:
    WatchedServer(const Watch& watch, const CommandContext& context)
        : watch_(watch),
          context_(context),
          plugin_(context.options.plugin),
          away_(context, ValueTexts(plugin_.Access(), context.options.textForm), {}, watch.isJson) {}

    /// Returns the exit status. Throws Failure where waiting does not mend it.
    int Run() {
        bool isFirst = true;
        const auto wait = [&](Clock::duration time) { return std::exchange(isFirst, false) || Sleep(time); };
        Repetition(watch_.interval, wait).Run(*this, watch_.count ? std::optional(*watch_.count + 1) : std::nullopt);
        return watched_ ? ReportIncidents(watched_->Incidents(), context_) : 0;
    }

    void Read() override {
        if (watched_) {
            watched_->Read();
            return;
        }
        const Session session = context_.ConnectTo(plugin_, ConnectionOf(context_.options));
        watched_.emplace(context_,
                         InstanceReader(session, watch_.className, watch_.query, true, context_.options.textForm),
                         plugin_.Access(), watch_.isJson);
    }

    void Show(std::size_t round) override {
        if (round > 1) { // the first one is shown when it is read
            watched_->Show(round - 1);
        }
    }

    void Lose(const Failure& failure) override { away_.Lose(failure); }
    void Regain() override { away_.Regain(); }

  private:
    const Watch& watch_;
    const CommandContext& context_;
    const Plugin plugin_;
    ChangeWriter away_;
    std::optional<WatchedInstances> watched_;
};

/// Watches several servers, each in a thread of its own, all of which write to one output.
class WatchedFleet {
  public:
    WatchedFleet(const Watch& watch, const FleetContext& context)
        : watch_(watch), context_(context), plugin_(context.options.plugin), statuses_(context.servers.size()) {}

    int Run() {
        const std::size_t count = context_.servers.size();
        FleetRun(count, count, FleetRun::Order::kOfArrival)
            .Run({[this](std::size_t i) { Work(i); }, [this](std::size_t) { RethrowFromOutput(); },
                  [this](std::size_t) { LookAround(); }, [this] { LeaveFleet(context_.errors); }});
        return StatusOfAll(statuses_);
    }

  private:
    /// In a thread of its own.
    void Work(std::size_t number) {
        const FleetServer& server = context_.servers[number];
        const ServerLog::Scope scope(server.name);
        const auto form = watch_.isJson ? ServerLines::Form::kJson : ServerLines::Form::kText;
        std::string block; // what belongs together is written together
        ServerLines lines(server.name, form, [&](std::string_view line) { block += line; });
        SinkStream output([&](std::string_view text) { lines.Append(text); }, [&] { Write(std::exchange(block, {})); });
        ServerLines remarkLines(server.name, ServerLines::Form::kRemarks,
                                [&](std::string_view line) { context_.errors << line; });
        SinkStream remarks([&](std::string_view text) { remarkLines.Append(text); });
        int status = Failure::kOther;
        const auto tell = [&](const std::string& failure) {
            remarkLines.Append("cimhttp: " + Printable(failure) + '\n');
        };
        try {
            const Options options = OptionsOf(server, context_.options);
            const CommandContext own{options, output, remarks};
            status = WatchedServer(watch_, own).Run();
        } catch (const Failure& failure) {
            status = failure.Status();
            if (status != Failure::kClosedPipe) { // of which nobody is told
                tell(failure.what());
            }
        } catch (const std::bad_alloc&) {
            tell(kTooLittleMemory);
        } catch (const std::length_error&) { // a text or a list longer than any memory
            tell(kTooLittleMemory);
        } catch (const std::exception& exception) {
            tell(exception.what());
        }
        const std::lock_guard<std::mutex> lock(mutex_);
        statuses_[number] = status;
    }

    void Write(const std::string& text) {
        const std::lock_guard<std::mutex> lock(mutex_);
        try {
            context_.output << text << std::flush;
        } catch (const Failure&) {
            outputFailure_ = std::current_exception();
            throw;
        }
    }

    void RethrowFromOutput() {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (outputFailure_ != nullptr) {
            std::rethrow_exception(outputFailure_);
        }
    }

    /// In order, all threads end soon after an interrupt but those that a server keeps waiting.
    void LookAround() {
        RethrowFromOutput();
        if (!Interrupted()) {
            interrupted_ = Clock::time_point::max();
        } else if (interrupted_ == Clock::time_point::max()) {
            interrupted_ = Clock::now();
        } else if (Clock::now() - interrupted_ > kGrace) {
            const std::lock_guard<std::mutex> lock(mutex_); // all that was written is whole
            std::_Exit(StatusOfAll(statuses_));
        }
    }

    static constexpr std::chrono::milliseconds kGrace{300};

    const Watch& watch_;
    const FleetContext& context_;
    const Plugin plugin_; // is loaded before there are threads
    Clock::time_point interrupted_ = Clock::time_point::max();
    std::mutex mutex_; // guards the output and all below
    std::vector<int> statuses_;
    std::exception_ptr outputFailure_;
};

/// `watch NAME`: reads the instances of a class again and again and shows what has changed. Ends after a number of
/// rounds, or in good order when the user interrupts it.
class WatchCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {
            "watch",
            "Show what changes about the instances of a class",
            {{"NAME", "The class", true, &name_}},
            {{"--interval", "SECONDS", "The time between two readings; 5 unless given", &interval_},
             {"--count", "N", "End after this many readings, the first not counted", &count_},
             {"--property", "NAME", "Watch only this property; may be given several times, or as A,B", &properties_},
             {"--where", "PROPERTY=VALUE",
              "Watch only instances with this value; one that gets it is new, and gone when it has another. More on "
              "values, != and <: cimhttp instances --help",
              &conditions_}},
            {OutputFormat::kPlain, OutputFormat::kJson},
            "cimhttp --host server.example watch CIM_Process --property Name",
            "An instance that is new has a +, one that has gone a -; below one that has changed (~) stand the old and "
            "the new values. A server that stops answering is waited for: a line with an exclamation mark says when it "
            "stops, and when it answers again. Ctrl-C ends it. Of several servers, each line names its own, one that "
            "is "
            "away at the begin is waited for, too, and there may be no more of them than --parallel allows."};
    }

    int Run(const CommandContext& context) override {
        CheckInterval();
        const Connection connection = ConnectionOf(context.options);
        const Plugin plugin(context.options.plugin);
        const InterruptScope interrupts;
        std::optional<WatchedInstances> watched;
        const auto end = [&] { return watched ? ReportIncidents(watched->Incidents(), context) : 0; };
        const ProgressWait wait = context.MakeProgressWait([&] { // all that was written is whole
            context.output.flush();
            std::_Exit(end());
        });
        const InstanceQuery query(properties_, conditions_);
        const Session session = context.ConnectTo(plugin, connection, wait);
        watched.emplace(context, InstanceReader(session, name_, query, true, context.options.textForm), plugin.Access(),
                        context.Format(*this) == OutputFormat::kJson);
        Repetition(Interval(), Sleep).Run(*watched, count_);
        return end();
    }

    /// All of them at once, since changes show only where each is read at the interval.
    int RunForFleet(const FleetContext& context) override {
        CheckInterval();
        const std::size_t parallel = context.options.parallel.value_or(kUsualParallel);
        if (context.servers.size() > parallel) {
            throw Failure(Failure::kUsage, "watch keeps a connection to each of the " +
                                               std::to_string(context.servers.size()) + " servers: --parallel allows " +
                                               std::to_string(parallel));
        }
        const bool isJson = context.options.format.value_or(OutputFormat::kPlain) == OutputFormat::kJson;
        const Watch watch{name_, InstanceQuery(properties_, conditions_), isJson, Interval(), count_};
        const InterruptScope interrupts;
        return WatchedFleet(watch, context).Run();
    }

  private:
    void CheckInterval() const {
        if (!(interval_ > 0 && interval_ <= kLongestInterval)) {
            throw Failure(Failure::kUsage, "the interval is more than 0 and not more than 86400 seconds");
        }
    }

    Clock::duration Interval() const {
        return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(interval_));
    }

    std::string name_;
    std::vector<std::string> properties_; ///< the properties to watch; empty for all
    std::vector<std::string> conditions_; ///< see InstanceFilter
    double interval_ = 5;                 ///< seconds between two rounds
    std::optional<std::size_t> count_;    ///< how many rounds there are after the first; without end if empty
};

} // namespace

std::unique_ptr<Command> MakeWatchCommand() { return std::make_unique<WatchCommand>(); }

} // namespace cimhttp
