#include "server/AccessLog.h"

#include "wire/PercentEncoding.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

namespace demo {

namespace {

/// In what a client sends, blanks and the ends of lines are encoded, so that nobody forges lines.
std::string OrDash(const std::string& text) { return text.empty() ? "-" : PercentEncode(text); }

} // namespace

void AccessLog::Write(const AccessRecord& record) {
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(record.begin.time_since_epoch()).count() % 1000;
    const std::string line =
        fmt::format("{:%Y-%m-%dT%H:%M:%S}.{:03}Z {} {} {} {} {} {} {} {:.1f}\n",
                    fmt::gmtime(std::chrono::system_clock::to_time_t(record.begin)), milliseconds,
                    record.client.empty() ? "-" : record.client, OrDash(record.user), OrDash(record.operation),
                    OrDash(record.object), record.httpStatus == 0 ? "-" : std::to_string(record.httpStatus),
                    record.cimStatus.value_or("-"), record.bytes,
                    std::chrono::duration<double, std::milli>(record.duration).count());
    const std::lock_guard<std::mutex> lock(mutex_);
    stream_ << line << std::flush;
}

} // namespace demo
