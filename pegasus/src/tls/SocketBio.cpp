#include "tls/SocketBio.h"

#include <openssl/ssl.h>

#include <sys/socket.h>

#include <cerrno>
#include <cstddef>

namespace Pegasus::tls {

bool SocketBio::attachTo(SSL& session) {
    BIO* const bio = method() != nullptr ? BIO_new(method()) : nullptr;
    if (bio == nullptr) {
        return false;
    }
    BIO_set_data(bio, this);
    BIO_set_init(bio, 1);
    SSL_set_bio(&session, bio, bio); // which owns it
    return true;
}

int SocketBio::onRead(BIO* bio, char* buffer, int size) {
    auto& self = *static_cast<SocketBio*>(BIO_get_data(bio));
    const auto count = ::recv(self.descriptor_, buffer, static_cast<std::size_t>(size), 0);
    self.hasEnded_ = self.hasEnded_ || (count == 0 && size > 0);
    return self.result(bio, count, BIO_FLAGS_READ);
}

int SocketBio::onWrite(BIO* bio, const char* bytes, int size) {
    auto& self = *static_cast<SocketBio*>(BIO_get_data(bio));
    return self.result(bio, ::send(self.descriptor_, bytes, static_cast<std::size_t>(size), MSG_NOSIGNAL),
                       BIO_FLAGS_WRITE);
}

/// The result of a system call; tells OpenSSL to try again where the socket would have blocked.
int SocketBio::result(BIO* bio, long count, int retryFlag) {
    BIO_clear_retry_flags(bio);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
        BIO_set_flags(bio, retryFlag | BIO_FLAGS_SHOULD_RETRY);
    } else if (count < 0) {
        error_ = errno;
    }
    return static_cast<int>(count);
}

/// What is written is on its way at once, so there is nothing to flush; OpenSSL asks for nothing else that matters.
long SocketBio::onControl(BIO* /*bio*/, int command, long /*number*/, void* /*pointer*/) {
    return command == BIO_CTRL_FLUSH ? 1 : 0;
}

/// Made once, for the rest of the process; null when there is no memory.
const BIO_METHOD* SocketBio::method() {
    static BIO_METHOD* const method = [] {
        BIO_METHOD* const made = BIO_meth_new(BIO_get_new_index() | BIO_TYPE_SOURCE_SINK, "quiet socket");
        if (made != nullptr) {
            BIO_meth_set_read(made, &SocketBio::onRead);
            BIO_meth_set_write(made, &SocketBio::onWrite);
            BIO_meth_set_ctrl(made, &SocketBio::onControl);
        }
        return made;
    }();
    return method;
}

} // namespace Pegasus::tls
