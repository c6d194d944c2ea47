#include "server/DemoServer.h"

#include "providers/Machine.h"

#include <stdexcept>
#include <utility>

namespace demo {

namespace {

CimService MakeService(const DemoServerOptions& options) {
    const SystemFiles files("/");
    SchemasByNamespace added = options.namespaces;
    auto& schemas = added[CimService::kNamespace];
    schemas.insert(schemas.end(), options.schemas.begin(), options.schemas.end());
    return {ServedNamespaces(std::move(added), options.interop, files, options.volumes), ComputerName(files),
            options.enumerations};
}

Certificate MakeCertificate(const DemoServerOptions& options) {
    if (options.certificateFile.empty() && !options.keyFile.empty()) {
        throw std::invalid_argument("there is no certificate for the key in " + options.keyFile);
    }
    return options.certificateFile.empty() ? Certificate(options.address)
                                           : Certificate::Read(options.certificateFile, options.keyFile);
}

} // namespace

DemoServer::DemoServer(DemoServerOptions options)
    : options_(std::move(options)),
      service_(MakeService(options_)),
      certificate_(MakeCertificate(options_)),
      tls_(certificate_, options_.clientAuthorityFile),
      http_(service_, options_.users, options_.accessLog, options_.address, options_.httpPort, nullptr,
            options_.limits),
      https_(service_, options_.users, options_.accessLog, options_.address, options_.httpsPort, &tls_,
             options_.limits) {}

} // namespace demo
