#include "Failure.h"
#include "Options.h"
#include "commands/Commands.h"
#include "commands/FleetContext.h"
#include "commands/LiveFeed.h"
#include "commands/Remarks.h"
#include "connection/Connection.h"
#include "connection/OwnLibrary.h"
#include "connection/ServerSchema.h"
#include "connection/Session.h"
#include "host/ICIMClass.h"
#include "live/KnownMaximum.h"
#include "live/LiveKeys.h"
#include "live/LivePicture.h"
#include "live/LiveView.h"
#include "live/Screen.h"
#include "output/InstanceProperties.h"
#include "selection/RowLimit.h"
#include "selection/SortOrder.h"
#include "text/Names.h"
#include "text/TerminalText.h"
#include "waiting/ProgressWait.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <ostream>
#include <utility>

namespace cimhttp {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kLongestInterval = 24.0 * 60 * 60;
constexpr std::chrono::milliseconds kLookInterval{50}; // between two looks at what was read
constexpr std::chrono::seconds kUnnoticed{1};          // an answer that takes no longer shows no wait

/// Readings on the way to a screen, and keys on the way back.
class LiveLoop {
  public:
    LiveLoop(Screen& screen, LiveFeed& feed, LiveView& view) : screen_(screen), feed_(feed), view_(view) {}

    /// Until the user quits or there are no further readings.
    void Run() {
        view_.SetSize(screen_.Size());
        screen_.Show(PictureOf(view_));
        while (true) {
            const bool hasEnded = feed_.HasEnded(); // asked before looking, so that nothing is missed
            bool isNew = TakeNews();
            const Key key = screen_.NextKey(hasEnded ? std::chrono::milliseconds(0) : kLookInterval);
            if (key.kind != Key::Kind::kNone) {
                isNew = true;
                if (!Press(key)) {
                    return;
                }
            }
            if (isNew) {
                screen_.Show(PictureOf(view_));
            }
            if (hasEnded) {
                return;
            }
        }
    }

    /// All that is known in the end.
    LiveFeed::News LastNews() const { return feed_.Look(); }

  private:
    bool Press(const Key& key) {
        view_.SetSize(screen_.Size());
        const bool goesOn = PressKey(key, view_);
        feed_.SetPaused(view_.IsPaused());
        return goesOn;
    }

    /// Whether anything is to be drawn anew. A reading that comes in a pause is shown after it.
    bool TakeNews() {
        LiveFeed::News news = feed_.Look();
        if (!news.reading) {
            news.reading = std::move(news_.reading);
        }
        news_ = std::move(news);
        std::vector<std::string> remarks = Remarks();
        const auto wait = Waited();
        bool isNew = remarks != view_.Remarks() || wait != view_.Wait();
        view_.SetRemarks(std::move(remarks));
        view_.SetWait(wait);
        if (news_.reading && !view_.IsPaused()) {
            view_.Take(std::move(news_.reading));
            news_.reading.reset();
            isNew = true;
        }
        return isNew;
    }

    std::vector<std::string> Remarks() const {
        std::vector<std::string> remarks;
        if (!news_.loss.empty()) {
            remarks.push_back(news_.loss);
        }
        if (!news_.incidents.IsEmpty()) {
            remarks.push_back(Printable(news_.incidents.Text()));
        }
        if (news_.uncompared.count > 0) {
            remarks.push_back(std::to_string(news_.uncompared.count) + " values could not be compared, such as " +
                              Printable(news_.uncompared.first));
        }
        return remarks;
    }

    std::optional<std::chrono::seconds> Waited() const {
        if (!news_.begin || Clock::now() - *news_.begin < kUnnoticed) {
            return std::nullopt;
        }
        return std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - *news_.begin);
    }

    Screen& screen_;
    LiveFeed& feed_;
    LiveView& view_;
    LiveFeed::News news_;
};

