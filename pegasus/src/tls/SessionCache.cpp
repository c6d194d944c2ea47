#include "tls/SessionCache.h"

#include <openssl/err.h>

namespace Pegasus::tls {

namespace {

using Clock = std::chrono::steady_clock;

/// Where a session keeps the address of its cache.
int cacheIndex() {
    static const int index = SSL_get_ex_new_index(0, nullptr, nullptr, nullptr, nullptr);
    return index;
}

} // namespace

void SessionCache::useFor(SSL_CTX& context) {
    SSL_CTX_set_session_cache_mode(&context, SSL_SESS_CACHE_CLIENT | SSL_SESS_CACHE_NO_INTERNAL);
    SSL_CTX_sess_set_new_cb(&context, &SessionCache::onNewSession);
}

void SessionCache::attachTo(SSL& session) {
    SSL_set_ex_data(&session, cacheIndex(), this); // without it nothing is kept
    if (latest_ && SSL_SESSION_is_resumable(latest_.get()) == 1 && Clock::now() - verified_ < trustedFor_) {
        SSL_set_session(&session, latest_.get()); // without it the handshake is a whole one
    }
    ERR_clear_error();
}

void SessionCache::noteHandshake(const SSL& session) {
    if (SSL_session_reused(&session) == 0) {
        verified_ = Clock::now();
    }
}

/// The server has given a session. 1 keeps it.
int SessionCache::onNewSession(SSL* session, SSL_SESSION* resumable) {
    auto* const cache = static_cast<SessionCache*>(SSL_get_ex_data(session, cacheIndex()));
    if (cache == nullptr) {
        return 0;
    }
    cache->latest_.reset(resumable);
    return 1;
}

} // namespace Pegasus::tls
