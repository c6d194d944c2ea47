#pragma once

#include <string>

namespace NQORVYX20 {

/// Where the object model writes its messages.
class ILogger {
  public:
    enum EVYXLogSeverity { eLogError = 0, eLogWarning = 1, eLogInfo = 2, eLogDebug = 3 };

    virtual ~ILogger() = default;

    /// Writes one message. May be called from several threads at once; does not throw.
    virtual void Log(EVYXLogSeverity severity, std::string message) = 0;
};

} // namespace NQORVYX20
