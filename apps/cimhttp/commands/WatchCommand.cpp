#include "commands/WatchCommand.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <thread>

#include "Failure.h"
#include "Options.h"
#include "commands/ChangeWriter.h"
#include "commands/InstanceChanges.h"
#include "commands/InstanceReader.h"
#include "connection/Connection.h"
#include "connection/Session.h"
#include "waiting/Attendant.h"
#include "waiting/Interrupt.h"
#include "waiting/Repetition.h"

namespace cimhttp {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kLongestInterval = 24.0 * 60 * 60;
constexpr std::chrono::milliseconds kLookInterval{50}; // between two looks at the user

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
    using Connector = std::function<Session()>;

    WatchedInstances(Connector connect, std::string class_name, InstanceQuery query)
        : connect_(std::move(connect)), class_name_(std::move(class_name)), query_(std::move(query)) {}

    void Read() override {
        auto later = std::make_unique<Round>(Round{InstanceReader(connect_(), class_name_, query_, false), {}});
        later->reading = later->reader.Read();
        earlier_ = std::move(now_);
        now_ = std::move(later);
    }

    void Begin(const CommandContext& context, const PluginAccess& access, bool is_json) {
        writer_.emplace(context, access, NamesOf(now_->reading.properties), is_json);
        writer_->Begin(now_->reading.instances);
    }

    void Show(std::size_t round) override {
        writer_->Write(
            ChangesBetween(earlier_->reading.instances, now_->reading.instances, NamesOf(now_->reading.properties)),
            round);
    }

    void Lose(const Failure& failure) override { writer_->Lose(failure); }
    void Regain() override { writer_->Regain(); }

  private:
    /// With a session of its own, since one that has read a class's instances does not read them again.
    struct Round {
        InstanceReader reader;
        InstanceReader::Reading reading;
    };

    Connector connect_;
    std::string class_name_;
    InstanceQuery query_;
    std::optional<ChangeWriter> writer_;
    std::unique_ptr<Round> earlier_;
    std::unique_ptr<Round> now_;
};

} // namespace

CommandDescription WatchCommand::Describe() {
    return {"watch",
            "Show what changes about the instances of a class",
            {{"NAME", "The class", true, &name_}},
            {{"--interval", "SECONDS", "The time between two readings; 5 unless given", &interval_},
             {"--count", "N", "End after this many readings behind the first", &count_},
             {"--property", "NAME", "Watch only this property; may be given several times, or as A,B", &properties_},
             {"--where", "PROPERTY=VALUE",
              "Watch only instances with this value; one that gets it is new, and gone when it has another. More on "
              "values: cimhttp instances --help",
              &conditions_}},
            {OutputFormat::kPlain, OutputFormat::kJson},
            "cimhttp --host server.example watch CIM_Process --property Name",
            "An instance that is new has a +, one that has gone a -; below one that has changed (~) stand the old and "
            "the new values. A server that goes is waited for: an exclamation mark tells when it goes and when it "
            "comes back. Ctrl-C ends it."};
}

int WatchCommand::Run(const CommandContext& context) {
    if (!(interval_ > 0 && interval_ <= kLongestInterval)) {
        throw Failure(Failure::kUsage, "the interval is more than 0 and not more than 86400 seconds");
    }
    const Connection connection = ConnectionOf(context.options);
    const Plugin plugin(context.options.plugin);
    const InterruptScope interrupts;
    const Attendant attendant = context.MakeAttendant([&] { // all that was written is whole
        context.output.flush();
        std::_Exit(0);
    });
    std::optional<Session> first = context.ConnectTo(plugin, connection, attendant);
    const auto connect = [&] {
        Session session = first ? *first : Session(plugin, connection, context.log, attendant);
        first.reset();
        return session;
    };
    WatchedInstances watched(connect, name_, InstanceQuery(properties_, conditions_));
    watched.Read();
    watched.Begin(context, plugin.Access(), context.Format(*this) == OutputFormat::kJson);
    const auto interval = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(interval_));
    Repetition(interval, Sleep).Run(watched, count_);
    return 0;
}

} // namespace cimhttp
