#include "server/DemoServer.h"

#include "providers/LiveProviders.h"
#include "providers/Machine.h"
#include "schema/SchemaReader.h"

#include <utility>

namespace demo {

namespace {

const Credentials* Pointer(const std::optional<Credentials>& credentials) {
    return credentials ? &*credentials : nullptr;
}

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
      http_(service_, options_.address, options_.httpPort, Pointer(options_.credentials), nullptr),
      https_(service_, options_.address, options_.httpsPort, Pointer(options_.credentials), &certificate_) {}

} // namespace demo
