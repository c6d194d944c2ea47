#include "exporter/Target.h"

#include "Failure.h"
#include "Options.h"
#include "connection/OperationStatistics.h"
#include "connection/ServerTrust.h"
#include "connection/Session.h"
#include "exporter/ClassMetrics.h"
#include "exporter/MetricPage.h"
#include "exporter/ReadingReport.h"
#include "exporter/Traffic.h"
#include "fleet/ServerLog.h"

#include <exception>
#include <new>
#include <tuple>
#include <utility>

namespace cimhttp {

namespace {

/// What the time between a server's last answer and the page may take.
constexpr std::chrono::milliseconds kForThePage{200};

double Seconds(Target::Clock::duration duration) { return std::chrono::duration<double>(duration).count(); }

/// Whether the failure is about the way to the server, so that another connection may be better.
bool EndsConnection(const Failure& failure) {
    return failure.Status() == Failure::kConnection || failure.Status() == Failure::kAuthentication;
}

/// Whether two connections lead to the same server in the same way.
bool IsSameWay(const Connection& one, const Connection& other) {
    const auto way = [](const Connection& connection) {
        const TlsSettings& tls = connection.tlsSettings;
        return std::tie(connection.host, connection.user, connection.password, connection.tls, connection.timeout,
                        connection.strict, connection.port, connection.nameSpace, tls.ca, tls.fingerprint,
                        tls.certificate, tls.key, tls.verify);
    };
    return way(one) == way(other);
}

void AddUp(const std::string& reason, MetricPage& page) {
    MetricPage::Labels labels;
    if (!reason.empty()) {
        labels.push_back({"reason", reason});
    }
    page.AddOwn({"cim_up", "Whether the server could be read"}, std::move(labels), reason.empty() ? 1 : 0);
}

} // namespace

Target::Target(const Plugin& plugin, const Options& options, const ScrapeLimits& limits, TargetPlaces& places)
    : plugin_(plugin), options_(std::make_shared<const Options>(options)), limits_(limits), places_(places) {}

Target::~Target() {
    if (thread_.joinable()) {
        thread_.join();
    }
}

Target::Clock::time_point Target::LastUse() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return lastUse_;
}

bool Target::IsBusy() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return reading_ != nullptr;
}

std::size_t Target::WaitingCount() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return waiting_;
}

Scrape Target::Read(const Module& module, Clock::time_point deadline) {
    std::unique_lock<std::mutex> lock(mutex_);
    lastUse_ = Clock::now();
    const auto isFree = [&] { return !reading_ || reading_->module == module.name; };
    if (!changed_.wait_until(lock, deadline, isFree)) {
        return Down("an earlier scrape of the server has not ended");
    }
    const bool isShared = reading_ != nullptr;
    if (!isShared) {
        Begin(module, deadline);
    }
    const auto reading = reading_;
    ++waiting_;
    const bool isDone = changed_.wait_until(lock, deadline, [&] { return reading->result.has_value(); });
    --waiting_;
    if (!isDone) {
        return Down("the server has not answered in time");
    }
    Scrape scrape = *reading->result;
    scrape.isShared = isShared;
    return scrape;
}

/// With the mutex locked.
void Target::Begin(const Module& module, Clock::time_point deadline) {
    if (thread_.joinable()) {
        thread_.join(); // it has ended, but for its last lines
    }
    const auto reading = std::make_shared<Reading>(Reading{module.name, std::nullopt});
    thread_ = std::thread([this, module, deadline, reading] {
        Scrape scrape = ReadNow(module, deadline - kForThePage);
        const std::lock_guard<std::mutex> lock(mutex_);
        reading->result = std::move(scrape);
        reading_.reset();
        changed_.notify_all();
    });
    reading_ = reading;
}

Scrape Target::ReadNow(const Module& module, Clock::time_point deadline) {
    if (!places_.Take(deadline)) {
        return Down("too many servers are being read at once");
    }
    Scrape scrape;
    try {
        const ServerLog::Scope scope(*options_->server);
        Fill(module, deadline, scrape);
    } catch (const std::bad_alloc&) {
        scrape = Down(kTooLittleMemory);
    } catch (const std::exception& exception) {
        scrape = Down(exception.what());
    }
    places_.GiveBack();
    return scrape;
}

void Target::Fill(const Module& module, Clock::time_point deadline, Scrape& scrape) {
    const auto begin = Clock::now();
    MetricPage page(limits_.series);
    ReadingReport report;
    Traffic traffic;
    try {
        Session& session = Connected(ConnectionOf(*options_), deadline);
        traffic.Begin(session.Target().statistics);
        session.TakeIncidents();
        ReadClasses(session, module, traffic, page, report);
    } catch (const Failure& failure) {
        scrape.failure = failure.what();
        if (EndsConnection(failure)) {
            session_.reset();
        }
    }
    AddUp(scrape.failure, page);
    if (session_ && session_->Target().tls) {
        page.AddOwn({"cim_server_verified", "Whether anybody has verified the server of an encrypted connection"}, {},
                    IsVerified(session_->Target()) ? 1 : 0);
    }
    page.AddOwn({"cim_scrape_duration_seconds", "How long reading the server took"}, {}, Seconds(Clock::now() - begin));
    page.AddOwn({"cim_series", "Series of the server's values in this scrape"}, {},
                static_cast<double>(page.SeriesCount()));
    traffic.WriteTo(page);
    report.WriteTo(page);
    scrape.page = page.Text();
}

void Target::ReadClasses(Session& session, const Module& module, const Traffic& traffic, MetricPage& page,
                         ReadingReport& report) const {
    const auto mayGoOn = [&] { return traffic.Since().received < limits_.bytes; };
    for (const ClassRule& rule : module.classes) {
        if (mayGoOn()) {
            ClassMetrics(session, rule, page, report, mayGoOn).Read();
        } else {
            report.AddBeyondLimit(rule.className, "it was not asked for: the limit of bytes is reached");
        }
    }
}

/// The kept session, or a new one where the connection has changed or the definitions are old.
Session& Target::Connected(const Connection& connection, Clock::time_point deadline) {
    if (session_ && IsSameWay(way_, connection) && Clock::now() < connectedAt_ + limits_.definitionsLife) {
        session_->SetDeadline(deadline);
        return *session_;
    }
    session_.reset();
    Connection limited = connection;
    limited.deadline = deadline;
    limited.statistics = std::make_shared<OperationStatistics>();
    const ProgressWait direct;
    session_ = std::make_unique<Session>(plugin_, Trusted(plugin_, limited, *options_, direct), direct);
    way_ = connection;
    connectedAt_ = Clock::now();
    return *session_;
}

Scrape Target::Down(const std::string& reason) {
    MetricPage page(0);
    AddUp(reason, page);
    return {page.Text(), reason, false};
}

} // namespace cimhttp
