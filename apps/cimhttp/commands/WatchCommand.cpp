#include "commands/WatchCommand.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <ostream>
#include <thread>

#include "Failure.h"
#include "Options.h"
#include "commands/InstanceChanges.h"
#include "commands/InstanceFilter.h"
#include "connection/Connection.h"
#include "connection/Session.h"
#include "host/ICIMClass.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "output/DisplayText.h"
#include "output/Json.h"
#include "text/TerminalText.h"
#include "waiting/Attendant.h"
#include "waiting/Interrupt.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;
using Clock = std::chrono::steady_clock;

constexpr unsigned char kDecimal = 10;
constexpr double kLongestInterval = 24.0 * 60 * 60;
constexpr std::chrono::milliseconds kLookInterval{50}; // between two looks at the user

/// One reading of a class. The namespace is fresh, since one that has read a class's instances does not read them
/// again.
struct Reading {
    Session session;
    boost::shared_ptr<ICIMClass> cls; // owns what the instances refer to
    Instances instances;
};

std::unique_ptr<const Reading> Read(Session session, const std::string& name,
                                    const std::vector<std::string>& conditions) {
    auto cls = session.Class(name);
    const InstanceFilter filter(conditions, *cls);
    Instances instances = filter.Selected(session.Instances(*cls, false), session.LoadedPlugin().Access());
    return std::make_unique<const Reading>(Reading{std::move(session), std::move(cls), std::move(instances)});
}

/// False when the user interrupts it.
bool SleepUntil(Clock::time_point time) {
    while (!Interrupted() && Clock::now() < time) {
        std::this_thread::sleep_for(std::min<Clock::duration>(kLookInterval, time - Clock::now()));
    }
    return !Interrupted();
}

std::string TimeOfDay() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    char text[sizeof "23:59:59"];
    return {text, std::strftime(text, sizeof text, "%H:%M:%S", &local)};
}

const char* KindName(InstanceChange::Kind kind) {
    switch (kind) {
    case InstanceChange::Kind::kNew:
        return "new";
    case InstanceChange::Kind::kGone:
        return "gone";
    default:
        return "changed";
    }
}

/// The previous value as another property's value, for which there are texts of arrays too.
std::string PreviousText(const ICIMProperty& property, const PluginAccess& access) {
    return DisplayText(access, *access.MakeProperty(property.GetDeclaration(TCIMContext()), property.GetPrevValue()))
        .Joined();
}

class ChangeWriter {
  public:
    ChangeWriter(const CommandContext& context, const PluginAccess& access, bool is_json)
        : context_(context), access_(access), is_json_(is_json) {}

    /// Says how many instances there are to begin with.
    void Begin(std::size_t instances) const {
        if (!is_json_) {
            context_.output << TimeOfDay() << "  " << instances << (instances == 1 ? " instance\n" : " instances\n")
                            << std::flush;
        }
    }

    void Write(const std::vector<InstanceChange>& changes, std::size_t round) const {
        if (is_json_) {
            WriteJson(changes, round);
        } else {
            WriteLines(changes);
        }
        context_.output.flush();
    }

  private:
    /// Blocks of lines, the changed values below the instance's path.
    void WriteLines(const std::vector<InstanceChange>& changes) const {
        std::ostream& output = context_.output;
        for (const InstanceChange& change : changes) {
            output << TimeOfDay() << "  " << Colored(Sign(change.kind), change.kind) << ' ' << Printable(change.path)
                   << '\n';
            for (const auto& difference : change.differences) {
                output << "            " << Printable(difference.name) << ": "
                       << Printable(DifferenceText(*difference.property)) << '\n';
            }
        }
    }

    /// An object for each change, one a line.
    void WriteJson(const std::vector<InstanceChange>& changes, std::size_t round) const {
        for (const InstanceChange& change : changes) {
            JsonObject properties;
            for (const auto& difference : change.differences) {
                properties.Add(difference.name, DifferenceJson(*difference.property));
            }
            context_.output << JsonObject()
                                   .Add("round", std::to_string(round))
                                   .Add("change", JsonText(KindName(change.kind)))
                                   .Add("path", JsonText(change.path))
                                   .Add("properties", properties.Text())
                                   .Text()
                            << '\n';
        }
    }

