#include "server/DemoServer.h"

#include "providers/Machine.h"
#include "server/Certificate.h"
#include "server/CimService.h"
#include "server/HttpListener.h"
#include "server/ServedNamespaces.h"
#include "server/TlsContext.h"

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

struct DemoServer::Parts {
    explicit Parts(DemoServerOptions given)
        : options(std::move(given)),
          service(MakeService(options)),
          certificate(MakeCertificate(options)),
          tls(certificate, options.clientAuthorityFile),
          http(service, options.users, options.accessLog, options.address, options.httpPort, nullptr, options.limits),
          https(service, options.users, options.accessLog, options.address, options.httpsPort, &tls, options.limits) {}

    const DemoServerOptions options;
    const CimService service;
    const Certificate certificate;
    const TlsContext tls;
    const HttpListener http;
    const HttpListener https;
};

DemoServer::DemoServer(DemoServerOptions options) : parts_(std::make_unique<Parts>(std::move(options))) {}

DemoServer::~DemoServer() = default;

std::string DemoServer::HttpUrl() const { return parts_->http.Url(); }

std::string DemoServer::HttpsUrl() const { return parts_->https.Url(); }

std::string DemoServer::CertificatePem() const { return parts_->certificate.Pem(); }

} // namespace demo
