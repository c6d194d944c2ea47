#include "exporter/ExporterMetrics.h"

#include "exporter/Targets.h"

#include <prometheus/text_serializer.h>

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace cimhttp {

namespace {

const prometheus::Histogram::BucketBoundaries kSeconds{0.005, 0.01, 0.025, 0.05, 0.1, 0.25, 0.5, 1, 2.5, 5, 10, 30};

const char* NameOf(ExporterMetrics::Outcome outcome) {
    switch (outcome) {
    case ExporterMetrics::Outcome::kRead:
        return "read";
    case ExporterMetrics::Outcome::kFailed:
        return "failed";
    case ExporterMetrics::Outcome::kShared:
        return "shared";
    case ExporterMetrics::Outcome::kRefused:
        return "refused";
    }
    return "";
}

template <typename Builder>
auto& Only(Builder builder, const char* name, const char* help, prometheus::Registry& registry) {
    return builder.Name(name).Help(help).Register(registry).Add({});
}

double ProcessorSeconds() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    constexpr double kMicroseconds = 1e6;
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / kMicroseconds;
}

double ResidentBytes() {
    std::ifstream pages("/proc/self/statm");
    double all = 0;
    double resident = 0;
    pages >> all >> resident;
    return resident * static_cast<double>(::sysconf(_SC_PAGESIZE));
}

double OpenFiles() {
    std::error_code error;
    const std::filesystem::directory_iterator files("/proc/self/fd", error);
    return error ? 0 : static_cast<double>(std::distance(begin(files), end(files)));
}

} // namespace

ExporterMetrics::ExporterMetrics(const std::string& version)
    : scrapes_(prometheus::BuildCounter()
                   .Name("cim_exporter_scrapes_total")
                   .Help("Scrapes of servers, by how they ended")
                   .Register(registry_)),
      seconds_(prometheus::BuildHistogram()
                   .Name("cim_exporter_scrape_seconds")
                   .Help("How long scrapes of servers took")
                   .Register(registry_)
                   .Add({}, kSeconds)),
      kept_(Only(prometheus::BuildGauge(), "cim_exporter_targets", "Servers that are kept between scrapes", registry_)),
      busy_(Only(prometheus::BuildGauge(), "cim_exporter_targets_busy", "Servers that are being read", registry_)),
      waiting_(
          Only(prometheus::BuildGauge(), "cim_exporter_scrapes_waiting", "Scrapes that wait for a server", registry_)),
      memory_(Only(prometheus::BuildGauge(), "process_resident_memory_bytes", "Resident memory", registry_)),
      files_(Only(prometheus::BuildGauge(), "process_open_fds", "Open files and sockets", registry_)),
      processor_(Only(prometheus::BuildCounter(), "process_cpu_seconds_total", "Processor time", registry_)) {
    prometheus::BuildGauge()
        .Name("cim_exporter_build_info")
        .Help("The version of the exporter")
        .Register(registry_)
        .Add({{"version", version}})
        .Set(1);
    for (const auto outcome : {Outcome::kRead, Outcome::kFailed, Outcome::kShared, Outcome::kRefused}) {
        scrapes_.Add({{"outcome", NameOf(outcome)}}); // all are there from the begin
    }
}

void ExporterMetrics::AddScrape(Outcome outcome, std::chrono::duration<double> time) {
    scrapes_.Add({{"outcome", NameOf(outcome)}}).Increment();
    if (outcome != Outcome::kRefused) {
        seconds_.Observe(time.count());
    }
}

std::string ExporterMetrics::Text(const Targets& targets) {
    const Targets::Counts counts = targets.Count();
    kept_.Set(static_cast<double>(counts.kept));
    busy_.Set(static_cast<double>(counts.busy));
    waiting_.Set(static_cast<double>(counts.waiting));
    memory_.Set(ResidentBytes());
    files_.Set(OpenFiles());
    processor_.Increment(std::max(0.0, ProcessorSeconds() - processor_.Value()));
    return prometheus::TextSerializer().Serialize(registry_.Collect());
}

} // namespace cimhttp
