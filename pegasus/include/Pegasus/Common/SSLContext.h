#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus {

/// One certificate of the peer's chain, as a verification callback sees it.
class SSLCertificateInfo {
  public:
    /// `preverified` is what the library's own check of this certificate said.
    SSLCertificateInfo(const String& subjectName, const String& issuerName, Uint32 errorDepth, Sint32 errorCode,
                       const String& errorString, Boolean preverified);

    const String& getSubjectName() const noexcept { return subjectName_; }
    const String& getIssuerName() const noexcept { return issuerName_; }
    /// The certificate's place in the chain: 0 is the peer's own, higher numbers are its issuers.
    Uint32 getErrorDepth() const noexcept { return errorDepth_; }
    /// OpenSSL's verification result (X509_V_...); 0 when the certificate passed.
    Sint32 getErrorCode() const noexcept { return errorCode_; }
    const String& getErrorString() const noexcept { return errorString_; }
    /// 1 when the certificate passed the library's own check, else 0.
    Uint32 getResponseCode() const noexcept { return preverified_ ? 1 : 0; }

  private:
    String subjectName_;
    String issuerName_;
    String errorString_;
    Uint32 errorDepth_;
    Sint32 errorCode_;
    Boolean preverified_;
};

/// Decides about one certificate: true accepts it. Called during the handshake, on the thread that connects.
typedef Boolean(SSLCertificateVerifyFunction)(SSLCertificateInfo&);

/// How a secure connection checks its peer. With neither trust store nor callback nor fingerprint the connection is
/// encrypted and the peer is not verified.
class SSLContext {
  public:
    /// `trustStore` is a PEM file or a folder of certificates, `verify` may be null, `randomFile` names a file that
    /// seeds the random numbers; an empty text means "none".
    SSLContext(const String& trustStore, SSLCertificateVerifyFunction* verify,
               const String& randomFile = String::EMPTY);
    /// The same with the client's own certificate, for servers that ask for one: PEM files. The key may stand in
    /// `certPath`, too; `keyPath` is then empty.
    SSLContext(const String& trustStore, const String& certPath, const String& keyPath,
               SSLCertificateVerifyFunction* verify = nullptr, const String& randomFile = String::EMPTY);

    /// Accepts the one certificate with this SHA-256 (64 hexadecimal digits, with or without colons), whatever trust
    /// store, time and names say, and no other. The callback is not asked then.
    void setPeerFingerprint(const String& fingerprint) { peerFingerprint_ = fingerprint; }

    const String& getTrustStore() const noexcept { return trustStore_; }
    const String& getCertPath() const noexcept { return certPath_; }
    const String& getKeyPath() const noexcept { return keyPath_; }
    const String& getPeerFingerprint() const noexcept { return peerFingerprint_; }
    SSLCertificateVerifyFunction* getSSLCertificateVerifyFunction() const noexcept { return verify_; }
    const String& getRandomFile() const noexcept { return randomFile_; }
    Boolean isPeerVerificationEnabled() const noexcept {
        return verify_ != nullptr || !trustStore_.empty() || !peerFingerprint_.empty();
    }

  private:
    String trustStore_;
    String certPath_;
    String keyPath_;
    SSLCertificateVerifyFunction* verify_;
    String randomFile_;
    String peerFingerprint_;
};

} // namespace Pegasus
