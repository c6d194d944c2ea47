#include "http/TlsTransport.h"
#include "tls/TlsChannel.h"
#include "tls/TlsContext.h"

#include <Pegasus/Common/Exception.h>

#include <memory>
#include <string>
#include <utility>

namespace Pegasus::tls {

using http::Channel;
using http::ConnectTime;
using http::Deadline;
using http::Descriptor;
using http::Endpoint;
using http::TlsClient;
using http::TlsTransport;

namespace {

class OpenSslClient : public TlsClient {
  public:
    OpenSslClient(const Endpoint& endpoint, const SSLContext& settings)
        : endpoint_(endpoint), context_(std::make_shared<TlsContext>(settings)) {}

    std::unique_ptr<Channel> open(const ConnectTime& time) override {
        auto channel = std::make_unique<TlsChannel>(endpoint_, context_, time);
        channel->shakeHands(time.ofStep());
        return channel;
    }

  private:
    const Endpoint endpoint_;
    const std::shared_ptr<TlsContext> context_; // which the channels need, too
};

class OpenSslTransport : public TlsTransport {
  public:
    std::unique_ptr<TlsClient> makeClient(const Endpoint& endpoint, const SSLContext& settings) const override {
        return std::make_unique<OpenSslClient>(endpoint, settings);
    }

    TlsProbe probe(const Endpoint& endpoint, Descriptor socket, const Deadline& deadline) const override {
        const SSLContext trustsAnybody(String::EMPTY, nullptr);
        TlsChannel channel(endpoint, std::make_shared<TlsContext>(trustsAnybody), std::move(socket));
        std::string failure;
        try {
            channel.shakeHands(deadline);
        } catch (const ConnectionTimeoutException&) {
            failure = "the server does not answer in time";
        } catch (const SSLException&) {
            failure = channel.reason();
        }
        TlsProbe probe = channel.shown();
        probe.failure = String(failure);
        return probe;
    }
};

} // namespace

} // namespace Pegasus::tls

extern "C" const Pegasus::http::TlsTransport* PegasusTlsTransport() {
    static const Pegasus::tls::OpenSslTransport transport;
    return &transport;
}
