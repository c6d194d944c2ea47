#include "connection/ConnectionContext.h"

#include "cimhttp/ContextKeys.h"
#include "connection/Connection.h"
#include "host/TCIMValue.h"

#include <cstdint>

namespace cimhttp {

namespace {

using NQORVYX20::TCIMContext;
using NQORVYX20::TCIMValue;

void Add(const char* key, const std::optional<std::string>& text, TCIMContext& context) {
    if (text) {
        context.emplace(key, TCIMValue(*text));
    }
}

} // namespace

TCIMContext ContextOf(const Connection& connection) {
    const auto milliseconds = std::chrono::milliseconds(connection.timeout).count();
    TCIMContext context{{NQORVYX20::kNamespaceKey, TCIMValue(connection.nameSpace)},
                        {NQORVYX20::kTlsKey, TCIMValue(connection.tls)},
                        {NQORVYX20::kLenientKey, TCIMValue(!connection.strict)},
                        {NQORVYX20::kTimeoutKey, TCIMValue(static_cast<std::uint32_t>(milliseconds))}};
    Add(NQORVYX20::kTrustKey, connection.tlsSettings.ca, context);
    Add(NQORVYX20::kFingerprintKey, connection.tlsSettings.fingerprint, context);
    Add(NQORVYX20::kClientCertificateKey, connection.tlsSettings.certificate, context);
    Add(NQORVYX20::kClientKeyKey, connection.tlsSettings.key, context);
    Add(NQORVYX20::kTraceKey, connection.trace, context);
    return context;
}

} // namespace cimhttp
