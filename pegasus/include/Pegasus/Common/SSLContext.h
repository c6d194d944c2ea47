#pragma once

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {
inline namespace bundled {

/// One certificate of the peer's chain, as a verification callback sees it.
class SSLCertificateInfo {
  public:
    /// `preverified` is the result of the library's own check of this certificate.
    SSLCertificateInfo(const String& subjectName, const String& issuerName, Uint32 errorDepth, Sint32 errorCode,
                       const String& errorString, Boolean preverified);

    /// What the certificate says of itself. Serial numbers that a long does not hold are -1.
    struct Facts {
        CIMDateTime notBefore;
        CIMDateTime notAfter;
        long serialNumber = 0;
        Uint32 versionNumber = 0;
    };
    void setFacts(const Facts& facts) { facts_ = facts; }

    /// As "/C=AT/O=Example/CN=server", and so is the issuer's.
    const String& getSubjectName() const noexcept { return subjectName_; }
    const String& getIssuerName() const noexcept { return issuerName_; }
    /// The certificate's place in the chain: 0 is the peer's own, higher numbers are its issuers.
    Uint32 getErrorDepth() const noexcept { return errorDepth_; }
    /// OpenSSL's verification result (X509_V_...); 0 when the certificate passed.
    Sint32 getErrorCode() const noexcept { return errorCode_; }
    const String& getErrorString() const noexcept { return errorString_; }
    CIMDateTime getNotBefore() const { return facts_.notBefore; }
    CIMDateTime getNotAfter() const { return facts_.notAfter; }
    long getSerialNumber() const noexcept { return facts_.serialNumber; }
    /// 3 for all of today's.
    Uint32 getVersionNumber() const noexcept { return facts_.versionNumber; }
    /// All of these values, one on each line.
    String toString() const;
    /// 1 when the certificate passed the library's own check, else 0.
    Uint32 getResponseCode() const noexcept { return preverified_ ? 1 : 0; }

  private:
    String subjectName_;
    String issuerName_;
    String errorString_;
    Uint32 errorDepth_;
    Sint32 errorCode_;
    Boolean preverified_;
    Facts facts_;
};

/// Decides about one certificate: true accepts it. Called during the handshake, on the thread that connects.
typedef Boolean(SSLCertificateVerifyFunction)(SSLCertificateInfo&);

/// How an encrypted connection verifies its peer, and which certificate it shows. With neither trust store nor callback
/// nor fingerprint the connection is encrypted and the peer is not verified. connect() reads the files, and throws an
/// SSLException that names the one that it cannot use.
class SSLContext {
  public:
    /// `trustStore` is a PEM file of certificates, or a folder of such files: of all files *.pem, *.crt and *.cer, or,
    /// where there are any, of those that have hashes as names (openssl rehash). The peer's certificate must have a
    /// chain to a self-signed one among them, be meant for servers, be within its time, be no weaker than OpenSSL's
    /// security level on this system allows, and be for the host or address that was connected to; its common name
    /// counts as a host name only where it has no DNS name. `verify` may be null. `randomFile` names a file that seeds
    /// the random numbers. An empty text means "none".
    SSLContext(const String& trustStore, SSLCertificateVerifyFunction* verify,
               const String& randomFile = String::EMPTY);
    /// With the client's own certificate as well, for servers that ask for one: PEM files. The certificates of its
    /// authorities may follow it in the file; they are shown, too. The key may be in `certPath` as well; `keyPath` is
    /// then empty. The key must not be encrypted: nobody is asked for a passphrase.
    SSLContext(const String& trustStore, const String& certPath, const String& keyPath,
               SSLCertificateVerifyFunction* verify = nullptr, const String& randomFile = String::EMPTY);

    /// Accepts the one certificate with this SHA-256 (64 hexadecimal digits in any case, with or without colons between
    /// the pairs), whatever trust store, time, names and strength say, and no other. The callback is not asked then. An
    /// empty text means "none"; connect() throws SSLException for any other text that is not such a SHA-256.
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

} // namespace bundled
} // namespace Pegasus
