#pragma once

#include "operations/EnumerationLimits.h"
#include "schema/SchemasByNamespace.h"
#include "server/ListenerLimits.h"
#include "server/Users.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace demo {

class AccessLog;

struct DemoServerOptions {
    std::string address = "127.0.0.1";
    int httpPort = 5988;
    int httpsPort = 5989;
    /// Who may log in; everybody is served if there are none.
    Users users;
    /// Where each request is logged; null for nowhere. It must outlive the server.
    AccessLog* accessLog = nullptr;
    /// The number of instances of DEMO_StorageVolume.
    std::size_t volumes = 0;
    /// Classes, and instances of classes, beside the built-in ones of root/cimv2.
    std::vector<SchemaSource> schemas;
    /// Classes and instances in other namespaces. A namespace that the server would not have otherwise is made, with
    /// the base classes.
    SchemasByNamespace namespaces;
    /// The name of the Interop namespace.
    std::string interop = "interop";
    /// PEM files with the certificate of the HTTPS port, with its chain, and with its key. Without the second, the key
    /// is in the first; without both, a certificate is made.
    std::string certificateFile;
    std::string keyFile;
    /// A PEM file with the authorities one of which must have signed the certificate that a client of the HTTPS port
    /// shows; empty for clients that show none.
    std::string clientAuthorityFile;
    /// For each of the two ports.
    ListenerLimits limits;
    EnumerationLimits enumerations;
};

/// The whole server: the namespaces with the built-in schemas and what is added to them, this machine's instances, and
/// a listener for HTTP and one for HTTPS.
class DemoServer {
  public:
    /// Serves from now on, on threads of its own. Throws ListenError when it cannot listen, SchemaError when an added
    /// schema is wrong, std::invalid_argument when the name of a namespace is, std::runtime_error when a file is.
    explicit DemoServer(DemoServerOptions options = {});

    /// Stops, as HttpListener does.
    ~DemoServer();

    DemoServer(const DemoServer&) = delete;
    DemoServer& operator=(const DemoServer&) = delete;

    /// As in "http://127.0.0.1:5988".
    std::string HttpUrl() const;
    std::string HttpsUrl() const;

    /// What a client has to trust to verify the server on the HTTPS port: the certificate that was made, or the whole
    /// chain of the one that was given.
    std::string CertificatePem() const;

  private:
    /// Defined beside the functions, so that who has a server needs no headers of sockets and TLS.
    struct Parts;

    std::unique_ptr<Parts> parts_;
};

} // namespace demo
