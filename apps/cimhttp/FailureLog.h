#pragma once

#include <cstddef>
#include <iosfwd>
#include <mutex>
#include <optional>
#include <string>

#include "host/ILogger.h"
#include "host/TLogger.h"

namespace cimhttp {

/// The program's logger: writes the plug-in's log when asked to, and counts the errors in it.
class FailureLog : public NQORVYX20::ILogger {
  public:
    /// Writes messages up to `level` to `stream`, which must live longer than the logger; nothing without a level.
    FailureLog(std::ostream& stream, std::optional<EVYXLogSeverity> level);

    void Log(EVYXLogSeverity severity, std::string message) override;

    /// How many messages of severity error there were.
    std::size_t ErrorCount() const;

  private:
    mutable std::mutex mutex_;
    std::size_t error_count_ = 0;
    std::optional<NQORVYX20::TLogger> written_;
};

} // namespace cimhttp
