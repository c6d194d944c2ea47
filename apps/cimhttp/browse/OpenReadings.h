#pragma once

#include "browse/InstanceRows.h"
#include "connection/Session.h"

#include <chrono>
#include <cstddef>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace cimhttp {

class InstanceSequence;

/// The instances of a class on their way to a page, which asks for some after the other. It has a connection of its
/// own, so that pages can ask for other things meanwhile.
class OpenReading {
  public:
    using Clock = std::chrono::steady_clock;

    /// Reads the class. Without names, all properties are wanted.
    OpenReading(Session session, const std::string& className, const std::vector<std::string>& names,
                const NQORVYX20::DisplayForm& form);
    ~OpenReading();
    OpenReading(const OpenReading&) = delete;
    OpenReading& operator=(const OpenReading&) = delete;

    struct Part {
        std::string columns; ///< JSON; empty where they are the same as before
        std::string rows;    ///< JSON
        bool isLast;
        double time; ///< when the last of them had come, in milliseconds of a steady clock
        std::vector<std::string> losses;
    };

    /// The next rows. A failure after some rows is thrown at the next call.
    Part Next();

  private:
    Session session_;
    boost::shared_ptr<NQORVYX20::ICIMClass> class_;
    const std::string className_;
    InstanceRows rows_;
    std::unique_ptr<InstanceSequence> sequence_;
    std::exception_ptr failure_;
};

/// The readings that pages have begun. For several threads.
class OpenReadings {
  public:
    /// Those that nobody asks for are ended after this time.
    static constexpr std::chrono::seconds kIdleLife{60};
    /// Of more, the one that was asked for the longest time ago is ended.
    static constexpr std::size_t kMost = 16;

    /// Keeps one under a number that nobody guesses.
    std::string Keep(std::shared_ptr<OpenReading> reading);

    /// The next rows of one. Throws Failure(kNotFound) where there is none of that number, or no longer.
    OpenReading::Part Next(const std::string& number);

    void End(const std::string& number);

    void EndIdle();

  private:
    struct Kept {
        std::shared_ptr<OpenReading> reading;
        OpenReading::Clock::time_point lastUse;
        std::shared_ptr<std::mutex> mutex; ///< of who reads
    };

    std::mutex mutex_;
    std::map<std::string, Kept> readings_;
};

} // namespace cimhttp
