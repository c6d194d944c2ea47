#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class ICIMQualifierDecl;
class RemoteNamespace;

/// The qualifier declarations that a faithful namespace needs. All come with one request when the first is needed. From
/// a server that does not list them they come one by one, and where it has none to give, a qualifier is declared as a
/// class shows it. They are registered in the namespace.
class QualifierDeclarations {
  public:
    /// The declaration of a class's qualifier. Throws what the client library throws when the server cannot be asked at
    /// all, and TVYXException eInvalidName for a name that the host cannot keep.
    boost::shared_ptr<ICIMQualifierDecl> Get(RemoteNamespace& nameSpace, Pegasus::CIMQualifier& qualifier);

  private:
    enum class Source {
        kUnasked,  ///< nobody has asked yet
        kAll,      ///< the namespace has all that the server has
        kOneByOne, ///< the server does not list them
        kNone      ///< the server does not give them
    };

    void RegisterAll(RemoteNamespace& nameSpace);
    void RegisterOne(RemoteNamespace& nameSpace, const Pegasus::CIMName& name);

    Source source_ = Source::kUnasked;
};

} // namespace NQORVYX20
