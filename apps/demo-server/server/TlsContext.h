#pragma once

#include "server/Certificate.h"

#include <memory>
#include <string>

struct ssl_ctx_st;

namespace demo {

/// How a port speaks TLS, version 1.2 or later: with which certificate, and with which clients. It can be used from
/// several threads.
class TlsContext {
  public:
    /// With the name of a PEM file, a client must show a certificate that one of the authorities in the file has
    /// signed; without one it needs none. Throws std::runtime_error when a certificate cannot be used.
    TlsContext(const Certificate& certificate, const std::string& clientAuthorities);

    ssl_ctx_st* Get() const { return context_.get(); }

  private:
    struct Free {
        void operator()(ssl_ctx_st* context) const;
    };

    void DemandCertificates(const std::string& clientAuthorities);

    std::unique_ptr<ssl_ctx_st, Free> context_;
};

} // namespace demo
