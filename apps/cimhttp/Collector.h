#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Collection.h"
#include "Session.h"

namespace cimhttp {

/// Reads classes with all their instances, one after the other, in a thread of its own: so the program can show how far
/// it has come, and end when the user wants it to, whatever the server does.
class Collector {
  public:
    struct Progress {
        std::size_t classes_done = 0; ///< read or failed
        std::size_t instances = 0;
        bool has_ended = false;
    };

    /// Begins to read.
    Collector(Session session, std::vector<std::string> names);

    /// While the thread has not ended, it goes on: the program must then leave by std::_Exit.
    ~Collector();
    Collector(const Collector&) = delete;
    Collector& operator=(const Collector&) = delete;

    /// Waits until something new is done, but no longer than this, and tells how far it has come.
    Progress Wait(std::chrono::milliseconds time) const;

    /// A line for each class that could not be read since the last call.
    std::vector<std::string> TakeFailures();

    /// Asks to read no further class. The one at hand is still waited for.
    void Stop();

    /// What is there so far. Its classes are not touched any more.
    Collection Collected() const;

  private:
    struct State;

    static void Run(const std::shared_ptr<State>& state);

    std::shared_ptr<State> state_; // the thread has it too
    std::thread thread_;
};

} // namespace cimhttp
