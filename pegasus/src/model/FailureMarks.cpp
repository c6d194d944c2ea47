#include <Pegasus/Client/FailureMarks.h>

namespace Pegasus {
inline namespace bundled {

// Here, so that the types exist once for all libraries of a process.
ExceedsLimit::~ExceedsLimit() = default;
PeerSpeaksTls::~PeerSpeaksTls() = default;
UnknownHost::~UnknownHost() = default;
PortClosed::~PortClosed() = default;
ClosedWithoutAnswer::~ClosedWithoutAnswer() = default;
RefusedByServer::~RefusedByServer() = default;
MalformedPath::~MalformedPath() = default;
CertificateRefused::~CertificateRefused() = default;

} // namespace bundled
} // namespace Pegasus
