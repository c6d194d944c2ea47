#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "host/ILogger.h"

/// A logger that keeps its messages for a test to look at.
class CapturingLogger : public NQORVYX20::ILogger {
  public:
    void Log(EVYXLogSeverity severity, std::string message) override {
        const std::lock_guard<std::mutex> lock(fMutex);
        (severity == eLogError ? fErrors : fOthers).push_back(std::move(message));
    }

    std::vector<std::string> Errors() const {
        const std::lock_guard<std::mutex> lock(fMutex);
        return fErrors;
    }

    /// The messages of severity debug; nothing in the plug-in logs at the severities between.
    std::vector<std::string> Debug() const {
        const std::lock_guard<std::mutex> lock(fMutex);
        return fOthers;
    }

    void Forget() {
        const std::lock_guard<std::mutex> lock(fMutex);
        fErrors.clear();
        fOthers.clear();
    }

  private:
    mutable std::mutex fMutex;
    std::vector<std::string> fErrors;
    std::vector<std::string> fOthers;
};
