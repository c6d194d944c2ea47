#pragma once

#include "host/ILogger.h"

#include <gtest/gtest.h>

#include <mutex>
#include <string>
#include <vector>

/// A logger that keeps its messages for a test to look at. The plug-in knows two severities, its faithful reading
/// warnings, and where a policy counts it informs; at another one a message fails the test.
class CapturingLogger : public NQORVYX20::ILogger {
  public:
    void Log(EVYXLogSeverity severity, std::string message) override {
        const std::lock_guard<std::mutex> lock(mutex_);
        EXPECT_TRUE(severity == eLogError || severity == eLogDebug || (severity == eLogWarning && isFaithful_) ||
                    (severity == eLogInfo && isUnderPolicy_))
            << severity << ": " << message;
        (severity == eLogError     ? errors_
         : severity == eLogWarning ? warnings_
         : severity == eLogInfo    ? infos_
                                   : debug_)
            .push_back(std::move(message));
    }

    void ExpectWarnings() { isFaithful_ = true; }
    void ExpectInfos() { isUnderPolicy_ = true; }

    std::vector<std::string> Errors() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return errors_;
    }

    std::vector<std::string> Warnings() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return warnings_;
    }

    std::vector<std::string> Infos() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return infos_;
    }

    std::vector<std::string> Debug() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return debug_;
    }

    void Forget() {
        const std::lock_guard<std::mutex> lock(mutex_);
        errors_.clear();
        warnings_.clear();
        infos_.clear();
        debug_.clear();
    }

  private:
    bool isFaithful_ = false;
    bool isUnderPolicy_ = false;
    mutable std::mutex mutex_;
    std::vector<std::string> errors_;
    std::vector<std::string> warnings_;
    std::vector<std::string> infos_;
    std::vector<std::string> debug_;
};
