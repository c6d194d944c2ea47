#include "exporter/Exporter.h"

#include "output/Json.h"
#include "text/ParsedText.h"
#include "text/TerminalText.h"
#include "text/WordList.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace cimhttp {

namespace {

using Milliseconds = std::chrono::milliseconds;

constexpr const char* kMetricsType = "text/plain; version=0.0.4; charset=utf-8";

/// In lower case.
constexpr const char* kTimeHeader = "x-prometheus-scrape-timeout-seconds";

/// Prometheus waits for the whole answer; the way to it takes some of that.
constexpr Milliseconds kForTheWay{500};

std::vector<std::string> NamesOf(const Modules& modules) {
    std::vector<std::string> names;
    for (const auto& module : modules) {
        names.push_back(module.first);
    }
    return names;
}

std::string Parameter(const WebRequest& request, const char* name) {
    const auto found = request.parameters.find(name);
    return found == request.parameters.end() ? std::string() : found->second;
}

} // namespace

Exporter::Exporter(const Plugin& plugin, const Options& options, Settings settings)
    : settings_(std::move(settings)),
      targets_(plugin, options, settings_.limits, settings_.allowedHosts),
      metrics_(settings_.version) {}

WebAnswer Exporter::Answer(const WebRequest& request) {
    if (request.path == "/probe") {
        return Probe(request);
    }
    if (request.path == "/metrics") {
        return {200, kMetricsType, metrics_.Text(targets_)};
    }
    if (request.path == "/targets") {
        return {200, "application/json", "[{\"targets\":" + JsonTexts(Targets::Names()) + "}]\n"};
    }
    if (request.path == "/-/healthy") {
        return {200, "text/plain; charset=utf-8", "Well.\n"};
    }
    return request.path == "/" ? Start() : WebAnswer{404, "text/plain; charset=utf-8", "There is nothing here.\n"};
}

WebAnswer Exporter::Probe(const WebRequest& request) {
    const std::string name = Parameter(request, "target");
    const std::string moduleName = Parameter(request, "module");
    if (name.empty() || moduleName.empty()) {
        return Refuse(400, "which target, and which module? /probe?target=NAME&module=NAME");
    }
    const auto module = settings_.modules.find(moduleName);
    if (module == settings_.modules.end()) {
        return Refuse(400, "there is no module '" + moduleName + "'; there are " +
                               ListedTogether(NamesOf(settings_.modules)));
    }
    const auto begin = Target::Clock::now();
    const auto target = targets_.Find(name);
    if (!target) {
        return Refuse(404, "there is no connection '" + name +
                               "', and --allow-hosts does not allow it as a host; 'cimhttp connection list' shows the "
                               "connections");
    }
    const Scrape scrape = target->Read(module->second, begin + TimeFor(request));
    const auto outcome = scrape.isShared          ? ExporterMetrics::Outcome::kShared
                         : scrape.failure.empty() ? ExporterMetrics::Outcome::kRead
                                                  : ExporterMetrics::Outcome::kFailed;
    metrics_.AddScrape(outcome, Target::Clock::now() - begin);
    return {200, kMetricsType, scrape.page};
}

Milliseconds Exporter::TimeFor(const WebRequest& request) const {
    const auto header = request.headers.find(kTimeHeader);
    const auto seconds = header == request.headers.end() ? std::nullopt : NumberIn<double>(header->second);
    if (!seconds || !std::isfinite(*seconds) || *seconds <= 0) {
        return settings_.limits.time;
    }
    constexpr double kLongest = 86400;
    const Milliseconds given(static_cast<Milliseconds::rep>(std::min(*seconds, kLongest) * 1000));
    return std::min(settings_.limits.time, std::max(given - kForTheWay, given / 2));
}

WebAnswer Exporter::Refuse(unsigned status, const std::string& reason) {
    metrics_.AddScrape(ExporterMetrics::Outcome::kRefused, {});
    return {status, "text/plain; charset=utf-8", Printable(reason) + '\n'};
}

WebAnswer Exporter::Start() const {
    return {200, "text/plain; charset=utf-8",
            "cimhttp exporter\n\n/probe?target=NAME&module=NAME  a server's metrics; modules: " +
                Joined(NamesOf(settings_.modules)) +
                "\n/targets                        all connections, for Prometheus' discovery by HTTP"
                "\n/metrics                        the exporter's own\n"};
}

} // namespace cimhttp
