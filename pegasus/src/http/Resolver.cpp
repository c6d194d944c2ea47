#include "http/Resolver.h"

#include "errors/Marked.h"
#include "http/TimeOut.h"

#include <Pegasus/Common/Exception.h>

#include <netdb.h>
#include <pthread.h>

#include <csignal>
#include <cstddef>
#include <cstring>
#include <future>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

namespace Pegasus::http {

namespace {

constexpr Uint32 kHighestPort = 65535;

/// Enough for the system's name service modules, which may keep several answers of 64 KiB on the stack.
constexpr std::size_t kStackBytes = std::size_t{512} << 10U;

struct AddressInfoFree {
    void operator()(addrinfo* info) const { ::freeaddrinfo(info); }
};

struct Resolution {
    int result; // 0 or an EAI_ code
    std::vector<SocketAddress> addresses;
};

/// Blocks all signals for the calling thread, and for the threads that it starts meanwhile.
class SignalBlock {
  public:
    SignalBlock() {
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~SignalBlock() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalBlock(const SignalBlock&) = delete;
    SignalBlock& operator=(const SignalBlock&) = delete;

  private:
    sigset_t before_{};
};

String failureText(const Endpoint& endpoint, const std::string& reason) {
    return String("cannot resolve " + endpoint.text() + ": " + reason);
}

[[noreturn]] void fail(const Endpoint& endpoint, const std::string& reason) {
    throw InvalidLocatorException(failureText(endpoint, reason));
}

/// `result`: an EAI_ code.
[[noreturn]] void fail(const Endpoint& endpoint, int result) {
    const std::string reason = ::gai_strerror(result);
    if (result == EAI_NONAME) {
        throw errors::Marked<InvalidLocatorException, UnknownHost>(failureText(endpoint, reason));
    }
    fail(endpoint, reason);
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

Resolution ask(const Endpoint& endpoint, int flags) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV | flags;
    addrinfo* list = nullptr;
    const int result = ::getaddrinfo(endpoint.host().c_str(), std::to_string(endpoint.port()).c_str(), &hints, &list);
    const std::unique_ptr<addrinfo, AddressInfoFree> owner(list);
    return {result, addressesOf(list)};
}

using Task = std::packaged_task<Resolution()>;

void* runTask(void* task) {
    (*std::unique_ptr<Task>(static_cast<Task*>(task)))();
    return nullptr;
}

/// The attributes of a thread that nobody waits for, and that takes no more memory than it needs: a host that keeps its
/// memory from being paged out pays for the whole of each stack.
class ResolverThread {
  public:
    ResolverThread() {
        ::pthread_attr_init(&attributes_);
        ::pthread_attr_setdetachstate(&attributes_, PTHREAD_CREATE_DETACHED);
        ::pthread_attr_setstacksize(&attributes_, kStackBytes);
    }
    ~ResolverThread() { ::pthread_attr_destroy(&attributes_); }
    ResolverThread(const ResolverThread&) = delete;
    ResolverThread& operator=(const ResolverThread&) = delete;

    /// Throws std::system_error when no thread can be started.
    void run(std::unique_ptr<Task> task) const {
        const SignalBlock block; // signals are for the host's threads
        pthread_t ignored{};
        if (const int error = ::pthread_create(&ignored, &attributes_, &runTask, task.get()); error != 0) {
            throw std::system_error(error, std::system_category());
        }
        static_cast<void>(task.release());
    }

  private:
    pthread_attr_t attributes_{};
};

/// Asks in a thread of its own. A silent name server can keep that thread longer than the caller waits; it then ends by
/// itself, and nobody takes its result.
std::future<Resolution> askInThread(const Endpoint& endpoint) {
    auto task = std::make_unique<Task>([endpoint] { return ask(endpoint, 0); });
    std::future<Resolution> resolution = task->get_future();
    ResolverThread().run(std::move(task));
    return resolution;
}

/// An address is translated at once; a name may take time.
Resolution resolutionOf(const Endpoint& endpoint, const Deadline& deadline) {
    if (endpoint.isAddressLiteral()) {
        return ask(endpoint, AI_NUMERICHOST);
    }
    try {
        std::future<Resolution> resolution = askInThread(endpoint);
        if (resolution.wait_until(deadline.end()) == std::future_status::ready) {
            return resolution.get();
        }
    } catch (const std::system_error& error) {
        fail(endpoint, error.what()); // no thread could be started
    }
    throwTimeOut(endpoint, deadline, "its name was not resolved");
}

} // namespace

std::vector<SocketAddress> resolve(const Endpoint& endpoint, const Deadline& deadline) {
    if (endpoint.port() > kHighestPort) {
        fail(endpoint, "a port is at most " + std::to_string(kHighestPort));
    }
    Resolution resolution = resolutionOf(endpoint, deadline);
    if (resolution.result != 0) {
        fail(endpoint, resolution.result);
    }
    if (resolution.addresses.empty()) {
        fail(endpoint, "it has no address");
    }
    return std::move(resolution.addresses);
}

} // namespace Pegasus::http
