#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

namespace cimhttp {

/// Work in a thread of its own, such as waiting for a server: so the program can look after the user meanwhile, and end
/// when the user wants it to, whatever the work does.
class BackgroundTask {
  public:
    using Notify = std::function<void()>;

    /// Begins; throws Failure when there can be no further thread. The work may call what it is given, to wake the one
    /// who waits.
    explicit BackgroundTask(std::function<void(const Notify&)> work);

    /// While the work has not ended, its thread goes on: the program must then leave without taking away what the work
    /// uses, as by std::_Exit.
    ~BackgroundTask();
    BackgroundTask(const BackgroundTask&) = delete;
    BackgroundTask& operator=(const BackgroundTask&) = delete;

    /// Waits for the end or for a notification that nobody has waited for yet, but no longer than this. Returns whether
    /// the work has ended.
    bool Wait(std::chrono::milliseconds time);

    /// Throws what work that has ended threw.
    void Rethrow() const;

  private:
    struct State;

    static std::thread Start(std::function<void()> work);
    static void Run(const std::shared_ptr<State>& state, const std::function<void(const Notify&)>& work);

    std::shared_ptr<State> state_; // the thread has it too
    std::thread thread_;
};

} // namespace cimhttp
