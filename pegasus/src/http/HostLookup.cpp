#include "http/HostLookup.h"

#include "http/TimeOut.h"

#include <Pegasus/Common/Exception.h>
#include <cstring>
#include <list>
#include <memory>
#include <mutex>
#include <netdb.h>
#include <string>
#include <utility>

namespace Pegasus::http {

namespace {

constexpr Uint32 kHighestPort = 65535;

struct AddressInfoFree {
    void operator()(addrinfo* info) const { ::freeaddrinfo(info); }
};

/// One question to the C library's asynchronous resolver, which works in threads of the C library: nothing of ours has
/// to wait for a name server that is silent.
class Query {
  public:
    explicit Query(const Endpoint& endpoint) : host_(endpoint.host()), service_(std::to_string(endpoint.port())) {
        hints_.ai_socktype = SOCK_STREAM;
        hints_.ai_flags = AI_NUMERICSERV;
        request_.ar_name = host_.c_str();
        request_.ar_service = service_.c_str();
        request_.ar_request = &hints_;
    }
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;
    ~Query() { ::freeaddrinfo(request_.ar_result); }

    /// 0 when the question is on its way, or an EAI_ code.
    int start() {
        gaicb* requests[] = {&request_};
        return ::getaddrinfo_a(GAI_NOWAIT, requests, 1, nullptr);
    }

    /// The result, or EAI_INPROGRESS when the deadline comes first.
    int wait(const Deadline& deadline) {
        const gaicb* requests[] = {&request_};
        int result = 0;
        while ((result = ::gai_error(&request_)) == EAI_INPROGRESS) {
            const timespec time = remaining(deadline);
            if (time.tv_sec == 0 && time.tv_nsec == 0) {
                break;
            }
            ::gai_suspend(requests, 1, &time);
        }
        return result;
    }

    /// False when a resolver thread is at work on the question, and goes on reading and writing this object.
    bool cancel() { return ::gai_cancel(&request_) != EAI_NOTCANCELED; }
    bool isDone() { return ::gai_error(&request_) != EAI_INPROGRESS; }

    const addrinfo* result() const { return request_.ar_result; }

  private:
    static timespec remaining(const Deadline& deadline) {
        const auto time = std::chrono::duration_cast<std::chrono::nanoseconds>(deadline.remaining()).count();
        constexpr auto kSecond = std::chrono::nanoseconds(std::chrono::seconds(1)).count();
        return {static_cast<time_t>(time / kSecond), static_cast<long>(time % kSecond)};
    }

    const std::string host_;
    const std::string service_;
    addrinfo hints_{};
    gaicb request_{};
};

/// The queries that had to be given up in the hands of a resolver thread. Each is released when that thread is done.
class AbandonedQueries {
  public:
    /// Never destroyed, because a resolver thread may be at work until the very end of the process.
    static AbandonedQueries& instance() {
        static auto* const queries = new AbandonedQueries;
        return *queries;
    }

    void keep(std::unique_ptr<Query> query) {
        const std::lock_guard<std::mutex> lock(mutex_);
        queries_.push_back(std::move(query));
    }

    void releaseFinished() {
        const std::lock_guard<std::mutex> lock(mutex_);
        queries_.remove_if([](const std::unique_ptr<Query>& query) { return query->isDone(); });
    }

  private:
    std::mutex mutex_;
    std::list<std::unique_ptr<Query>> queries_;
};

[[noreturn]] void fail(const Endpoint& endpoint, const std::string& reason) {
    throw InvalidLocatorException(String("cannot resolve " + endpoint.text() + ": " + reason));
}

std::vector<SocketAddress> addressesOf(const addrinfo* list) {
    std::vector<SocketAddress> addresses;
    for (const addrinfo* info = list; info != nullptr; info = info->ai_next) {
        SocketAddress address{};
        std::memcpy(&address.bytes, info->ai_addr, info->ai_addrlen);
        address.size = info->ai_addrlen;
        addresses.push_back(address);
    }
    return addresses;
}

/// An address needs no name service: it is translated at once, without a thread.
std::vector<SocketAddress> translate(const Endpoint& endpoint) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV | AI_NUMERICHOST;
    addrinfo* list = nullptr;
    const int result = ::getaddrinfo(endpoint.host().c_str(), std::to_string(endpoint.port()).c_str(), &hints, &list);
    const std::unique_ptr<addrinfo, AddressInfoFree> owner(list);
    if (result != 0) {
        fail(endpoint, ::gai_strerror(result));
    }
    return addressesOf(list);
}

} // namespace

std::vector<SocketAddress> lookUp(const Endpoint& endpoint, const Deadline& deadline) {
    if (endpoint.port() > kHighestPort) {
        fail(endpoint, "a port is at most " + std::to_string(kHighestPort));
    }
    if (endpoint.isAddressLiteral()) {
        return translate(endpoint);
    }
    AbandonedQueries::instance().releaseFinished();
    auto query = std::make_unique<Query>(endpoint);
    int result = query->start();
    if (result == 0) {
        result = query->wait(deadline);
    }
    if (result == EAI_INPROGRESS) {
        if (!query->cancel()) {
            AbandonedQueries::instance().keep(std::move(query));
        }
        throwTimeOut(endpoint, deadline, "its name was not resolved");
    }
    if (result != 0) {
        fail(endpoint, ::gai_strerror(result));
    }
    std::vector<SocketAddress> addresses = addressesOf(query->result());
    if (addresses.empty()) {
        fail(endpoint, "it has no address");
    }
    return addresses;
}

} // namespace Pegasus::http
