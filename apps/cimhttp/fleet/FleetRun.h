#pragma once

#include <cstddef>
#include <functional>

namespace cimhttp {

/// Works on several servers at once, each in a thread, and hands over what came of it in the thread of the caller.
class FleetRun {
  public:
    enum class Order {
        kOfList,   ///< what is done waits until all before it are handed over
        kOfArrival ///< as it is done
    };

    struct Steps {
        /// Works on the server of that number, from 0; in a thread of its own, and not to throw.
        std::function<void(std::size_t number)> work;

        /// Gets the number of a server whose work is done. What it throws ends the run: no further work begins, and
        /// Run() throws it when the work at hand has ended.
        std::function<void(std::size_t number)> take;

        /// Is called several times a second, with the number of servers that are done.
        std::function<void(std::size_t done)> lookAround;

        /// Is called in the place of that where work does not end soon after something was thrown; must end the
        /// program, without taking away what the work uses. Finds what was thrown as the current exception.
        std::function<void()> leave;
    };

    /// No more than `parallel` servers are worked on at once.
    FleetRun(std::size_t count, std::size_t parallel, Order order)
        : count_(count), parallel_(parallel), order_(order) {}

    /// Returns when all are handed over. Throws Failure where not even one thread can be started.
    void Run(const Steps& steps) const;

  private:
    std::size_t count_;
    std::size_t parallel_;
    Order order_;
};

} // namespace cimhttp
