#include "http/TlsTransport.h"

#include "http/DynamicLibrary.h"

#include <Pegasus/Common/Exception.h>

namespace Pegasus::http {

namespace {

const TlsTransport& load() {
    const DynamicLibrary library(kTlsTransportLibrary);
    auto* const transport = library.function<TlsTransportFunction>(kTlsTransportFunction);
    if (transport == nullptr) {
        throw SSLException(String("there is no TLS: " + DynamicLibrary::error()));
    }
    return *transport();
}

} // namespace

const TlsTransport& TlsTransport::loaded() {
    static const TlsTransport& transport = load();
    return transport;
}

} // namespace Pegasus::http
