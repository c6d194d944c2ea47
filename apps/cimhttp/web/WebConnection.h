#pragma once

#include "web/WebLogin.h"
#include "web/WebRequest.h"
#include "web/WebServer.h"

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/thread_pool.hpp>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace cimhttp {

/// Counts answers that are on their way. For several threads.
class AnswerCount {
  public:
    void Begin() {
        const std::lock_guard<std::mutex> lock(mutex_);
        ++count_;
    }

    void End() {
        const std::lock_guard<std::mutex> lock(mutex_);
        --count_;
        changed_.notify_all();
    }

    void WaitUntilNone(std::chrono::seconds timeout) {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait_for(lock, timeout, [this] { return count_ == 0; });
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t count_ = 0;
};

/// What all connections of a web server share.
struct WebService {
    WebLogin& login;
    const WebHandler handler;
    boost::asio::thread_pool& workers; ///< where requests are answered
    const WebLimits& limits;
    std::atomic<std::size_t> connections{0}; ///< open ones
    AnswerCount answers{};
};

/// Serves a connection that a client has made, with TLS where there is a context, until one of both ends it. All runs
/// in the thread of the socket's executor, but for the answering. The service must outlive the connection.
void ServeWebConnection(boost::asio::ip::tcp::socket socket, boost::asio::ssl::context* tls, WebService& service);

} // namespace cimhttp
