#include "connection/RemoteReason.h"

#include "connection/Connection.h"

#include <gtest/gtest.h>

using cimhttp::Connection;
using cimhttp::Failure;
using cimhttp::RemoteReason;
using NQORVYX20::RemoteFailure;
using Kind = RemoteFailure::Kind;

namespace {

/// A text that would mean something else in every kind, if words counted.
constexpr const char* kMisleading = "CIM_ERR_NOT_FOUND HTTP error 401 within 5 s, TLS, SSLContext";

RemoteFailure Of(Kind kind, unsigned cimStatus = 0, unsigned httpStatus = 0) {
    return {kind, cimStatus, httpStatus, kMisleading, {}};
}

Failure::ExitStatus StatusOf(const RemoteFailure& failure) { return RemoteReason(failure, Connection()).Status(); }

std::string TextOf(const RemoteFailure& failure, const Connection& connection = {}) {
    return RemoteReason(failure, connection).Text();
}

Connection Encrypted() {
    Connection connection;
    connection.tls = true;
    return connection;
}

} // namespace

TEST(RemoteReason, TheKindDecidesTheExitStatusWhateverTheWords) {
    for (const Kind kind :
         {Kind::kNameUnknown, Kind::kRefused, Kind::kNotConnected, Kind::kTls, Kind::kClosed, Kind::kTimeOut}) {
        EXPECT_EQ(StatusOf(Of(kind)), Failure::kConnection) << static_cast<int>(kind);
    }
    for (const Kind kind : {Kind::kHttp, Kind::kNotCim, Kind::kMalformed, Kind::kOther}) {
        EXPECT_EQ(StatusOf(Of(kind)), Failure::kServer) << static_cast<int>(kind);
    }
    EXPECT_EQ(StatusOf(Of(Kind::kLogin, 0, 403)), Failure::kAuthentication);
    EXPECT_EQ(StatusOf(Of(Kind::kLimit)), Failure::kIncomplete);
}

TEST(RemoteReason, ACimStatusDecidesByItsNumber) {
    EXPECT_EQ(StatusOf(Of(Kind::kCimStatus, 2)), Failure::kAuthentication);
    EXPECT_EQ(StatusOf(Of(Kind::kCimStatus, 5)), Failure::kNotFound);
    EXPECT_EQ(StatusOf(Of(Kind::kCimStatus, 6)), Failure::kNotFound);
    for (const unsigned status : {1U, 3U, 4U, 7U, 200U}) {
        EXPECT_EQ(StatusOf(Of(Kind::kCimStatus, status)), Failure::kServer) << status;
    }
}

TEST(RemoteReason, OnlyHttpRefusesTheLoginAsAWhole) {
    EXPECT_TRUE(RemoteReason(Of(Kind::kLogin, 0, 401), Connection()).IsLoginRefused());
    EXPECT_FALSE(RemoteReason(Of(Kind::kCimStatus, 2), Connection()).IsLoginRefused());
}

TEST(RemoteReason, ARefusedLoginNamesTheUserOrAsksForOne) {
    Connection connection;
    EXPECT_EQ(TextOf(Of(Kind::kLogin, 0, 401), connection), "the server asks who you are: give --user NAME");
    connection.user = "reader";
    EXPECT_EQ(TextOf(Of(Kind::kLogin, 0, 401), connection),
              "the server does not accept the user reader with this password");
    EXPECT_EQ(TextOf(Of(Kind::kLogin, 0, 403), connection), kMisleading);
}

TEST(RemoteReason, AdviceGoesByTheKind) {
    const std::string text = kMisleading;
    EXPECT_EQ(TextOf(Of(Kind::kTimeOut)), text + "; --timeout SECONDS waits longer");
    EXPECT_EQ(TextOf(Of(Kind::kHttp, 0, 404)), text + "; is it a CIM server that answers there?");
    EXPECT_EQ(TextOf(Of(Kind::kHttp, 0, 501)), text);
    EXPECT_EQ(TextOf(Of(Kind::kHttp, 0, 400)), text);
    for (const Kind kind : {Kind::kNotCim, Kind::kMalformed, Kind::kLimit, Kind::kCimStatus, Kind::kOther}) {
        EXPECT_EQ(TextOf(Of(kind)), text) << static_cast<int>(kind);
    }
}

TEST(RemoteReason, TlsIsAdvisedWhereItIsNotUsed) {
    EXPECT_EQ(TextOf(Of(Kind::kTls)), "the server speaks TLS on port 5988; try --tls, which goes to port 5989");
    EXPECT_EQ(TextOf(Of(Kind::kClosed)),
              "the server closed the connection without an answer; if it expects TLS, add --tls");
    EXPECT_EQ(TextOf(Of(Kind::kTls), Encrypted()), kMisleading);
    EXPECT_EQ(TextOf(Of(Kind::kClosed), Encrypted()), kMisleading);
}
