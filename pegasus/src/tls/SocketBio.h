#pragma once

#include <openssl/bio.h>
#include <openssl/types.h>

namespace Pegasus::tls {

/// A BIO of OpenSSL for a socket that does not block. Unlike OpenSSL's own it never raises SIGPIPE, which would end the
/// host, and it keeps how the connection ended.
class SocketBio {
  public:
    /// The socket must outlive the object.
    explicit SocketBio(int descriptor) : descriptor_(descriptor) {}
    SocketBio(const SocketBio&) = delete;
    SocketBio& operator=(const SocketBio&) = delete;

    /// From now on the session reads and writes here; the object must outlive it. False when there is no memory.
    bool attachTo(SSL& session);

    /// Whether the peer has ended the stream.
    bool hasEnded() const { return hasEnded_; }
    /// The number of the error that broke the connection; 0 when none has.
    int error() const { return error_; }

  private:
    static int onRead(BIO* bio, char* buffer, int size);
    static int onWrite(BIO* bio, const char* bytes, int size);
    static long onControl(BIO* bio, int command, long number, void* pointer);
    static const BIO_METHOD* method();

    int result(BIO* bio, long count, int retryFlag);

    const int descriptor_;
    bool hasEnded_ = false;
    int error_ = 0;
};

} // namespace Pegasus::tls
