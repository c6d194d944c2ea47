#include "server/DemoServer.h"

#include "providers/LiveProviders.h"
#include "providers/Machine.h"
#include "schema/SchemaReader.h"

#include <utility>

namespace demo {

namespace {

CimService MakeService(std::size_t volumes) {
    const SystemFiles files("/");
    Schema schema = BuiltInSchema();
    InstanceProviders providers = LiveProviders(schema, files, volumes);
    return {std::move(schema), std::move(providers), ComputerName(files)};
}

} // namespace

DemoServer::DemoServer(DemoServerOptions options)
    : options_(std::move(options)),
      service_(MakeService(options_.volumes)),
      certificate_(options_.address),
      http_(service_, options_.users, options_.accessLog, options_.address, options_.httpPort, nullptr),
      https_(service_, options_.users, options_.accessLog, options_.address, options_.httpsPort, &certificate_) {}

} // namespace demo
