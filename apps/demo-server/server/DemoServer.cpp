#include "server/DemoServer.h"

#include "providers/LiveProviders.h"
#include "providers/Machine.h"
#include "providers/StaticProvider.h"
#include "schema/SchemaReader.h"

#include <utility>

namespace demo {

namespace {

CimService MakeService(const DemoServerOptions& options) {
    const SystemFiles files("/");
    std::vector<SchemaSource> sources{BuiltInSource()};
    sources.insert(sources.end(), options.schemas.begin(), options.schemas.end());
    const SchemaDocuments documents(std::move(sources));
    Schema schema = ReadSchema(documents);
    InstanceProviders providers = LiveProviders(schema, files, options.volumes);
    for (auto& provider : DeclaredInstances(documents, schema, CimService::kNamespace))
        providers.push_back(std::move(provider));
    return {std::move(schema), std::move(providers), ComputerName(files)};
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
