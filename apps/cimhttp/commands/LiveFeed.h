#pragma once

#include "commands/InstanceReader.h"
#include "live/LiveReading.h"
#include "live/ReadingMaker.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace cimhttp {

class BackgroundTask;

/// Reads the instances of a class again and again in a thread of its own, so that whoever looks at them never waits for
/// a server.
class LiveFeed {
  public:
    struct Settings {
        std::chrono::steady_clock::duration interval;
        std::optional<std::size_t> count; ///< how many readings there are; without end if empty
    };

    /// What is known when somebody looks.
    struct News {
        std::shared_ptr<const LiveReading> reading = {}; ///< the newest; null where there is none since the last look
        std::string loss = {};                           ///< since when there is no reading, and why; empty for none
        std::size_t losses = 0;                          ///< how often the server was lost
        std::string lastLoss = {};                       ///< the newest of these, also when it is over
        IncidentTally incidents = {};                    ///< of all readings
        UncomparedValues uncompared = {};                ///< of the newest one
        std::optional<std::chrono::steady_clock::time_point> begin = {}; ///< of the reading that goes on now
    };

    /// Begins to read. The reader must be one that waits in the thread that asks. Signals are for other threads.
    LiveFeed(InstanceReader reader, ReadingMaker maker, Settings settings);

    /// Where a reading has not ended, the program must leave by std::_Exit; see BackgroundTask.
    ~LiveFeed();
    LiveFeed(const LiveFeed&) = delete;
    LiveFeed& operator=(const LiveFeed&) = delete;

    News Look();

    /// While it pauses, no further reading begins.
    void SetPaused(bool isPaused);

    /// True when it has ended by itself. Throws what has ended it: a first reading that fails, and a failure that
    /// waiting does not mend.
    bool HasEnded();

    /// Ends it, and waits a little for a reading that goes on. Returns whether all has ended.
    bool Stop();

  private:
    struct State;
    class Work;

    std::shared_ptr<State> state_; // the thread has it too
    std::unique_ptr<BackgroundTask> task_;
};

} // namespace cimhttp
