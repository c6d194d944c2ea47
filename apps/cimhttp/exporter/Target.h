#pragma once

#include "connection/Connection.h"
#include "connection/Plugin.h"
#include "exporter/Module.h"
#include "exporter/ScrapeLimits.h"
#include "exporter/TargetPlaces.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace cimhttp {

struct Options;
class MetricPage;
class ReadingReport;
class Session;
class Traffic;

/// What a scrape of a server has come to.
struct Scrape {
    std::string page;      ///< in Prometheus' text format
    std::string failure;   ///< why the server could not be read; empty when it could
    bool isShared = false; ///< another request has had the server read
};

/// One server that Prometheus asks for. Its connection is kept from scrape to scrape, and with it the definitions of
/// its classes. The server is read in a thread of its own, since what asks for it may not wait for longer than it may
/// take. Used from several threads.
class Target {
  public:
    using Clock = std::chrono::steady_clock;

    /// `options` lead to the server, which they name, as those of a program that asks nobody. All must outlive the
    /// object.
    Target(const Plugin& plugin, const Options& options, const ScrapeLimits& limits, TargetPlaces& places);

    /// Waits for a reading that is on its way.
    ~Target();
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    /// Reads the server, unless it is being read for the same module already: then that is awaited. A page comes until
    /// the deadline, whatever the server does.
    Scrape Read(const Module& module, Clock::time_point deadline);

    /// When it was last asked for.
    Clock::time_point LastUse() const;

    /// Whether it is being read, and how many requests wait for that.
    bool IsBusy() const;
    std::size_t WaitingCount() const;

  private:
    struct Reading {
        std::string module;
        std::optional<Scrape> result;
    };

    void Begin(const Module& module, Clock::time_point deadline);
    Scrape ReadNow(const Module& module, Clock::time_point deadline);
    void ReadClasses(Session& session, const Module& module, const Traffic& traffic, MetricPage& page,
                     ReadingReport& report) const;
    void Fill(const Module& module, Clock::time_point deadline, Scrape& scrape);
    Session& Connected(const Connection& connection, Clock::time_point deadline);
    static Scrape Down(const std::string& reason);

    const Plugin& plugin_;
    const std::shared_ptr<const Options> options_;
    const ScrapeLimits limits_;
    TargetPlaces& places_;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::shared_ptr<Reading> reading_; // null while it is not being read
    std::size_t waiting_ = 0;
    std::thread thread_;
    Clock::time_point lastUse_ = Clock::now();

    // of the thread that reads
    std::unique_ptr<Session> session_;
    Connection way_; // as it was before trust was asked for
    Clock::time_point connectedAt_;
};

} // namespace cimhttp
