#pragma once

#include <iosfwd>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "host/ILogger.h"
#include "host/TLogger.h"

namespace cimhttp {

/// The program's logger. The plug-in reports a remote failure by a status or an empty result, and says why in its log:
/// this remembers the reason, and writes the log itself only when asked to.
class FailureLog : public NQORVYX20::ILogger {
  public:
    /// Writes messages up to `level` to `stream`, which must live longer than the logger; nothing without a level.
    FailureLog(std::ostream& stream, std::optional<EVYXLogSeverity> level);

    void Log(EVYXLogSeverity severity, std::string message) override;

    /// The remote library's words in the newest message that tells of a remote failure; empty when there was none.
    /// Forgets them.
    std::string TakeReason();

    /// The names of the properties whose values could not be kept. Forgets them.
    std::set<std::string> TakeLostProperties();

    /// How many messages of severity error there were.
    std::size_t ErrorCount() const;

    /// Forgets the messages behind the first `count`, which turned out to be no errors.
    void ResetErrorCount(std::size_t count);

  private:
    mutable std::mutex mutex_;
    std::string reason_;
    std::set<std::string> lost_properties_;
    std::size_t error_count_ = 0;
    std::optional<NQORVYX20::TLogger> written_;
};

} // namespace cimhttp
