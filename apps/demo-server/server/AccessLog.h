#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <ostream>
#include <string>

namespace demo {

/// What is to be said about a request and its answer. Texts are empty where they are not known.
struct AccessRecord {
    std::chrono::system_clock::time_point begin;
    std::string client;
    std::string user;
    std::string operation;
    /// The class, or the class of the instance, or the qualifier that the request is about.
    std::string object;
    /// 0 if the connection broke before there was an answer.
    int httpStatus = 0;
    /// The status of the operation, 0 for success; nothing if there was none.
    std::optional<std::string> cimStatus;
    /// The length of the answer as it was sent, headers included.
    std::uint64_t bytes = 0;
    std::chrono::microseconds duration{0};
};

/// Writes a line for each request: the members of AccessRecord in their order, with a blank between them and - for what
/// is not known. Times are in UTC, durations in milliseconds.
class AccessLog {
  public:
    /// The stream must outlive the log, and is flushed after every line.
    explicit AccessLog(std::ostream& stream) : stream_(stream) {}

    /// Safe to call from several threads.
    void Write(const AccessRecord& record);

  private:
    std::mutex mutex_;
    std::ostream& stream_;
};

} // namespace demo
