#include "FailureLog.h"

#include <gtest/gtest.h>

#include <sstream>

using cimhttp::FailureLog;
using NQORVYX20::ILogger;

TEST(FailureLog, RemembersTheReasonBehindEachKindOfRemoteFailure) {
    std::ostringstream stream;
    FailureLog log(stream, std::nullopt);
    log.Log(ILogger::eLogDebug, "TCimHTTPNamespace::connect failed: refused");
    EXPECT_EQ(log.TakeReason(), "refused");
    log.Log(ILogger::eLogDebug, "TCimHTTPNamespace::GetClass from Pegasus for: Areturned exception: gone: away");
    EXPECT_EQ(log.TakeReason(), "gone: away");
    log.Log(ILogger::eLogDebug, "TCimHTTPNamespace::EnumerateClassNames: root/cimv2:: broken: pipe\n");
    EXPECT_EQ(log.TakeReason(), "broken: pipe");
    EXPECT_EQ(log.TakeReason(), "");
}

TEST(FailureLog, IgnoresMessagesThatTellOfNoRemoteFailure) {
    std::ostringstream stream;
    FailureLog log(stream, std::nullopt);
    log.Log(ILogger::eLogError, "CimHTTP: CIM name '2a' is invalid");
    EXPECT_EQ(log.TakeReason(), "");
    EXPECT_EQ(log.ErrorCount(), 1U);
}

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
