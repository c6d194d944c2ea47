#include "Failure.h"
#include "Options.h"
#include "commands/Command.h"
#include "commands/Commands.h"
#include "connection/OwnLibrary.h"
#include "connection/ServerSchema.h"
#include "connection/Session.h"
#include "exporter/ExporterLibrary.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <ostream>
#include <string>

namespace cimhttp {

namespace {

void RefuseIf(bool isGiven, const std::string& what) {
    if (isGiven) {
        throw Failure(Failure::kUsage, what);
    }
}

/// `exporter`: an HTTP server that Prometheus asks for the metrics of CIM servers.
class ExporterCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {"exporter",
                "Serve what servers tell as metrics for Prometheus",
                {},
                {{"--listen", "ADDRESS:PORT", "Where to listen, 127.0.0.1:9989 unless given; :9989 for all addresses",
                  &request_.listen},
                 {"--modules", "FILE", "The modules, which say what is read; those of the program unless given",
                  &request_.modules},
                 {"--suggest", "CLASS", "Write a module for a class of the server that the options name, and end",
                  &suggest_},
                 {"--allow-hosts", "PATTERN",
                  "Read also hosts that match, without user and password, not only named connections; may be given "
                  "several times",
                  &request_.allowedHosts},
                 {"--web-config", "FILE", "TLS and users of the port, in the form of Prometheus' exporters",
                  &request_.webConfig},
                 {"--max-series", "N", "Series of one server at most, 10000 unless given", &maxSeries_},
                 {"--max-bytes", "N", "Bytes to receive from one server in a scrape at most, 67108864 unless given",
                  &maxBytes_},
                 {"--definitions-ttl", "SECONDS", "How long definitions of classes are kept, 3600 unless given",
                  &definitionsLife_}},
                {OutputFormat::kPlain},
                "cimhttp exporter --listen :9989\n"
                "cimhttp --connection lab exporter --suggest CIM_FileSystem > modules.yml",
                "Prometheus asks for /probe?target=CONNECTION&module=MODULE; the modules of the program are system, "
                "storage, sensors, network and health. /metrics has the exporter's own numbers. --timeout is for one "
                "scrape, 30 unless given, and less where Prometheus waits for less; --parallel is how many servers are "
                "read at once. docs/exporter.md has more."};
    }

    int Run(const CommandContext& context) override { return suggest_.empty() ? Serve(context) : Suggest(context); }

    int RunForFleet(const FleetContext& /*context*/) override {
        throw Failure(Failure::kUsage, kTargetsComeFromPrometheus);
    }

  private:
    static constexpr const char* kTargetsComeFromPrometheus =
        "Prometheus says which server is read, by the name of a connection: leave out --connection and --host";

    static const ExporterLibrary& Library() {
        return *reinterpret_cast<ExporterFunction*>(OwnLibraryFunction(kExporterLibrary, kExporterFunction))();
    }

    int Suggest(const CommandContext& context) const {
        const Session session = context.Connect();
        context.output << Library().Suggest(*ServerSchema(session).Class(suggest_), session.Access());
        return 0;
    }

    int Serve(const CommandContext& context) {
        const Options& options = context.options;
        RefuseIf(options.host || options.connection, kTargetsComeFromPrometheus);
        RefuseIf(options.trace || options.recording, "the exporter keeps no trace: leave out --trace and record");
        SetLimits(options);
        Library().Serve(options, request_, context.output, context.errors);
        return 0;
    }

    void SetLimits(const Options& options) {
        ScrapeLimits& limits = request_.limits;
        limits.series = maxSeries_.value_or(limits.series);
        limits.bytes = maxBytes_.value_or(limits.bytes);
        limits.targets = options.parallel.value_or(limits.targets);
        if (options.timeout) {
            limits.time = std::chrono::seconds(*options.timeout);
        }
        if (definitionsLife_) {
            constexpr std::size_t kLongest = 366UL * 86400;
            limits.definitionsLife = std::chrono::seconds(std::min(*definitionsLife_, kLongest));
        }
    }

    ExporterRequest request_;
    std::string suggest_;
    std::optional<std::size_t> maxSeries_;
    std::optional<std::size_t> maxBytes_;
    std::optional<std::size_t> definitionsLife_;
};

} // namespace

std::unique_ptr<Command> MakeExporterCommand() { return std::make_unique<ExporterCommand>(); }

} // namespace cimhttp
