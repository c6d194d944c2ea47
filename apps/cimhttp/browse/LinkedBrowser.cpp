#include "Failure.h"
#include "FailureLog.h"
#include "LoggerScope.h"
#include "Options.h"
#include "browse/Browser.h"
#include "browse/BrowserLibrary.h"
#include "browse/DesktopOpener.h"
#include "connection/Plugin.h"
#include "fleet/ServerLog.h"
#include "fleet/SinkStream.h"
#include "waiting/Interrupt.h"
#include "web/WebServer.h"

#include <boost/asio/ip/address.hpp>
#include <boost/make_shared.hpp>

#include <atomic>
#include <chrono>
#include <memory>
#include <ostream>
#include <thread>

namespace cimhttp {

namespace {

constexpr std::chrono::milliseconds kLookInterval{100}; // between two checks for an interrupt

WebPlace PlaceOf(const BrowserRequest& request) {
    if (request.listen.empty()) {
        return {"127.0.0.1", 0};
    }
    WebPlace place = WebPlace::In(request.listen);
    boost::system::error_code error;
    if (!boost::asio::ip::make_address(place.address, error).is_loopback()) {
        throw Failure(Failure::kUsage,
                      "the pages are for the user of this machine: --listen takes an address of its own, "
                      "such as 127.0.0.1:8080");
    }
    return place;
}

WebLimits Limits() {
    WebLimits limits;
    limits.bodyBytes = std::size_t{64} << 10U;
    return limits;
}

/// The user is asked now for a password that is needed, since later nobody is.
Options Prepared(Options options) {
    if (options.host || options.connection) {
        const Connection connection = ConnectionOf(options);
        if (!connection.user.empty()) {
            options.password = connection.password;
        }
    }
    return options;
}

class LinkedBrowser : public BrowserLibrary {
  public:
    void Serve(const Options& given, const BrowserRequest& request, std::ostream& output,
               std::ostream& errors) const override {
        const Options options = Prepared(given);
        const InterruptScope interrupts;
        const SinkStream::Sink sink = SharedSink(errors); // messages come from several threads
        SinkStream log(sink);
        const LoggerScope scope(boost::make_shared<ServerLog>(boost::make_shared<FailureLog>(log, options.logLevel)));
        const Plugin plugin(options.plugin); // is loaded before there are threads
        std::unique_ptr<Browser> browser;
        std::atomic<Browser*> answering{nullptr}; // there is a port before there is a browser
        const WebPlace place = PlaceOf(request);
        WebServer server(
            place, {},
            [&](const WebRequest& asked) {
                Browser* const known = answering;
                return known ? known->Answer(asked) : WebAnswer{503, "text/plain; charset=utf-8", "Not yet.\n"};
            },
            Limits());
        browser = std::make_unique<Browser>(plugin, options, place.address, server.Port());
        answering = browser.get();
        const std::string url = server.Url() + browser->Entrance();
        output << "cimhttp: open this address in a browser of this machine; it lets in once:\n" << url << std::endl;
        if (request.opens && OpenOnDesktop(url)) {
            output << "cimhttp: the desktop was asked to open it" << std::endl;
        }
        while (!Interrupted()) {
            std::this_thread::sleep_for(kLookInterval);
            browser->EndIdle();
        }
        EndByInterrupt(); // a server that does not answer holds nothing up
    }
};

} // namespace

} // namespace cimhttp

extern "C" const cimhttp::BrowserLibrary* CimhttpBrowser();

const cimhttp::BrowserLibrary* CimhttpBrowser() {
    static const cimhttp::LinkedBrowser browser;
    return &browser;
}
