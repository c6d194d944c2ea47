#include <Pegasus/Common/SSLContext.h>

namespace Pegasus {

SSLCertificateInfo::SSLCertificateInfo(const String& subjectName, const String& issuerName, Uint32 errorDepth,
                                       Sint32 errorCode, const String& errorString, Boolean preverified)
    : subjectName_(subjectName),
      issuerName_(issuerName),
      errorString_(errorString),
      errorDepth_(errorDepth),
      errorCode_(errorCode),
      preverified_(preverified) {}

SSLContext::SSLContext(const String& trustStore, SSLCertificateVerifyFunction* verify, const String& randomFile)
    : trustStore_(trustStore), verify_(verify), randomFile_(randomFile) {}

SSLContext::SSLContext(const String& trustStore, const String& certPath, const String& keyPath,
                       SSLCertificateVerifyFunction* verify, const String& randomFile)
    : trustStore_(trustStore), certPath_(certPath), keyPath_(keyPath), verify_(verify), randomFile_(randomFile) {}

} // namespace Pegasus
