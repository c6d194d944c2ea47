#include "FailureLog.h"
#include "LoggerScope.h"
#include "Options.h"
#include "VersionText.h"
#include "connection/Plugin.h"
#include "exporter/Exporter.h"
#include "exporter/ExporterLibrary.h"
#include "exporter/ModuleFile.h"
#include "exporter/ModuleSuggestion.h"
#include "fleet/ServerLog.h"
#include "fleet/SinkStream.h"
#include "waiting/Interrupt.h"
#include "web/WebServer.h"

#include <boost/make_shared.hpp>

#include <chrono>
#include <ostream>
#include <thread>
#include <utility>

namespace cimhttp {

namespace {

constexpr std::chrono::milliseconds kLookInterval{100}; // between two checks for an interrupt

class LinkedExporter : public ExporterLibrary {
  public:
    void Serve(const Options& options, const ExporterRequest& request, std::ostream& output,
               std::ostream& errors) const override {
        const WebPlace place = WebPlace::In(request.listen);
        const WebAccess access = request.webConfig.empty() ? WebAccess() : WebAccess::InFile(request.webConfig);
        Exporter::Settings settings{request.modules.empty() ? BuiltInModules() : ReadModules(request.modules),
                                    request.limits, request.allowedHosts, build_information::Version()};
        const InterruptScope interrupts;
        const SinkStream::Sink sink = SharedSink(errors); // messages come from several threads
        SinkStream log(sink);
        const LoggerScope scope(boost::make_shared<ServerLog>(boost::make_shared<FailureLog>(log, options.logLevel)));
        const Plugin plugin(options.plugin); // is loaded before there are threads
        Exporter exporter(plugin, options, std::move(settings));
        const WebServer server(place, access, [&](const WebRequest& asked) { return exporter.Answer(asked); });
        output << "cimhttp: the exporter listens on " << server.Url() << std::endl;
        while (!Interrupted()) {
            std::this_thread::sleep_for(kLookInterval);
        }
        EndByInterrupt(); // a server that does not answer holds nothing up
    }

    std::string Suggest(const NQORVYX20::ICIMClass& cls, const PluginAccess& access) const override {
        return SuggestedModule(cls, access);
    }
};

} // namespace

} // namespace cimhttp

extern "C" const cimhttp::ExporterLibrary* CimhttpExporter();

const cimhttp::ExporterLibrary* CimhttpExporter() {
    static const cimhttp::LinkedExporter exporter;
    return &exporter;
}
