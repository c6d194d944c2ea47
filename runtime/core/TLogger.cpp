#include "host/TLogger.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <optional>
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

struct TRange {
    char32_t first;
    char32_t last;
};

// What steers a terminal, or shows nothing and changes how the text around it looks: controls (C0, C1), soft hyphen,
// fillers, blanks of no width, joiners, marks of direction, ends of lines, annotations, tags.
constexpr std::array<TRange, 17> kControls{{{0x00, 0x1F},
                                            {0x7F, 0x9F},
                                            {0xAD, 0xAD},
                                            {0x34F, 0x34F},
                                            {0x61C, 0x61C},
                                            {0x115F, 0x1160},
                                            {0x17B4, 0x17B5},
                                            {0x180E, 0x180E},
                                            {0x200B, 0x200F},
                                            {0x2028, 0x202E},
                                            {0x2060, 0x206F},
                                            {0x3164, 0x3164},
                                            {0xFEFF, 0xFEFF},
                                            {0xFFA0, 0xFFA0},
                                            {0xFFF9, 0xFFFB},
                                            {0x1D173, 0x1D17A},
                                            {0xE0000, 0xE0FFF}}};

bool IsControl(char32_t character) {
    return std::any_of(kControls.begin(), kControls.end(),
                       [&](const TRange& range) { return character >= range.first && character <= range.last; });
}

// The size of the UTF-8 sequence that begins with a byte; 0 when none does.
std::size_t SequenceSize(unsigned char lead) {
    if (lead < 0x80U) {
        return 1;
    }
    if (lead < 0xC2U || lead > 0xF4U) { // continuations, overlong forms, beyond Unicode
        return 0;
    }
    return lead < 0xE0U ? 2 : lead < 0xF0U ? 3 : 4;
}

// The character of a whole sequence; nothing when it is not good UTF-8.
std::optional<char32_t> Decoded(std::string_view sequence) {
    constexpr std::array<char32_t, 5> kSmallest{0, 0, 0x80, 0x800, 0x10000};
    char32_t value = static_cast<unsigned char>(sequence.front());
    if (sequence.size() > 1) {
        value &= 0x7FU >> sequence.size();
    }
    for (const char c : sequence.substr(1)) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0U) != 0x80U) {
            return std::nullopt;
        }
        value = (value << 6U) | (byte & 0x3FU);
    }
    const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
    return value < kSmallest[sequence.size()] || value > 0x10FFFF || isSurrogate ? std::nullopt : std::optional(value);
}

// How many bytes at the front are a character that may be written as it is; 0 when it has to be escaped.
std::size_t PlainSize(std::string_view text) {
    const std::size_t size = SequenceSize(static_cast<unsigned char>(text.front()));
    if (size == 0 || size > text.size()) {
        return 0;
    }
    const auto character = Decoded(text.substr(0, size));
    return character && !IsControl(*character) ? size : 0;
}

void AppendEscaped(std::string& line, char c) {
    constexpr std::string_view kHexDigits = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n') {
        line += "\\n";
    } else if (c == '\r') {
        line += "\\r";
    } else if (c == '\t') {
        line += "\\t";
    } else {
        line.append("\\x").append(1, kHexDigits[byte / 16U]).append(1, kHexDigits[byte % 16U]);
    }
}

// The bytes that follow an escaped one are looked at by themselves: they are no characters either.
void AppendEscaped(std::string& line, std::string_view message) {
    while (!message.empty()) {
        const std::size_t plain = PlainSize(message);
        if (plain == 0) {
            AppendEscaped(line, message.front());
        } else {
            line.append(message, 0, plain);
        }
        message.remove_prefix(std::max<std::size_t>(plain, 1));
    }
}

std::string LineOf(ILogger::EVYXLogSeverity severity, std::string_view message) {
    std::string line = CurrentTime();
    line.append(" ").append(NameOf(severity)).append(" ");
    AppendEscaped(line, message);
    return line += '\n';
}

} // namespace

TLogger::TLogger(std::ostream& stream, EVYXLogSeverity level) : level_(level), stream_(stream) {}

TLogger::TLogger(const std::string& fileName, EVYXLogSeverity level)
    : level_(level), file_(fileName, std::ios::app), stream_(file_) {
    if (!file_) {
        throw std::system_error(errno, std::generic_category(), "cannot open the log file " + fileName);
    }
}

void TLogger::Log(EVYXLogSeverity severity, std::string message) {
    if (severity > level_) {
        return;
    }
    try {
        const std::string line = LineOf(severity, message);
        const std::lock_guard<std::mutex> lock(mutex_);
        stream_ << line << std::flush;
    } catch (const std::exception&) {
        // A message that cannot be written is lost: the work that it tells of matters more.
    }
}

} // namespace NQORVYX20
