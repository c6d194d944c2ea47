#include "access/MeasuredNamespace.h"

#include "provider/TCimHTTPNamespace.h"

#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Client/ClientOpPerformanceDataHandler.h>

#include <boost/make_shared.hpp>

#include <string>
#include <utility>

namespace cimhttp {

namespace {

using NQORVYX20::ICIMNamespace;
using NQORVYX20::TCimHTTPNamespace;

std::string NameOf(const Pegasus::ClientOpPerformanceData& data) {
#if __has_include(<Pegasus/Client/ExchangeObserver.h>)
    return Pegasus::cimOperationTypeToString(data.operationType);
#else
    return "operation " +
           std::to_string(static_cast<int>(data.operationType)); // other libraries have no names for them
#endif
}

/// Listens to the client of a namespace, which it holds.
class Listener : public Pegasus::ClientOpPerformanceDataHandler {
  public:
    Listener(boost::shared_ptr<ICIMNamespace> nameSpace, std::shared_ptr<MeasurementSink> sink)
        : namespace_(std::move(nameSpace)), sink_(std::move(sink)) {
        Client().registerClientOpPerformanceDataHandler(*this);
    }
    ~Listener() override { Client().deregisterClientOpPerformanceDataHandler(); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    ICIMNamespace* Namespace() const { return namespace_.get(); }

    void handleClientOpPerformanceData(const Pegasus::ClientOpPerformanceData& data) override {
        Measurement measurement{NameOf(data), data.requestSize, data.responseSize, data.roundTripTime, {}};
        if (data.serverTimeKnown) {
            measurement.serverTime = data.serverTime;
        }
        sink_->Add(measurement);
    }

  private:
    Pegasus::CIMClient& Client() const { return *dynamic_cast<TCimHTTPNamespace&>(*namespace_).getPegClient(); }

    const boost::shared_ptr<ICIMNamespace> namespace_;
    const std::shared_ptr<MeasurementSink> sink_;
};

} // namespace

boost::shared_ptr<ICIMNamespace> MeasuredNamespace(const boost::shared_ptr<ICIMNamespace>& nameSpace,
                                                   const std::shared_ptr<MeasurementSink>& sink) {
    const auto listener = boost::make_shared<Listener>(nameSpace, sink);
    return {listener, listener->Namespace()};
}

} // namespace cimhttp