/// `top NAME`: the instances of a class on the whole terminal, read again and again. Without a terminal, `watch`.
class TopCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {"top",
                "Show the instances of a class live, on the whole terminal",
                {{"NAME", "The class", true, &name_}},
                {{"--interval", "SECONDS", "The time between two readings; 5 unless given", &interval_},
                 {"--count", "N", "End after N readings", &count_},
                 {"--property", "NAME", "Read only this property; may be given several times, or as A,B", &properties_},
                 {"--where", "PROPERTY=VALUE", "Show only instances with this value; see 'instances'", &conditions_},
                 {"--sort", "NAME", "Sort by this property at first, with NAME:desc the greatest first", &order_},
                 {"--limit", "N", "Show the first N rows only", &limit_}},
                {OutputFormat::kPlain},
                "cimhttp --host server.example top CIM_Process --sort WorkingSetSize:desc",
                "The keys: left and right sort by the next column, r turns the order round, / keeps rows with a text, "
                "p pauses, c chooses columns, ? tells of all keys, q quits. Counters show how much more they have "
                "each second, blocks the last minute. A server that stops answering is waited for: the last rows "
                "stay, and a line says since when and why. Without a terminal it is 'watch'."};
    }

    int Run(const CommandContext& context) override {
        const Clock::duration interval = CheckOptions();
        const std::string lack = LackOf(context.options);
        if (!lack.empty()) {
            return Watch(context, lack);
        }
        const Plugin plugin(context.options.plugin);
        const Connection connection = ConnectionOf(context.options);
        const Session session = context.ConnectTo(plugin, connection);
        const Properties declared = PropertiesOf(*ServerSchema(session).Class(name_));
        const Session direct = session.WithoutProgress();
        InstanceReader reader(direct, name_, Query(declared), true, context.options.textForm);
        LiveView view(SettingsOf(reader.ClassName(), session, interval, context.options));
        LiveFeed::News news;
        std::exception_ptr failure;
        bool hasEnded = false;
        {
            const auto screen = Library().Open();
            if (!screen) {
                throw Failure(Failure::kOther, "the terminal cannot be taken over");
            }
            LiveFeed feed(std::move(reader), ReadingMaker(session.Access(), context.options.textForm, IsAsked()),
                          {interval, count_});
            LiveLoop loop(*screen, feed, view);
            try {
                loop.Run();
            } catch (...) {
                failure = std::current_exception(); // for a terminal that is as it was
            }
            hasEnded = feed.Stop();
            news = loop.LastNews();
        }
        const int status = Report(news, context);
        if (hasEnded && failure) {
            std::rethrow_exception(failure);
        }
        if (!hasEnded) { // the reading holds on to what an orderly end would take from it
            End(failure, status, context);
        }
        return status;
    }

    int RunForFleet(const FleetContext& /*context*/) override {
        throw Failure(Failure::kUsage, "top shows one server; 'watch' reads several");
    }

  private:
    [[noreturn]] static void End(const std::exception_ptr& failure, int status, const CommandContext& context) {
        try {
            if (failure) {
                std::rethrow_exception(failure);
            }
        } catch (const std::exception& exception) {
            context.errors << "cimhttp: " << Printable(exception.what()) << '\n';
            status = Failure::kOther;
        }
        context.output.flush();
        context.errors.flush();
        std::_Exit(status);
    }

    static const ScreenLibrary& Library() {
        return *reinterpret_cast<ScreenFunction*>(OwnLibraryFunction(kScreenLibrary, kScreenFunction))();
    }

    Clock::duration CheckOptions() const {
        if (!(interval_ > 0 && interval_ <= kLongestInterval)) {
            throw Failure(Failure::kUsage, "the interval is more than 0 and not more than 86400 seconds");
        }
        if (count_ == std::optional<std::size_t>(0)) {
            throw Failure(Failure::kUsage, "--count is 1 or more");
        }
        if (SortOrder(order_).Names().size() > 1) {
            throw Failure(Failure::kUsage, "top sorts by one property at a time");
        }
        const RowLimit checked(limit_);
        return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(interval_));
    }

    /// What the terminal lacks for a live view; empty for nothing.
    static std::string LackOf(const Options& options) {
        if (!options.isOutputTerminal || !options.isInputTerminal) {
            return "there is no terminal";
        }
        if (options.logLevel && options.isErrorStreamTerminal) {
            return "the log is written to the terminal";
        }
        return Library().KnowsTerminal() ? "" : "the terminal of TERM is not known, or cannot be drawn on";
    }

    /// Runs `watch` with what it has in common with this.
    int Watch(const CommandContext& context, const std::string& lack) {
        const bool isNarrower = !order_.empty() || limit_;
        context.errors << "cimhttp: " << lack << ": this is 'watch'"
                       << (isNarrower ? ", without --sort and --limit" : "") << std::endl;
        const auto watch = MakeWatchCommand();
        CommandDescription description = watch->Describe();
        *description.arguments.front().target = name_;
        for (const CommandOption& option : description.options) {
            if (option.name == "--interval") {
                *std::get<double*>(option.target) = interval_;
            } else if (option.name == "--count") {
                if (count_) { // which has the first reading among them
                    *std::get<std::optional<std::size_t>*>(option.target) = *count_ - 1;
                }
            } else if (option.name == "--property") {
                *std::get<std::vector<std::string>*>(option.target) = properties_;
            } else if (option.name == "--where") {
                *std::get<std::vector<std::string>*>(option.target) = conditions_;
            }
        }
        return watch->Run(context);
    }

    bool IsAsked() const { return !properties_.empty(); }

    /// Reads what is asked for, what is sorted by, and what tells the greatest that any of these can be.
    InstanceQuery Query(const Properties& declared) const {
        const SortOrder order(order_);
        std::vector<std::string> names = NamesIn(properties_);
        if (!names.empty()) {
            names.insert(names.end(), order.Names().begin(), order.Names().end());
        }
        if (declared.empty()) { // the instances tell what there is
            return {names, conditions_};
        }
        InstanceQuery(names.empty() ? order.Names() : names, conditions_).CheckNames(declared, name_);
        for (const std::string& name : std::vector<std::string>(names)) {
            const std::string maximum = MaximumOf(name);
            for (const std::string& known : NamesOf(declared)) {
                if (IsSameName(known, maximum)) {
                    names.push_back(known);
                }
            }
        }
        return {DistinctNames(names), conditions_};
    }

    LiveView::Settings SettingsOf(const std::string& className, const Session& session, Clock::duration interval,
                                  const Options& options) const {
        const SortOrder order(order_);
        LiveView::Settings settings{Printable(className + " at " + session.Place()), interval};
        if (!order.IsEmpty()) {
            settings.sortColumn = order.Names().front();
            settings.isGreatestFirst = order.IsDescending(0);
        }
        if (IsAsked()) {
            settings.columns = NamesIn(properties_);
            if (!order.IsEmpty()) {
                settings.columns.push_back(settings.sortColumn);
            }
        }
        settings.limit = limit_;
        settings.isUtf8 = options.isUtf8;
        return settings;
    }

    /// Says what was missing. Returns the exit status.
    static int Report(const LiveFeed::News& news, const CommandContext& context) {
        if (news.losses > 0) {
            context.errors << "cimhttp: the server was away " << news.losses << (news.losses == 1 ? " time" : " times")
                           << ", the last time: " << news.lastLoss << std::endl;
        }
        news.uncompared.Report(context.errors);
        return ReportIncidents(news.incidents, context);
    }

    std::string name_;
    double interval_ = 5;
    std::optional<std::size_t> count_;
    std::vector<std::string> properties_; ///< see InstanceQuery, here and below
    std::vector<std::string> conditions_;
    std::vector<std::string> order_;
    std::optional<std::size_t> limit_; ///< see RowLimit
};

} // namespace

std::unique_ptr<Command> MakeTopCommand() { return std::make_unique<TopCommand>(); }

} // namespace cimhttp
