#include "FailureLog.h"

#include <gtest/gtest.h>

#include <sstream>

using cimhttp::FailureLog;
using NQORVYX20::ILogger;

TEST(FailureLog, WritesOnlyWhatItsLevelAsksFor) {
    std::ostringstream silent;
    FailureLog(silent, std::nullopt).Log(ILogger::eLogError, "e");
    EXPECT_EQ(silent.str(), "");
    std::ostringstream errors;
    FailureLog log(errors, ILogger::eLogError);
    log.Log(ILogger::eLogDebug, "detail");
    log.Log(ILogger::eLogError, "trouble");
    EXPECT_EQ(errors.str().find("detail"), std::string::npos);
    EXPECT_NE(errors.str().find("error trouble"), std::string::npos);
}
