#pragma once

#include "host/ILogger.h"

#include <mutex>
#include <string>
#include <vector>

/// Keeps its messages, each as `error text`.
class TRecordingLogger : public NQORVYX20::ILogger {
  public:
    void Log(EVYXLogSeverity severity, std::string message) override {
        constexpr const char* kNames[] = {"error", "warning", "info", "debug"};
        const std::lock_guard<std::mutex> lock(mutex_);
        lines_.push_back(kNames[severity] + (' ' + message));
    }

    std::vector<std::string> Lines() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return lines_;
    }

  private:
    mutable std::mutex mutex_;
    std::vector<std::string> lines_;
};
