#include "server/DemoServer.h"

#include "providers/Machine.h"

#include <utility>

namespace demo {

namespace {

CimService MakeService(const DemoServerOptions& options) {
    const SystemFiles files("/");
    SchemasByNamespace added = options.namespaces;
    auto& schemas = added[CimService::kNamespace];
    schemas.insert(schemas.end(), options.schemas.begin(), options.schemas.end());
    return {ServedNamespaces(std::move(added), options.interop, files, options.volumes), ComputerName(files)};
}

} // namespace

DemoServer::DemoServer(DemoServerOptions options)
    : options_(std::move(options)),
      service_(MakeService(options_)),
      certificate_(options_.address),
      http_(service_, options_.users, options_.accessLog, options_.address, options_.httpPort, nullptr,
            options_.limits),
      https_(service_, options_.users, options_.accessLog, options_.address, options_.httpsPort, &certificate_,
             options_.limits) {}

} // namespace demo