    static const char* Sign(InstanceChange::Kind kind) {
        switch (kind) {
        case InstanceChange::Kind::kNew:
            return "+";
        case InstanceChange::Kind::kGone:
            return "-";
        default:
            return "~";
        }
    }

    std::string Colored(const char* sign, InstanceChange::Kind kind) const {
        if (!context_.options.uses_color) {
            return sign;
        }
        const char* const color = kind == InstanceChange::Kind::kNew    ? "\x1b[32m"
                                  : kind == InstanceChange::Kind::kGone ? "\x1b[31m"
                                                                        : "\x1b[33m";
        return std::string(color) + sign + "\x1b[0m";
    }

    /// `old → new`; the values as they are when people would read the same.
    std::string DifferenceText(const ICIMProperty& property) const {
        std::string before = PreviousText(property, access_);
        std::string now = DisplayText(access_, property).Joined();
        if (before == now) {
            before = property.GetPrevValue().ToString(kDecimal);
            now = property.GetValue(TCIMContext()).ToString(kDecimal);
        }
        return Shown(before) + " → " + Shown(now);
    }

    static std::string Shown(const std::string& text) { return text.empty() ? "-" : text; }

    std::string DifferenceJson(const ICIMProperty& property) const {
        const auto json = [](const TCIMValue& value, const std::string& text) {
            return JsonObject().Add("value", JsonValue(value)).Add("text", JsonText(text)).Text();
        };
        return JsonObject()
            .Add("old", json(property.GetPrevValue(), PreviousText(property, access_)))
            .Add("new", json(property.GetValue(TCIMContext()), DisplayText(access_, property).Joined()))
            .Text();
    }

    const CommandContext& context_;
    const PluginAccess& access_;
    const bool is_json_;
};

} // namespace

CommandDescription WatchCommand::Describe() {
    return {"watch",
            "Show what changes about the instances of a class",
            {{"NAME", "The class", true, &name_}},
            {{"--interval", "SECONDS", "The time between two readings; 5 unless given", &interval_},
             {"--count", "N", "End after this many readings behind the first", &count_},
             {"--property", "NAME", "Watch only this property; may be given several times", &properties_},
             {"--where", "PROPERTY=VALUE",
              "Watch only instances with this value; one that gets it is new, and gone when it has another. More on "
              "values: cimhttp instances --help",
              &conditions_}},
            {OutputFormat::kPlain, OutputFormat::kJson},
            "cimhttp --host server.example watch CIM_Process --property Name",
            "An instance that is new has a +, one that has gone a -; below one that has changed (~) stand the old and "
            "the new values. Ctrl-C ends it."};
}

int WatchCommand::Run(const CommandContext& context) {
    if (!(interval_ >= 0 && interval_ <= kLongestInterval)) {
        throw Failure(Failure::kUsage, "the interval is between 0 and 86400 seconds");
    }
    const Connection connection = ConnectionOf(context.options);
    const Plugin plugin(context.options.plugin);
    const InterruptScope interrupts;
    const Attendant attendant = context.MakeAttendant([&] { // all that was written is whole
        context.output.flush();
        std::_Exit(0);
    });
    auto earlier = Read(context.ConnectTo(plugin, connection, attendant), name_, conditions_);
    const auto names =
        NamesOf(properties_.empty() ? PropertiesOf(*earlier->cls) : PropertiesOf(*earlier->cls, properties_));
    const PluginAccess& access = plugin.Access();
    const ChangeWriter writer(context, access, context.Format(*this) == OutputFormat::kJson);
    writer.Begin(earlier->instances.size());
    const auto interval = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(interval_));
    auto next = Clock::now() + interval;
    for (std::size_t round = 1; (!count_ || round <= *count_) && SleepUntil(next); ++round) {
        next = std::max(next, Clock::now()) + interval;
        auto later = Read(Session(plugin, connection, context.log, attendant), name_, conditions_);
        writer.Write(ChangesBetween(earlier->instances, later->instances, names, access), round);
        earlier = std::move(later);
    }
    return 0;
}

} // namespace cimhttp
