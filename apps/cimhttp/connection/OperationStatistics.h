#pragma once

#include "access/MeasurementSink.h"

#include <cstddef>
#include <iosfwd>
#include <map>
#include <mutex>
#include <string>

namespace cimhttp {

/// What a run of the program asked of servers, and what that took, by operation. Several threads may add to it.
class OperationStatistics : public MeasurementSink {
  public:
    void Add(const Measurement& measurement) override;

    /// How many requests were answered, and the bytes of CIM-XML of all operations together.
    struct Totals {
        std::size_t requests = 0;
        std::uint64_t sent = 0;
        std::uint64_t received = 0;
    };
    Totals All() const;

    /// A table with a line for each operation, in the order of their names, and one for all.
    void Write(std::ostream& stream) const;

  private:
    struct Sums {
        std::size_t requests = 0;
        std::uint64_t sent = 0;
        std::uint64_t received = 0;
        std::uint64_t roundTrip = 0;
        std::uint64_t serverTime = 0;
        std::size_t serverTimes = 0; ///< how many answers told it

        void Add(const Sums& other);
    };

    static void WriteLine(std::ostream& stream, const std::string& name, const Sums& sums);

    mutable std::mutex mutex_;
    std::map<std::string, Sums> operations_;
};

} // namespace cimhttp
