#pragma once

#include "Failure.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <utility>

namespace cimhttp {

class BackgroundTask;

/// Waits for a server: a line of the terminal says what for and for how long, and an interrupt ends the program at
/// once, whatever the server does. The work itself runs in a thread of its own meanwhile.
class ProgressWait {
  public:
    using Work = std::function<void()>;

    /// The timeout of work that has none of its own, and the failure that ends the program when it passes.
    struct Limit {
        std::chrono::milliseconds time;
        std::function<Failure()> failure;
    };

    /// Waits in the thread that asks, shows nothing and takes no interrupt: for threads that are not the main one. The
    /// work must have a timeout of its own.
    ProgressWait() = default;

    /// `errors` must outlive the object; with `showsLine` it is a terminal, `width` wide (0 for any).
    /// `onInterrupt` must end the program, without taking away what the work uses.
    ProgressWait(std::ostream& errors, bool showsLine, std::size_t width, std::function<void()> onInterrupt)
        : errors_(&errors), showsLine_(showsLine), width_(width), onInterrupt_(std::move(onInterrupt)) {}

    /// Waits for the work, and throws what it throws. `what` is what the line says. At an interrupt `stop` is called,
    /// if there is one, and the work has a few seconds to end in good order.
    void Run(const std::string& what, const Work& work, const std::optional<Limit>& limit = {},
             const std::function<void()>& stop = {}) const;

    /// Waits so for work that has been begun already; with `isEnough`, only until that says so after the work has
    /// notified. It must not wait in the thread that asks.
    void Await(const std::string& what, BackgroundTask& task, const std::optional<Limit>& limit = {},
               const std::function<void()>& stop = {}, const std::function<bool()>& isEnough = {}) const;

    /// Gives work that is to stop a few seconds to end in good order. Returns whether it has ended.
    static bool AwaitEnd(BackgroundTask& task);

    /// Waits for work that returns a result, and returns that.
    template <typename Reading>
    auto Read(const std::string& what, const Reading& reading, const std::function<void()>& stop = {}) const {
        std::optional<decltype(reading())> result;
        Run(
            what, [&] { result.emplace(reading()); }, {}, stop);
        return std::move(*result);
    }

    /// Whether it waits in the thread that asks.
    bool IsDirect() const { return errors_ == nullptr; }

    /// This wait with another end for work whose time is over, which must end the program, too. It is called in the
    /// thread that waits.
    ProgressWait EndingLateWorkBy(std::function<void(const Failure&)> onLate) const {
        ProgressWait wait = *this;
        wait.onLate_ = std::move(onLate);
        return wait;
    }

    /// Ends the program as at an interrupt.
    void End() const { onInterrupt_(); }

  private:
    std::ostream* errors_ = nullptr;
    bool showsLine_ = false;
    std::size_t width_ = 0;
    std::function<void()> onInterrupt_;
    std::function<void(const Failure&)> onLate_; // empty: a line and the failure's status
};

} // namespace cimhttp
