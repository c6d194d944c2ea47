#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace cimhttp {

/// What one operation on a server took. Times are in microseconds, sizes are bytes of CIM-XML.
struct Measurement {
    std::string operation; ///< its name on the wire
    std::uint64_t sent = 0;
    std::uint64_t received = 0;
    std::uint64_t roundTrip = 0;
    std::optional<std::uint64_t> serverTime; ///< where the server says it
};

/// Takes measurements, from whatever thread an operation runs on.
class MeasurementSink {
  public:
    virtual ~MeasurementSink() = default;
    virtual void Add(const Measurement& measurement) = 0;
};

} // namespace cimhttp
