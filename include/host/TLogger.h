#pragma once

#include "host/ILogger.h"

#include <fstream>
#include <iosfwd>
#include <mutex>
#include <string>

namespace NQORVYX20 {

/// A logger that writes one line per message, `2026-11-21T08:39:00.125+01:00 error text`: local time, severity
/// (`error`, `warning`, `info` or `debug`), message. Control characters, direction marks, characters without a width
/// and bytes that are not UTF-8 are written as escape sequences (`\n`, `\x1b`), so that a message can neither begin a
/// line of its own nor steer or deceive whoever reads it. Lines of several threads do not mix, and each is flushed.
class TLogger : public ILogger {
  public:
    /// Writes messages up to and including `level` to a stream, which must live longer than the logger.
    TLogger(std::ostream& stream, EVYXLogSeverity level);

    /// Appends them to a file. Throws std::system_error with its name when it cannot be opened.
    TLogger(const std::string& fileName, EVYXLogSeverity level);

    void Log(EVYXLogSeverity severity, std::string message) override;

  private:
    const EVYXLogSeverity level_;
    std::mutex mutex_;
    std::ofstream file_;
    std::ostream& stream_;
};

} // namespace NQORVYX20
