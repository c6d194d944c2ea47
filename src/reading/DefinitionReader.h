#pragma once

#include "host/ICIMNamedElement.h"
#include "reading/QualifierDeclarations.h"

#include <Pegasus/Client/CIMClient.h>

#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class ReadingReport;
class TCimHTTPClass;
class RemoteNamespace;

/// Fills the classes of a faithful namespace from the server's definitions: with all qualifiers, also those of methods
/// and parameters. What the host cannot keep is an incident, and the rest of the class is there.
class DefinitionReader {
  public:
    /// Throws what the client library throws when the server cannot be asked for a qualifier declaration.
    void Fill(RemoteNamespace& nameSpace, TCimHTTPClass& cls, Pegasus::CIMClass& definition);

  private:
    QualifierDeclarations declarations_;
};

} // namespace NQORVYX20
