#pragma once

#include "host/ILogger.h"
#include "host/TRootObject.h"

#include <string>
#include <utility>

namespace NQORVYX20 {

/// Write one message to the host's core logger, fetched anew because the host may exchange it.
inline void LogError(std::string message) { TRootObject::GetCoreLogger()->Log(ILogger::eLogError, std::move(message)); }

inline void LogWarning(std::string message) {
    TRootObject::GetCoreLogger()->Log(ILogger::eLogWarning, std::move(message));
}

inline void LogInfo(std::string message) { TRootObject::GetCoreLogger()->Log(ILogger::eLogInfo, std::move(message)); }

inline void LogDebug(std::string message) { TRootObject::GetCoreLogger()->Log(ILogger::eLogDebug, std::move(message)); }

} // namespace NQORVYX20
