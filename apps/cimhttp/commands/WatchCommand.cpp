#include "Failure.h"
#include "Options.h"
#include "commands/ChangeWriter.h"
#include "commands/Commands.h"
#include "commands/InstanceChanges.h"
#include "commands/InstanceReader.h"
#include "commands/Remarks.h"
#include "connection/Connection.h"
#include "connection/Session.h"
#include "waiting/Interrupt.h"
#include "waiting/ProgressWait.h"
#include "waiting/Repetition.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <ostream>
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
            "stops, and when it answers again. Ctrl-C ends it."};
    }

    int Run(const CommandContext& context) override {
        if (!(interval_ > 0 && interval_ <= kLongestInterval)) {
            throw Failure(Failure::kUsage, "the interval is more than 0 and not more than 86400 seconds");
        }
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
        const auto interval = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(interval_));
        Repetition(interval, Sleep).Run(*watched, count_);
        return end();
    }

  private:
    std::string name_;
    std::vector<std::string> properties_; ///< the properties to watch; empty for all
    std::vector<std::string> conditions_; ///< see InstanceFilter
    double interval_ = 5;                 ///< seconds between two rounds
    std::optional<std::size_t> count_;    ///< how many rounds there are after the first; without end if empty
};

} // namespace

std::unique_ptr<Command> MakeWatchCommand() { return std::make_unique<WatchCommand>(); }

} // namespace cimhttp
