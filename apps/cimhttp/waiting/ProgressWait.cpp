#include "waiting/ProgressWait.h"

#include "text/TerminalText.h"
#include "waiting/BackgroundTask.h"
#include "waiting/Interrupt.h"
#include "waiting/StatusLine.h"

#include <cstdlib>
#include <ostream>

namespace cimhttp {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kLookInterval{100}; // between two checks for an interrupt
constexpr std::chrono::milliseconds kUnnoticed{400};    // work that takes no longer shows no line
constexpr std::chrono::milliseconds kGrace{3000};       // for work that is to stop

[[noreturn]] void EndWith(const Failure& failure, std::ostream& errors) {
    errors << "cimhttp: " << Printable(failure.what()) << std::endl;
    std::_Exit(failure.Status()); // the work holds on to what an orderly end would take from it
}

} // namespace

void ProgressWait::Run(const std::string& what, const Work& work, const std::optional<Limit>& limit,
                       const std::function<void()>& stop) const {
    if (IsDirect()) {
        work();
        return;
    }
    const InterruptScope interrupts;
    BackgroundTask task([&work](const BackgroundTask::Notify& /*notify*/) { work(); });
    Await(what, task, limit, stop);
}

bool ProgressWait::AwaitEnd(BackgroundTask& task) {
    const auto end = Clock::now() + kGrace;
    bool hasEnded = false;
    for (auto left = kGrace; !hasEnded && left.count() > 0;
         left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now())) {
        hasEnded = task.Wait(left); // or it has notified
    }
    return hasEnded;
}

void ProgressWait::Await(const std::string& what, BackgroundTask& task, const std::optional<Limit>& limit,
                         const std::function<void()>& stop, const std::function<bool()>& isEnough) const {
    const InterruptScope interrupts;
    StatusLine line(showsLine_ ? errors_ : nullptr, width_);
    const auto begin = Clock::now();
    while (!task.Wait(kLookInterval)) {
        if (isEnough && isEnough()) {
            return;
        }
        const auto elapsed = Clock::now() - begin;
        if (Interrupted()) {
            line.Clear();
            if (stop) {
                stop();
                AwaitEnd(task);
            }
            onInterrupt_();
        }
        if (limit && elapsed >= limit->time) {
            line.Clear();
            if (onLate_) {
                onLate_(limit->failure());
            }
            EndWith(limit->failure(), *errors_);
        }
        if (elapsed >= kUnnoticed) {
            line.Show(Printable(what) + ", " + ElapsedText(std::chrono::duration_cast<std::chrono::seconds>(elapsed)));
        }
    }
    if (!isEnough || !isEnough()) {
        task.Rethrow();
    }
}

} // namespace cimhttp
