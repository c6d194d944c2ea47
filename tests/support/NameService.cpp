#include "support/NameService.h"

#include <dlfcn.h>
#include <netdb.h>
#include <pthread.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

namespace support {

namespace {

using Lookup = int (*)(const char*, const char*, const addrinfo*, addrinfo**);

/// The system's getaddrinfo(), which the one at the end of this file covers.
Lookup SystemLookup() {
    static const auto lookup = reinterpret_cast<Lookup>(::dlsym(RTLD_NEXT, "getaddrinfo"));
    return lookup;
}

std::size_t StackOfThisThread() {
    pthread_attr_t attributes;
    std::size_t size = 0;
    if (::pthread_getattr_np(::pthread_self(), &attributes) == 0) {
        ::pthread_attr_getstacksize(&attributes, &size);
        ::pthread_attr_destroy(&attributes);
    }
    return size;
}

/// What is known about names. It outlives every lookup, also those that nobody waits for.
class Names {
  public:
    static Names& Instance() {
        static auto* const names = new Names; // never destroyed: a lookup may end after main()
        return *names;
    }

    void Answer(const std::string& name, std::vector<std::string> addresses) {
        const std::lock_guard<std::mutex> lock(mutex_);
        answers_[name] = std::move(addresses);
    }

    void BeSilentAbout(const std::string& name) {
        const std::lock_guard<std::mutex> lock(mutex_);
        answers_[name] = std::nullopt;
    }

    void WaitForLookups(std::size_t count) {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [&] { return waiting_ >= count; });
    }

    std::size_t StackOfLookup() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return stackOfLookup_;
    }

    void Forget() {
        std::unique_lock<std::mutex> lock(mutex_);
        answers_.clear();
        changed_.notify_all();
        changed_.wait(lock, [&] { return waiting_ == 0; });
    }

    int LookUp(const char* node, const char* service, const addrinfo* hints, addrinfo** result) {
        std::unique_lock<std::mutex> lock(mutex_);
        const auto answer = node != nullptr ? answers_.find(node) : answers_.end();
        if (answer == answers_.end()) {
            lock.unlock();
            return SystemLookup()(node, service, hints, result);
        }
        if (!answer->second) {
            WaitUntilForgotten(node, lock);
            return EAI_AGAIN;
        }
        return Chain(*answer->second, service, hints, result);
    }

  private:
    void WaitUntilForgotten(const std::string& name, std::unique_lock<std::mutex>& lock) {
        ++waiting_;
        stackOfLookup_ = StackOfThisThread();
        changed_.notify_all();
        changed_.wait(lock, [&] { return answers_.count(name) == 0; });
        --waiting_;
        changed_.notify_all();
    }

    /// Gives out the addresses as one list, which the system's freeaddrinfo() takes back link by link.
    static int Chain(const std::vector<std::string>& addresses, const char* service, const addrinfo* hints,
                     addrinfo** result) {
        *result = nullptr;
        for (const std::string& address : addresses) {
            if (const int error = SystemLookup()(address.c_str(), service, hints, result); error != 0) {
                return error;
            }
            while (*result != nullptr) {
                result = &(*result)->ai_next;
            }
        }
        return addresses.empty() ? EAI_NONAME : 0;
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::map<std::string, std::optional<std::vector<std::string>>> answers_; // nothing: silence
    std::size_t waiting_ = 0;
    std::size_t stackOfLookup_ = 0;
};

} // namespace

NameService::NameService() = default;

NameService::~NameService() { Names::Instance().Forget(); }

void NameService::Answer(const std::string& name, std::vector<std::string> addresses) {
    Names::Instance().Answer(name, std::move(addresses));
}

void NameService::BeSilentAbout(const std::string& name) { Names::Instance().BeSilentAbout(name); }

void NameService::WaitForLookups(std::size_t count) { Names::Instance().WaitForLookups(count); }

std::size_t NameService::StackOfLookup() const { return Names::Instance().StackOfLookup(); }

} // namespace support

/// Covers the system's function of this name for the whole process.
extern "C" int getaddrinfo(const char* node, const char* service, const addrinfo* hints, addrinfo** result) {
    return support::Names::Instance().LookUp(node, service, hints, result);
}
