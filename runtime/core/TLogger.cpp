#include "host/TLogger.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <ostream>
#include <string_view>
#include <system_error>

namespace NQORVYX20 {

namespace {

const char* NameOf(ILogger::EVYXLogSeverity severity) {
    switch (severity) {
    case ILogger::eLogError:
        return "error";
    case ILogger::eLogWarning:
        return "warning";
    case ILogger::eLogInfo:
        return "info";
    case ILogger::eLogDebug:
        return "debug";
    }
    return "unknown";
}

// ISO 8601, local time with milliseconds and offset.
std::string CurrentTime() {
    const auto now = std::chrono::system_clock::now();
    const auto sinceEpoch = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);
    const long offset = std::labs(local.tm_gmtoff) / 60;

    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%03d%c%02ld:%02ld", local.tm_year + 1900,
                  local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec,
                  static_cast<int>(sinceEpoch % 1000), local.tm_gmtoff < 0 ? '-' : '+', offset / 60, offset % 60);
    return text.data();
}

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

void AppendEscaped(std::string& line, std::string_view message) {
    constexpr std::string_view kHexDigits = "0123456789abcdef";
    for (const char c : message) {
        if (!IsControl(c))
            line += c;
        else if (c == '\n')
            line += "\\n";
        else if (c == '\r')
            line += "\\r";
        else if (c == '\t')
            line += "\\t";
        else
            line.append("\\x")
                .append(1, kHexDigits[static_cast<unsigned char>(c) / 16U])
                .append(1, kHexDigits[c % 16U]);
    }
}

std::string LineOf(ILogger::EVYXLogSeverity severity, std::string_view message) {
    std::string line = CurrentTime();
    line.append(" ").append(NameOf(severity)).append(" ");
    AppendEscaped(line, message);
    return line += '\n';
}

} // namespace

TLogger::TLogger(std::ostream& stream, EVYXLogSeverity level) : fLevel(level), fStream(stream) {}

TLogger::TLogger(const std::string& fileName, EVYXLogSeverity level)
    : fLevel(level), fFile(fileName, std::ios::app), fStream(fFile) {
    if (!fFile)
        throw std::system_error(errno, std::generic_category(), "cannot open the log file " + fileName);
}

void TLogger::Log(EVYXLogSeverity severity, std::string message) {
    if (severity > fLevel)
        return;
    try {
        const std::string line = LineOf(severity, message);
        const std::lock_guard<std::mutex> lock(fMutex);
        fStream << line << std::flush;
    } catch (const std::exception&) {
        // A message that cannot be written is lost: the work that it tells of matters more.
    }
}

} // namespace NQORVYX20
