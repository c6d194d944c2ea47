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
    TCIMContext context{{NQORVYX20::kNamespaceKey, TCIMValue(connection.name_space)},
                        {NQORVYX20::kTlsKey, TCIMValue(connection.tls)},
                        {NQORVYX20::kLenientKey, TCIMValue(!connection.strict)},
                        {NQORVYX20::kTimeoutKey, TCIMValue(static_cast<std::uint32_t>(milliseconds))}};
    Add(NQORVYX20::kTrustKey, connection.tls_settings.ca, context);
    Add(NQORVYX20::kFingerprintKey, connection.tls_settings.fingerprint, context);
    Add(NQORVYX20::kClientCertificateKey, connection.tls_settings.certificate, context);
    Add(NQORVYX20::kClientKeyKey, connection.tls_settings.key, context);
    Add(NQORVYX20::kTraceKey, connection.trace, context);
    return context;
}

} // namespace cimhttp
