#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

/// An enumeration that a server keeps open for a client, which pulls the next of its objects: what an open operation
/// sets, each pull brings up to date, and the end of the enumeration clears. It is of use to the client alone that
/// opened it, or to another that is connected to the same server.
class CIMEnumerationContext {
  public:
    /// None is open.
    CIMEnumerationContext() noexcept = default;

    /// Forgets the enumeration. The server keeps it until it times out.
    void clear() { *this = CIMEnumerationContext(); }

    /// How long the answers were together that brought objects of the enumeration. An extension, which other libraries
    /// of this API do not have.
    Uint64 getAnswerBytes() const noexcept { return answerBytes_; }

  private:
    friend class CIMClient;

    Boolean open_ = false;
    CIMNamespaceName nameSpace_;
    String id_; // what the server calls it
    Uint64 answerBytes_ = 0;
};

} // namespace Pegasus
