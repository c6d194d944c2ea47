#pragma once

#include "exporter/ExporterMetrics.h"
#include "exporter/Module.h"
#include "exporter/ScrapeLimits.h"
#include "exporter/Targets.h"
#include "web/WebRequest.h"

#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

/// Answers Prometheus: `/probe?target=NAME&module=NAME` with what is read from a server, `/targets` with the names of
/// all connections, `/metrics` with what the exporter tells of itself. For several threads.
class Exporter {
  public:
    struct Settings {
        Modules modules;
        ScrapeLimits limits;
        std::vector<std::string> allowedHosts;
        std::string version;
    };

    /// The plug-in and the options must outlive the object.
    Exporter(const Plugin& plugin, const Options& options, Settings settings);

    WebAnswer Answer(const WebRequest& request);

  private:
    WebAnswer Probe(const WebRequest& request);
    std::chrono::milliseconds TimeFor(const WebRequest& request) const;
    WebAnswer Refuse(unsigned status, const std::string& reason);
    WebAnswer Start() const;

    const Settings settings_;
    Targets targets_;
    ExporterMetrics metrics_;
};

} // namespace cimhttp
