#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

namespace cimhttp {

struct LiveReading;

/// The numbers of the last minute: for each instance and column the means of twelve spans of five seconds. What there
/// is for one number does not depend on how often it is read.
class History {
  public:
    using Time = std::chrono::steady_clock::time_point;

    static constexpr std::size_t kSpans = 12;
    static constexpr std::chrono::seconds kSpan{5};

    /// The means, the oldest first; nothing for a span in which the number was not known.
    using Means = std::array<std::optional<double>, kSpans>;

    /// `interval` is the time between two readings: a number counts for spans without a reading as long as that.
    explicit History(std::chrono::steady_clock::duration interval);

    /// Adds the numbers of a reading, and drops those of instances that it does not have.
    void Add(const LiveReading& reading);

    /// The minute until the newest reading.
    Means Of(const std::string& path, const std::string& column) const;

  private:
    struct Mean {
        float value = 0;
        std::uint32_t count = 0;
    };

    struct Series {
        std::int64_t newest = 0; // the span that was added to last
        std::array<Mean, kSpans> means{};
    };

    using Instance = std::unordered_map<std::string, Series>;

    static std::int64_t SpanOf(Time time) { return time.time_since_epoch() / kSpan; }
    static std::size_t PlaceOf(std::int64_t span) { return static_cast<std::size_t>(span) % kSpans; }
    static void AddTo(Series& series, std::int64_t span, double number);

    std::int64_t held_; // how many spans without a reading a number counts for
    std::int64_t newest_ = 0;
    std::unordered_map<std::string, Instance> instances_; // by path
};

} // namespace cimhttp
