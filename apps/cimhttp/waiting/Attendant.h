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

/// Looks after the user while the program waits for a server: a line of the terminal says what for and for how long,
/// and an interrupt ends the program at once, whatever the server does. What waits runs in a thread of its own
/// meanwhile.
class Attendant {
  public:
    using Work = std::function<void()>;

    /// How long work may take that has no time-out of its own, and the end of the program when it takes longer.
    struct Limit {
        std::chrono::milliseconds time;
        std::function<Failure()> failure;
    };

    /// `errors` must live longer than the attendant; with `showsLine` it is a terminal, `width` wide (0 for any).
    /// `onInterrupt` must end the program, without taking away what the work uses.
    Attendant(std::ostream& errors, bool showsLine, std::size_t width, std::function<void()> onInterrupt)
        : errors_(&errors), showsLine_(showsLine), width_(width), onInterrupt_(std::move(onInterrupt)) {}

    /// Waits for the work, and throws what it throws. `what` is what the line says. At an interrupt `stop` is called,
    /// if there is one, and the work has a few seconds to end in good order.
    void Attend(const std::string& what, const Work& work, const std::optional<Limit>& limit = {},
                const std::function<void()>& stop = {}) const;

    /// The same for work with a result.
    template <typename Reading>
    auto Read(const std::string& what, const Reading& reading, const std::function<void()>& stop = {}) const {
        std::optional<decltype(reading())> result;
        Attend(
            what, [&] { result.emplace(reading()); }, {}, stop);
        return std::move(*result);
    }

    /// Ends the program as at an interrupt.
    void End() const { onInterrupt_(); }

  private:
    std::ostream* errors_;
    bool showsLine_;
    std::size_t width_;
    std::function<void()> onInterrupt_;
};

} // namespace cimhttp
