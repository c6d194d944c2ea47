#include "commands/LiveFeed.h"

#include "Failure.h"
#include "text/TerminalText.h"
#include "text/TimeText.h"
#include "waiting/BackgroundTask.h"
#include "waiting/Repetition.h"

#include <condition_variable>
#include <csignal>
#include <mutex>
#include <utility>

namespace cimhttp {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kGrace{300}; // for a reading that goes on at the end

/// While one lives, threads that are started take no signals.
class SignalsBlocked {
  public:
    SignalsBlocked() {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~SignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

  private:
    sigset_t before_{};
};

} // namespace

struct LiveFeed::State {
    State(InstanceReader itsReader, ReadingMaker itsMaker, Settings itsSettings)
        : reader(std::move(itsReader)), maker(std::move(itsMaker)), settings(itsSettings) {}

    // For the thread that reads.
    InstanceReader reader;
    ReadingMaker maker;
    const Settings settings;

    std::mutex mutex; // guards all below
    std::condition_variable changed;
    News news;
    bool isPaused = false;
    bool isToEnd = false;
};

class LiveFeed::Work : public RepeatedReading {
  public:
    explicit Work(State& state) : state_(state) {}

    /// A server that is not there at first is not waited for.
    void Run() {
        Read();
        const auto count = state_.settings.count;
        Repetition(state_.settings.interval, [this](Clock::duration time) {
            return Wait(time);
        }).Run(*this, count ? std::optional(*count - 1) : std::nullopt);
    }

    void Read() override {
        {
            const std::lock_guard<std::mutex> lock(state_.mutex);
            state_.news.begin = Clock::now();
        }
        try {
            const InstanceReader::Reading read = state_.reader.Read();
            auto made = std::make_shared<LiveReading>(state_.maker.Make(read.properties, read.instances, Clock::now()));
            made->count = read.count;
            const IncidentTally incidents = state_.reader.TakeIncidents();
            const std::lock_guard<std::mutex> lock(state_.mutex);
            state_.news.reading = std::move(made);
            state_.news.uncompared = read.uncompared;
            state_.news.incidents.Add(incidents);
            state_.news.begin.reset();
        } catch (...) {
            const std::lock_guard<std::mutex> lock(state_.mutex);
            state_.news.begin.reset();
            throw;
        }
    }

    void Show(std::size_t /*round*/) override {} // whoever looks does

    void Lose(const Failure& failure) override {
        const std::lock_guard<std::mutex> lock(state_.mutex);
        ++state_.news.losses;
        state_.news.loss = "no reading since " + TimeOfDay() + ": " + Printable(failure.what());
        state_.news.lastLoss = state_.news.loss;
    }

    void Regain() override {
        const std::lock_guard<std::mutex> lock(state_.mutex);
        state_.news.loss.clear();
    }

  private:
    bool Wait(Clock::duration time) {
        std::unique_lock<std::mutex> lock(state_.mutex);
        state_.changed.wait_for(lock, time, [this] { return state_.isToEnd; });
        state_.changed.wait(lock, [this] { return state_.isToEnd || !state_.isPaused; });
        return !state_.isToEnd;
    }

    State& state_;
};

LiveFeed::LiveFeed(InstanceReader reader, ReadingMaker maker, Settings settings)
    : state_(std::make_shared<State>(std::move(reader), std::move(maker), settings)) {
    const SignalsBlocked signals;
    task_ = std::make_unique<BackgroundTask>(
        [state = state_](const BackgroundTask::Notify& /*notify*/) { Work(*state).Run(); });
}

LiveFeed::~LiveFeed() { Stop(); }

LiveFeed::News LiveFeed::Look() {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    News news = state_->news;
    state_->news.reading.reset();
    return news;
}

void LiveFeed::SetPaused(bool isPaused) {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    state_->isPaused = isPaused;
    state_->changed.notify_all();
}

bool LiveFeed::HasEnded() {
    if (!task_->Wait(std::chrono::milliseconds(0))) {
        return false;
    }
    task_->Rethrow();
    return true;
}

bool LiveFeed::Stop() {
    {
        const std::lock_guard<std::mutex> lock(state_->mutex);
        state_->isToEnd = true;
        state_->changed.notify_all();
    }
    return task_->Wait(kGrace);
}

} // namespace cimhttp
