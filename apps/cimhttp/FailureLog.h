#pragma once

#include "host/ILogger.h"
#include "host/TLogger.h"

#include <iosfwd>
#include <optional>
#include <string>

namespace cimhttp {

/// The program's logger, which writes what the plug-in says of failures and of its work, if that is asked for.
class FailureLog : public NQORVYX20::ILogger {
  public:
    /// Writes messages up to `level` to `stream`, which must live longer than the logger; nothing without a level.
    FailureLog(std::ostream& stream, std::optional<EVYXLogSeverity> level);

    void Log(EVYXLogSeverity severity, std::string message) override;

  private:
    std::optional<NQORVYX20::TLogger> written_;
};

} // namespace cimhttp
