#pragma once

#include "convert/RemoteText.h"
#include "convert/RemoteValues.h"
#include "host/ICIMNamedElement.h"
#include "host/ICIMQualifier.h"

#include <boost/shared_ptr.hpp>

namespace NQORVYX20 {

class RemoteNamespace;

/// The namespace's declaration of a qualifier. One that the namespace does not have yet is fetched from the server and
/// registered, so that each is fetched once. Throws what the remote library throws.
boost::shared_ptr<ICIMQualifierDecl> FetchQualifierDecl(RemoteNamespace& nameSpace,
                                                        const Pegasus::CIMName& qualifierName);

/// Puts the qualifiers of a remote class or property on a host element.
template <typename RemoteElement>
void CopyQualifiers(RemoteNamespace& nameSpace, RemoteElement& remote, ICIMNamedElement& element) {
    for (Pegasus::Uint32 i = 0; i < remote.getQualifierCount(); ++i) {
        auto qualifier = remote.getQualifier(i);
        const auto declaration = FetchQualifierDecl(nameSpace, qualifier.getName());
        TCIMValue value;
        pegValToVYX(qualifier.getValue(), qualifier.getType(), qualifier.isArray(), value);
        element.AddQualifier(element.AllocateQualifier(declaration, value, TCIMContext()), TCIMContext());
    }
}

} // namespace NQORVYX20
