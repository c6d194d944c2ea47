#pragma once

#include "Fleet.h"
#include "Options.h"
#include "connection/Plugin.h"
#include "exporter/Exporter.h"
#include "exporter/ModuleFile.h"
#include "web/WebServer.h"

#include <gtest/gtest.h>
#include <httplib.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The exporter's part of the port by which Prometheus' exporters are told from each other.
constexpr int kExporterPort = 9989;

/// An exporter in this process, on a port of its own, and the servers that it reads.
class ExporterFixture : public testing::Test {
  protected:
    ExporterFixture() {
        const std::string environment = fleet_.Environment();
        const std::size_t sign = environment.find('=');
        ::setenv(environment.substr(0, sign).c_str(), environment.substr(sign + 1).c_str(), 1);
        options_.plugin = CIMHTTP_PLUGIN;
        settings_.version = "1.2.3";
    }

    void Start(const std::string& modules, const cimhttp::WebAccess& access = {}) {
        settings_.modules = modules.empty() ? cimhttp::BuiltInModules() : cimhttp::ParseModules(modules, "modules");
        plugin_.emplace(options_.plugin);
        exporter_.emplace(*plugin_, options_, settings_);
        server_.emplace(cimhttp::WebPlace{support::LoopbackAddress(), kExporterPort}, access,
                        [this](const cimhttp::WebRequest& request) { return exporter_->Answer(request); });
    }

    /// The answer to a request; of the status 0 when there is none.
    static httplib::Response Ask(const std::string& path, const httplib::Headers& headers = {}) {
        httplib::Client client(support::LoopbackAddress(), kExporterPort);
        client.set_read_timeout(120);
        client.set_url_encode(false);
        const auto result = client.Get(path, headers);
        httplib::Response none;
        none.status = 0;
        return result ? result.value() : none;
    }

    /// The lines of a probe that are no comments.
    static std::vector<std::string> Lines(const std::string& page) {
        std::vector<std::string> lines;
        std::istringstream stream(page);
        for (std::string line; std::getline(stream, line);) {
            if (line.front() != '#') {
                lines.push_back(line);
            }
        }
        return lines;
    }

    static std::vector<std::string> Probe(const std::string& target, const std::string& module,
                                          const httplib::Headers& headers = {}) {
        return Lines(Ask("/probe?target=" + target + "&module=" + module, headers).body);
    }

    Fleet fleet_;
    cimhttp::Options options_;
    cimhttp::Exporter::Settings settings_;
    std::optional<cimhttp::Plugin> plugin_;
    std::optional<cimhttp::Exporter> exporter_;
    std::optional<cimhttp::WebServer> server_;
};
