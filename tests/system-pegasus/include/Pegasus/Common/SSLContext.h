#pragma once

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/String.h>

// As an installed OpenPegasus, after whose header OpenSSL's own do not compile without this macro.
#ifndef PEGASUS_HAS_SSL
#error "PEGASUS_HAS_SSL has to be defined"
#endif

namespace Pegasus {

class SSLCertificateInfo {
  public:
    SSLCertificateInfo(const SSLCertificateInfo& other);
    ~SSLCertificateInfo();

    const String& getSubjectName() const;
    const String& getIssuerName() const;
    Uint32 getErrorDepth() const;
    Sint32 getErrorCode() const;
    const String& getErrorString() const;
    CIMDateTime getNotBefore() const;
    CIMDateTime getNotAfter() const;
    long getSerialNumber() const;
    Uint32 getVersionNumber() const;
    String toString() const;

  private:
    void* rep_;
};

typedef Boolean(SSLCertificateVerifyFunction)(SSLCertificateInfo&);

class SSLContext {
  public:
    SSLContext(const String& trustStore, SSLCertificateVerifyFunction* verify,
               const String& randomFile = String::EMPTY);
    SSLContext(const String& trustStore, const String& certPath, const String& keyPath,
               SSLCertificateVerifyFunction* verify, const String& randomFile);
    SSLContext(const SSLContext& other);
    ~SSLContext();

  private:
    SSLContext& operator=(const SSLContext& other);

    void* rep_;
};

} // namespace Pegasus
