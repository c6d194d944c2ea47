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
        const std::lock_guard<std::mutex> lock(fMutex);
        EXPECT_TRUE(severity == eLogError || severity == eLogDebug || (severity == eLogWarning && fIsFaithful) ||
                    (severity == eLogInfo && fIsUnderPolicy))
            << severity << ": " << message;
        (severity == eLogError     ? fErrors
         : severity == eLogWarning ? fWarnings
         : severity == eLogInfo    ? fInfos
                                   : fDebug)
            .push_back(std::move(message));
    }

    void ExpectWarnings() { fIsFaithful = true; }
    void ExpectInfos() { fIsUnderPolicy = true; }

    std::vector<std::string> Errors() const {
        const std::lock_guard<std::mutex> lock(fMutex);
        return fErrors;
    }

    std::vector<std::string> Warnings() const {
        const std::lock_guard<std::mutex> lock(fMutex);
        return fWarnings;
    }

    std::vector<std::string> Infos() const {
        const std::lock_guard<std::mutex> lock(fMutex);
        return fInfos;
    }

    std::vector<std::string> Debug() const {
        const std::lock_guard<std::mutex> lock(fMutex);
        return fDebug;
    }

    void Forget() {
        const std::lock_guard<std::mutex> lock(fMutex);
        fErrors.clear();
        fWarnings.clear();
        fInfos.clear();
        fDebug.clear();
    }

  private:
    bool fIsFaithful = false;
    bool fIsUnderPolicy = false;
    mutable std::mutex fMutex;
    std::vector<std::string> fErrors;
    std::vector<std::string> fWarnings;
    std::vector<std::string> fInfos;
    std::vector<std::string> fDebug;
};
