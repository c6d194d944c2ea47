#include "browse/OpenReadings.h"

#include "Failure.h"
#include "access/InstanceSequence.h"
#include "connection/ServerInstances.h"
#include "connection/ServerSchema.h"
#include "text/Unguessable.h"

#include <algorithm>
#include <utility>

namespace cimhttp {

namespace {

constexpr std::size_t kRowsAtOnce = 2000;
constexpr std::size_t kBytesAtOnce = std::size_t{4} << 20U;

/// Of a class with more instances, they come in the server's order.
constexpr std::size_t kHeld = 2000;

double Milliseconds(OpenReading::Clock::time_point time) {
    return std::chrono::duration<double, std::milli>(time.time_since_epoch()).count();
}

} // namespace

OpenReading::OpenReading(Session session, const std::string& className, const std::vector<std::string>& names,
                         const NQORVYX20::DisplayForm& form)
    : session_(std::move(session)),
      class_(ServerSchema(session_).Class(className)),
      className_(className),
      rows_(*class_, names, ValueTexts(session_.Access(), form)),
      sequence_(ServerInstances(session_).Open(*class_, true, names, kHeld)) {}

OpenReading::~OpenReading() = default;

OpenReading::Part OpenReading::Next() {
    if (failure_) {
        std::rethrow_exception(failure_);
    }
    try {
        while (!sequence_->IsAtEnd() && rows_.Count() < kRowsAtOnce && rows_.Size() < kBytesAtOnce) {
            rows_.Append(ServerInstances(session_).Next(*sequence_, className_));
        }
    } catch (const Failure&) {
        if (rows_.Count() == 0) {
            throw;
        }
        failure_ = std::current_exception();
    }
    const double time = Milliseconds(Clock::now());
    const IncidentTally incidents = session_.TakeIncidents();
    Part part{rows_.TakeColumns().value_or(""), rows_.Take(), sequence_->IsAtEnd() && !failure_, time, {}};
    if (!incidents.IsEmpty()) {
        part.losses.push_back(incidents.Text());
    }
    return part;
}

std::string OpenReadings::Keep(std::shared_ptr<OpenReading> reading) {
    std::shared_ptr<OpenReading> ended; // outside of the lock, since it may tell a server
    const std::lock_guard<std::mutex> lock(mutex_);
    if (readings_.size() >= kMost) {
        const auto oldest =
            std::min_element(readings_.begin(), readings_.end(), [](const auto& one, const auto& other) {
                return one.second.lastUse < other.second.lastUse;
            });
        ended = std::move(oldest->second.reading);
        readings_.erase(oldest);
    }
    std::string number = UnguessableText();
    readings_.emplace(number, Kept{std::move(reading), OpenReading::Clock::now(), std::make_shared<std::mutex>()});
    return number;
}

OpenReading::Part OpenReadings::Next(const std::string& number) {
    std::shared_ptr<OpenReading> reading;
    std::shared_ptr<std::mutex> turn;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = readings_.find(number);
        if (found == readings_.end()) {
            throw Failure(Failure::kNotFound, "this reading has ended; begin another");
        }
        reading = found->second.reading;
        turn = found->second.mutex;
        found->second.lastUse = OpenReading::Clock::now();
    }
    const std::lock_guard<std::mutex> lock(*turn);
    try {
        OpenReading::Part part = reading->Next();
        if (part.isLast) {
            End(number);
        }
        return part;
    } catch (...) {
        End(number);
        throw;
    }
}

void OpenReadings::End(const std::string& number) {
    std::shared_ptr<OpenReading> ended;
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = readings_.find(number);
    if (found != readings_.end()) {
        ended = std::move(found->second.reading);
        readings_.erase(found);
    }
}

void OpenReadings::EndIdle() {
    std::vector<std::shared_ptr<OpenReading>> ended;
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto oldest = OpenReading::Clock::now() - kIdleLife;
    for (auto kept = readings_.begin(); kept != readings_.end();) {
        const bool isIdle = kept->second.lastUse < oldest && kept->second.reading.use_count() == 1;
        if (isIdle) {
            ended.push_back(std::move(kept->second.reading));
        }
        kept = isIdle ? readings_.erase(kept) : std::next(kept);
    }
}

} // namespace cimhttp
