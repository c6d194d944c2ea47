// The client of the stand-in: what a plug-in calls first. Being called is all that these functions are for.

#include <Pegasus/Client/CIMClient.h>

namespace Pegasus {

class CIMClient::Impl {};

CIMClient::CIMClient() = default;

CIMClient::~CIMClient() = default;

void CIMClient::setTimeout(Uint32 /*timeoutMilliseconds*/) {}

void CIMClient::connect(const String& /*host*/, Uint32 /*port*/, const String& /*user*/, const String& /*password*/) {}

void CIMClient::disconnect() {}

CIMClass CIMClient::getClass(const CIMNamespaceName& /*nameSpace*/, const CIMName& /*className*/, Boolean /*localOnly*/,
                             Boolean /*includeQualifiers*/, Boolean /*includeClassOrigin*/,
                             const CIMPropertyList& /*propertyList*/) {
    return {};
}

} // namespace Pegasus
