#pragma once

#include "Texts.h"
#include "http/HttpConnection.h"
#include "support/ScriptedServer.h"
#include "support/TestCertificate.h"

#include <Pegasus/Client/CIMClientException.h>
#include <Pegasus/Client/FailureMarks.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What the tests of an HttpConnection share.
namespace Pegasus::http {

constexpr std::chrono::seconds kAmple{30};       // for what must succeed
constexpr std::chrono::milliseconds kShort{100}; // for what must time out

const HttpRequest kQuestion{"/cimom", "", "question"};

inline std::string Answer(const std::string& body, const std::string& fields = "") {
    return "HTTP/1.1 200 OK\r\n" + fields + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

inline std::string ChunkedAnswer(const std::string& chunks) {
    return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + chunks;
}

/// A connection to a scripted server.
class HttpConnectionTest : public ::testing::Test {
  protected:
    /// Starts the server and returns its port.
    std::uint16_t serve(support::ScriptedServer::Script script) {
        server_ = std::make_unique<support::ScriptedServer>(std::move(script));
        return server_->Listen(5988);
    }

    /// Starts the server with TLS, for secureConnectionTo(), and returns its port.
    std::uint16_t serveTls(support::ScriptedServer::Script script,
                           support::TlsVersion version = support::TlsVersion::kCurrent) {
        const support::TestCertificate certificate(support::TestCertificate::For(support::LoopbackAddress()));
        server_ = std::make_unique<support::ScriptedServer>(std::move(script));
        return server_->ListenTls(5989, certificate, version);
    }

    /// Serves the answers in turn, whatever connections they are asked for on; closes a connection when they run out.
    std::uint16_t serveInTurn(std::vector<std::string> answers) {
        return serve([this, answers = std::move(answers)](support::Connection& connection) {
            while (const auto request = connection.ReadRequest()) {
                std::size_t turn = 0;
                {
                    const std::lock_guard<std::mutex> lock(mutex_);
                    turn = authorizations_.size();
                    authorizations_.push_back(request->Header("Authorization"));
                }
                if (turn >= answers.size() || !connection.Write(answers[turn])) {
                    return;
                }
            }
        });
    }

    HttpConnection connectionTo(std::uint16_t port, Credentials credentials = {}) const {
        return {Endpoint(server_->Address(), port), std::nullopt, std::move(credentials)};
    }

    HttpConnection secureConnectionTo(std::uint16_t port) const {
        return {Endpoint(server_->Address(), port), SSLContext(String(), nullptr), {}};
    }

    static std::string readBody(HttpConnection& connection, const Deadline& deadline) {
        std::string body;
        trailers_ = connection.readBody([&](std::string_view part) { body += part; }, deadline);
        return body;
    }

    static std::string exchange(HttpConnection& connection, std::chrono::milliseconds limit = kAmple) {
        const Deadline deadline(limit);
        status_ = connection.post(kQuestion, deadline).status;
        return readBody(connection, deadline);
    }

    /// The bodies of several exchanges.
    static std::vector<std::string> exchanges(HttpConnection& connection, int count) {
        std::vector<std::string> bodies;
        bodies.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) {
            bodies.push_back(exchange(connection));
        }
        return bodies;
    }

    /// More than the buffers of a TCP connection hold.
    static HttpRequest largeRequest() {
        HttpRequest request = kQuestion;
        request.body.resize(64'000'000);
        return request;
    }

    /// What one exchange with a server that sends these bytes and closes gives.
    std::string bodyOf(const std::string& answer) {
        auto connection = connectionTo(serve([answer](support::Connection& peer) {
            peer.ReadRequest();
            peer.Write(answer);
        }));
        return exchange(connection);
    }

    template <typename E>
    std::string errorOf(const std::string& answer) {
        return MessageOf<E>([&] { bodyOf(answer); });
    }

    /// Sends a text, and then another one again and again until the peer has enough.
    static support::ScriptedServer::Script endless(const std::string& begin, const std::string& part) {
        return [begin, part](support::Connection& peer) {
            std::string many;
            while (many.size() < 4096) {
                many += part;
            }
            peer.ReadRequest();
            peer.Write(begin + many); // at once, so that they arrive together
            while (peer.Write(many)) {
            }
        };
    }

    /// The message of the exception that says that such an answer passes a limit.
    std::string limitPassedByEndless(const std::string& begin, const std::string& part) {
        auto connection = connectionTo(serve(endless(begin, part)));
        return limitPassedIn([&] { exchange(connection); });
    }

    std::string limitPassedBy(const std::string& answer) {
        return limitPassedIn([&] { bodyOf(answer); });
    }

    std::size_t connectionCount() const { return server_->ConnectionCount(); }

    std::vector<std::string> authorizations() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return authorizations_;
    }

    static inline unsigned status_ = 0;
    static inline HttpFields trailers_;

  private:
    template <typename Action>
    static std::string limitPassedIn(Action action) {
        try {
            action();
        } catch (const CIMClientMalformedHTTPException& error) {
            EXPECT_NE(dynamic_cast<const ExceedsLimit*>(&error), nullptr);
            return Text(error.getMessage());
        }
        ADD_FAILURE() << "the expected exception did not come";
        return {};
    }

    std::mutex mutex_;
    std::vector<std::string> authorizations_;
    std::unique_ptr<support::ScriptedServer> server_;
};

} // namespace Pegasus::http
