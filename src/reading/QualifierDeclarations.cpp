#include "reading/QualifierDeclarations.h"

#include "convert/CoreLog.h"
#include "convert/HostValues.h"
#include "convert/RemoteText.h"
#include "host/TVYXException.h"
#include "model/TCimHTTPQualifierDecl.h"
#include "reading/RemoteFailures.h"
#include "reading/RemoteNamespace.h"
#include "reading/RemoteServer.h"

namespace NQORVYX20 {

namespace {

void Register(RemoteNamespace& nameSpace, const std::string& name, const TCIMValue& defaultValue,
              ICIMQualifierDecl::EScope scope, ICIMQualifierDecl::EFlavor flavor) {
    if (!nameSpace.GetQualifierDecl(name, TCIMContext())) {
        nameSpace.AddQualifierDecl(boost::dynamic_pointer_cast<TCimHTTPQualifierDecl>(
            nameSpace.AllocateQualifierDecl(name, defaultValue, scope, flavor, TCIMContext())));
    }
}

void Register(RemoteNamespace& nameSpace, const Pegasus::CIMQualifierDecl& declaration) {
    Register(nameSpace, ToStdString(declaration.getName()), HostValue(declaration.getValue()),
             HostScope(declaration.getScope()), HostFlavor(declaration.getFlavor()));
}

/// Declares a qualifier as the class that has it shows it.
void RegisterAsShown(RemoteNamespace& nameSpace, Pegasus::CIMQualifier& qualifier) {
    const TCIMValue none(HostType(qualifier.getType(), qualifier.isArray()), 0);
    Register(nameSpace, ToStdString(qualifier.getName()), none, ICIMQualifierDecl::eScopeAny,
             HostFlavor(qualifier.getFlavor()));
}

/// Passes an exception on when the server cannot be asked at all; otherwise says in the log that it was of no use.
RemoteFailure Unused(const Pegasus::Exception& exception, const std::string& what) {
    RemoteFailure failure = RemoteFailureOf(exception);
    if (IsConnectionAtFault(failure)) {
        throw; // it is called while an exception is handled
    }
    LogDebug("TCimHTTPNamespace: " + what + ": " + failure.text);
    return failure;
}

} // namespace

boost::shared_ptr<ICIMQualifierDecl> QualifierDeclarations::Get(RemoteNamespace& nameSpace,
                                                                Pegasus::CIMQualifier& qualifier) {
    const std::string name = ToStdString(qualifier.getName());
    if (source_ == Source::kUnasked) {
        RegisterAll(nameSpace);
    }
    if (auto known = nameSpace.GetQualifierDecl(name, TCIMContext())) {
        return known;
    }
    if (source_ == Source::kOneByOne) {
        RegisterOne(nameSpace, qualifier.getName());
    }
    RegisterAsShown(nameSpace, qualifier);
    return nameSpace.GetQualifierDecl(name, TCIMContext());
}

void QualifierDeclarations::RegisterAll(RemoteNamespace& nameSpace) {
    try {
        auto declarations = nameSpace.Server().EnumerateQualifiers();
        for (Pegasus::Uint32 i = 0; i < declarations.size(); ++i) {
            try {
                Register(nameSpace, declarations[i]);
            } catch (const TVYXException&) {
                // a name or default that the host cannot keep; a class that uses it is told so
            }
        }
        source_ = Source::kAll;
    } catch (const Pegasus::Exception& exception) {
        Unused(exception, "the qualifiers cannot be listed");
        source_ = Source::kOneByOne;
    }
}

void QualifierDeclarations::RegisterOne(RemoteNamespace& nameSpace, const Pegasus::CIMName& name) {
    try {
        Register(nameSpace, nameSpace.Server().GetQualifier(name));
    } catch (const Pegasus::Exception& exception) {
        const RemoteFailure failure = Unused(exception, "the qualifier " + ToStdString(name) + " cannot be read");
        if (failure.kind != RemoteFailure::Kind::kCimStatus ||
            failure.cimStatus != static_cast<unsigned>(Pegasus::CIM_ERR_NOT_FOUND)) {
            source_ = Source::kNone;
        }
    }
}

} // namespace NQORVYX20
