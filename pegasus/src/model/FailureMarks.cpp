#include <Pegasus/Client/FailureMarks.h>

namespace Pegasus {

// Here, so that the types exist once for all libraries of a process.
ExceedsLimit::~ExceedsLimit() = default;
PeerSpeaksTls::~PeerSpeaksTls() = default;
ClosedWithoutAnswer::~ClosedWithoutAnswer() = default;
CertificateRefused::~CertificateRefused() = default;

} // namespace Pegasus
