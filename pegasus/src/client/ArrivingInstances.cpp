#include "client/ClientImpl.h"
#include "client/OperationParameters.h"
#include "client/ReturnValues.h"

#include <Pegasus/Client/ArrivingInstances.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <optional>
#include <utility>

namespace Pegasus {
inline namespace bundled {

namespace {

constexpr const char* kMethod = "EnumerateInstances";

/// Keeps instances until they are fetched.
class Arrived : public client::ReturnValueSink {
  public:
    Uint32 count() const { return instances_.size(); }
    Array<CIMInstance> take() { return std::exchange(instances_, {}); }

  private:
    void onInstance(const CIMInstance& instance) override { instances_.append(instance); }
    void onInstanceAlone(const CIMInstance& instance) override { client::throwWithoutPath(instance); }

    Array<CIMInstance> instances_;
};

} // namespace

class ArrivingInstances::Impl {
  public:
    Impl(CIMClient::Impl& client, const CIMClient::Impl::Request& request)
        : client_(client), answer_(client, request.messageId, kMethod, arrived_) {
        part([&] { client_.begin(answer_, request.http); });
        pause();
    }

    Array<CIMInstance> next(Uint32 count) {
        resume();
        while (isReceiving_ && (arrived_.count() == 0 || (arrived_.count() < count && client_.hasInput()))) {
            readSome();
        }
        pause();
        if (arrived_.count() == 0 && failure_) {
            isClosed_ = true;
            std::rethrow_exception(std::exchange(failure_, nullptr));
        }
        if (isClosed_) {
            throw Exception("the enumeration of instances is closed");
        }
        return arrived_.take();
    }

    bool isReceiving() const { return isReceiving_; }
    bool isAtEnd() const { return !isReceiving_ && !failure_ && !isClosed_ && arrived_.count() == 0; }

    void close() noexcept {
        if (std::exchange(isReceiving_, false)) {
            client_.abandon();
            isClosed_ = true;
        }
    }

  private:
    void readSome() {
        try {
            bool isRead = false;
            part([&] {
                isRead = client_.readSome(answer_);
                if (isRead) {
                    client_.finish(answer_);
                }
            });
            if (isRead) {
                isReceiving_ = false;
                client_.end(answer_);
            }
        } catch (...) { // what has arrived before comes first
            isReceiving_ = false;
            failure_ = std::current_exception();
            client_.abandon(); // where the part did not even begin
        }
    }

    template <typename Work>
    void part(Work work) {
        client_.withinMemory([&] { client_.aboutOperation(kMethod, [&] { client_.during(answer_, work); }); });
    }

    void pause() {
        answer_.measurement.pause();
        left_ = answer_.end.remaining();
    }

    void resume() {
        answer_.measurement.resume();
        const std::chrono::milliseconds timeout(client_.timeout);
        answer_.end = timeout < left_ ? http::Deadline(timeout) : answer_.end.afterPause(left_);
    }

    CIMClient::Impl& client_;
    Arrived arrived_;
    CIMClient::Impl::Answer answer_;
    http::Deadline::Clock::duration left_{}; // of the time of the operation
    std::exception_ptr failure_;             // to be thrown when all that arrived before has been returned
    bool isReceiving_ = true;
    bool isClosed_ = false;
};

ArrivingInstances::ArrivingInstances(CIMClient& client, const CIMNamespaceName& nameSpace, const CIMName& className,
                                     Boolean deepInheritance, Boolean localOnly, Boolean includeQualifiers,
                                     Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    CIMClient::Impl& impl = *client.impl_;
    impl.checkReady();
    impl.withinMemory([&] {
        const auto request = impl.makeRequest(kMethod, nameSpace, [&](cimxml::RequestEncoder& parameters) {
            client::addInstancesOf(parameters, className, deepInheritance, localOnly, includeQualifiers,
                                   includeClassOrigin, propertyList);
        });
        impl_ = std::make_unique<Impl>(impl, request);
    });
}

ArrivingInstances::~ArrivingInstances() { close(); }

Array<CIMInstance> ArrivingInstances::next(Uint32 count) { return impl_->next(count); }

Boolean ArrivingInstances::isAtEnd() const noexcept { return impl_->isAtEnd(); }

Boolean ArrivingInstances::isReceiving() const noexcept { return impl_->isReceiving(); }

void ArrivingInstances::close() noexcept { impl_->close(); }

} // namespace bundled
} // namespace Pegasus
