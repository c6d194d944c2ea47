#include "reading/RemoteQualifiers.h"

#include "convert/RemoteTypes.h"
#include "model/TCimHTTPQualifierDecl.h"
#include "reading/RemoteNamespace.h"
#include "reading/RemoteServer.h"

namespace NQORVYX20 {

boost::shared_ptr<ICIMQualifierDecl> FetchQualifierDecl(RemoteNamespace& nameSpace,
                                                        const Pegasus::CIMName& qualifierName) {
    const std::string name = ToStdString(qualifierName);
    if (auto known = nameSpace.GetQualifierDecl(name, TCIMContext())) {
        return known;
    }
    auto remote = nameSpace.Server().GetQualifier(qualifierName);
    auto declaration = nameSpace.AllocateQualifierDecl(name, TCIMValue(pegTypeToVYXType(remote.getType(), false), 0),
                                                       pegScopeToVYXScope(remote.getScope()),
                                                       pegFlavorToVYXFlavor(remote.getFlavor()), TCIMContext());
    nameSpace.AddQualifierDecl(boost::dynamic_pointer_cast<TCimHTTPQualifierDecl>(declaration));
    return declaration;
}

} // namespace NQORVYX20
