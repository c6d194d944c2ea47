#include "tls/OpenSslErrors.h"

#include <openssl/err.h>

namespace Pegasus::tls {

std::string openSslText(unsigned long code) {
    const char* const reason = ERR_reason_error_string(code);
    return reason != nullptr ? reason : "unknown error";
}

std::string takeOpenSslError() {
    const unsigned long code = ERR_peek_last_error();
    ERR_clear_error();
    return openSslText(code);
}

} // namespace Pegasus::tls
