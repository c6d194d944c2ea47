#pragma once

#include "HostTypes.h"
#include "exporter/ScrapeLimits.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace cimhttp {

struct Options;
class PluginAccess;

/// What the command line says about the exporter.
struct ExporterRequest {
    std::string listen = "127.0.0.1:9989";
    std::string modules; ///< a file; empty: those of the program
    std::vector<std::string> allowedHosts;
    std::string webConfig; ///< a file; empty: plain text, for everybody
    ScrapeLimits limits;
};

/// The exporter, in a library of its own: what it needs for that, TLS among it, other commands do not load.
class ExporterLibrary {
  public:
    virtual ~ExporterLibrary() = default;

    /// Serves until there is an interrupt, which ends the program. Throws Failure.
    virtual void Serve(const Options& options, const ExporterRequest& request, std::ostream& output,
                       std::ostream& errors) const = 0;

    /// See SuggestedModule().
    virtual std::string Suggest(const NQORVYX20::ICIMClass& cls, const PluginAccess& access) const = 0;
};

/// The one function that the library exports. The object lives as long as the process.
using ExporterFunction = const ExporterLibrary*();
constexpr const char* kExporterFunction = "CimhttpExporter";
constexpr const char* kExporterLibrary = "libcimhttp-exporter.so";

} // namespace cimhttp
