#include <Pegasus/Common/SSLContext.h>

#include <string>

namespace Pegasus {
inline namespace bundled {

SSLCertificateInfo::SSLCertificateInfo(const String& subjectName, const String& issuerName, Uint32 errorDepth,
                                       Sint32 errorCode, const String& errorString, Boolean preverified)
    : subjectName_(subjectName),
      issuerName_(issuerName),
      errorString_(errorString),
      errorDepth_(errorDepth),
      errorCode_(errorCode),
      preverified_(preverified) {}

String SSLCertificateInfo::toString() const {
    const auto line = [](const char* name, const String& value) {
        return String(name) + String(": ") + value + String("\n");
    };
    const auto number = [](auto value) { return String(std::to_string(value)); };
    return line("Subject", subjectName_) + line("Issuer", issuerName_) +
           line("Serial number", number(getSerialNumber())) + line("Version", number(getVersionNumber())) +
           line("Not before", getNotBefore().toString()) + line("Not after", getNotAfter().toString()) +
           line("Depth", number(errorDepth_)) + line("Error code", number(errorCode_)) + line("Error", errorString_) +
           line("Response", number(getResponseCode()));
}

SSLContext::SSLContext(const String& trustStore, SSLCertificateVerifyFunction* verify, const String& randomFile)
    : trustStore_(trustStore), verify_(verify), randomFile_(randomFile) {}

SSLContext::SSLContext(const String& trustStore, const String& certPath, const String& keyPath,
                       SSLCertificateVerifyFunction* verify, const String& randomFile)
    : trustStore_(trustStore), certPath_(certPath), keyPath_(keyPath), verify_(verify), randomFile_(randomFile) {}

} // namespace bundled
} // namespace Pegasus
