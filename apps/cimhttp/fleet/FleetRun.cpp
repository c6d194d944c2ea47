#include "fleet/FleetRun.h"

#include "Failure.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

namespace cimhttp {

namespace {

constexpr std::chrono::milliseconds kLookInterval{100};
constexpr std::chrono::milliseconds kGrace{1000}; // for work that is at hand when the run ends early

/// Hands out the numbers of servers to work on, and gets them back.
class Numbers {
  public:
    Numbers(std::size_t count, FleetRun::Order order) : count_(count), order_(order), isDone_(count) {}

    /// The next server to work on; nothing when there is none.
    std::optional<std::size_t> Next() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return next_ < count_ ? std::optional<std::size_t>(next_++) : std::nullopt;
    }

    void PutBack(std::size_t number) {
        const std::lock_guard<std::mutex> lock(mutex_);
        ++done_;
        isDone_[number] = true;
        if (order_ == FleetRun::Order::kOfArrival) {
            ready_.push_back(number);
        }
        for (; order_ == FleetRun::Order::kOfList && released_ < count_ && isDone_[released_]; ++released_) {
            ready_.push_back(released_);
        }
        changed_.notify_all();
    }

    void Stop() {
        const std::lock_guard<std::mutex> lock(mutex_);
        next_ = count_;
    }

    void EndThread() {
        const std::lock_guard<std::mutex> lock(mutex_);
        ++endedThreads_;
        changed_.notify_all();
    }

    /// Waits for a server to hand over, but not for long.
    std::optional<std::size_t> AwaitReady() {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait_for(lock, kLookInterval, [this] { return !ready_.empty(); });
        if (ready_.empty()) {
            return std::nullopt;
        }
        const std::size_t number = ready_.front();
        ready_.pop_front();
        return number;
    }

    /// False where some of the threads do not end in time.
    bool AwaitThreads(std::size_t threads) {
        std::unique_lock<std::mutex> lock(mutex_);
        return changed_.wait_for(lock, kGrace, [&] { return endedThreads_ == threads; });
    }

    std::size_t Done() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return done_;
    }

  private:
    const std::size_t count_;
    const FleetRun::Order order_;
    std::mutex mutex_; // guards all below
    std::condition_variable changed_;
    std::vector<bool> isDone_;
    std::deque<std::size_t> ready_;
    std::size_t next_ = 0;
    std::size_t released_ = 0; // of those before it, all are ready
    std::size_t done_ = 0;
    std::size_t endedThreads_ = 0;
};

/// Threads that are joined at the end of the object's life.
class Workers {
  public:
    Workers(std::size_t count, const std::function<void()>& work) {
        while (threads_.size() < count) {
            try {
                threads_.emplace_back(work);
            } catch (const std::system_error& error) {
                if (threads_.empty()) {
                    throw Failure(Failure::kOther, "no further thread can be started: " + error.code().message());
                }
                return; // these do all the work
            }
        }
    }
    ~Workers() {
        for (std::thread& thread : threads_) {
            thread.join();
        }
    }
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    std::size_t Count() const { return threads_.size(); }

  private:
    std::vector<std::thread> threads_;
};

} // namespace

void FleetRun::Run(const Steps& steps) const {
    Numbers numbers(count_, order_);
    const Workers workers(std::min(count_, parallel_), [&] {
        while (const auto number = numbers.Next()) {
            steps.work(*number);
            numbers.PutBack(*number);
        }
        numbers.EndThread();
    });
    try {
        for (std::size_t taken = 0; taken < count_;) {
            if (const auto number = numbers.AwaitReady()) {
                steps.take(*number);
                ++taken;
            }
            steps.lookAround(numbers.Done());
        }
    } catch (...) {
        numbers.Stop();
        if (!numbers.AwaitThreads(workers.Count())) {
            steps.leave();
        }
        throw;
    }
}

} // namespace cimhttp
