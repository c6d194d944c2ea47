#include "connection/OperationStatistics.h"

#include "text/TimeText.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <ostream>

namespace cimhttp {

namespace {

constexpr const char* kNoTime = "-";

std::string TimeText(std::uint64_t microseconds) {
    return Milliseconds(std::chrono::microseconds(microseconds), 3) + " ms";
}

void WriteColumns(std::ostream& stream, const std::string& name, const std::string& requests, const std::string& sent,
                  const std::string& received, const std::string& roundTrip, const std::string& serverTime) {
    std::array<char, 192> line{};
    std::snprintf(line.data(), line.size(), "%-28s %8s %12s %14s %16s %16s\n", name.c_str(), requests.c_str(),
                  sent.c_str(), received.c_str(), roundTrip.c_str(), serverTime.c_str());
    stream << line.data();
}

} // namespace

void OperationStatistics::Sums::Add(const Sums& other) {
    requests += other.requests;
    sent += other.sent;
    received += other.received;
    roundTrip += other.roundTrip;
    serverTime += other.serverTime;
    serverTimes += other.serverTimes;
}

void OperationStatistics::Add(const Measurement& measurement) {
    const std::lock_guard<std::mutex> lock(mutex_);
    operations_[measurement.operation].Add({1, measurement.sent, measurement.received, measurement.roundTrip,
                                            measurement.serverTime.value_or(0),
                                            measurement.serverTime ? std::size_t{1} : 0});
}

OperationStatistics::Totals OperationStatistics::All() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    Totals all;
    for (const auto& [name, sums] : operations_) {
        all.requests += sums.requests;
        all.sent += sums.sent;
        all.received += sums.received;
    }
    return all;
}

void OperationStatistics::Write(std::ostream& stream) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    WriteColumns(stream, "operation", "answers", "bytes sent", "bytes received", "round trip", "server time");
    Sums all;
    for (const auto& [name, sums] : operations_) {
        WriteLine(stream, name, sums);
        all.Add(sums);
    }
    WriteLine(stream, "all", all);
    stream.flush();
}

void OperationStatistics::WriteLine(std::ostream& stream, const std::string& name, const Sums& sums) {
    const std::string known = sums.serverTimes == 0              ? kNoTime
                              : sums.serverTimes < sums.requests ? '>' + TimeText(sums.serverTime)
                                                                 : TimeText(sums.serverTime);
    WriteColumns(stream, name, std::to_string(sums.requests), std::to_string(sums.sent), std::to_string(sums.received),
                 TimeText(sums.roundTrip), known);
}

} // namespace cimhttp
