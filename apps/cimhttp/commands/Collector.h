#pragma once

#include "Failure.h"
#include "HostTypes.h"
#include "cimhttp/DisplayTexts.h"
#include "commands/Collection.h"
#include "connection/Session.h"
#include "waiting/BackgroundTask.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

/// Reads classes with all their instances, one after the other, in a thread of its own: so the program can show how far
/// it has come, and end when the user wants it to, whatever the server does.
class Collector {
  public:
    struct Progress {
        std::size_t classesDone = 0; ///< read or failed
        std::size_t instances = 0;
        bool hasEnded = false;
    };

    /// How the classes are to be read.
    struct Settings {
        NQORVYX20::DisplayForm form;       ///< of the texts
        bool wantsHealth = false;          ///< what the instances tell of it
        std::optional<std::string> server; ///< one of several servers, named in the log
    };

    /// Begins to read. While that has not ended, see BackgroundTask about the end of the program.
    Collector(Session session, std::vector<std::string> names, Settings settings);

    /// Waits until something new is done, but no longer than `time`, and returns how far it has come.
    Progress Wait(std::chrono::milliseconds time);

    /// A line for each class that could not be read since the last call.
    std::vector<std::string> TakeFailures();

    /// Why the reading has ended before the last class, where the server is gone, does not let the user in, or sends
    /// more than there is memory for. It is no failure of a class.
    std::optional<Failure> EarlyEnd() const;

    /// Asks to read no further class. The one that is being read is still waited for.
    void Stop();

    /// What is there so far. Its classes are not touched any more.
    Collection Collected() const;

    /// What could not be taken from the server's answers, so far.
    IncidentTally Incidents() const;

  private:
    struct State;

    static void Run(State& state, const BackgroundTask::Notify& notify);
    static void ReadAll(State& state, const BackgroundTask::Notify& notify);
    static void ReadInstances(State& state, NQORVYX20::ICIMClass& cls, CollectedClass& collected);

    std::shared_ptr<State> state_; // the task has it too
    BackgroundTask task_;
};

} // namespace cimhttp
