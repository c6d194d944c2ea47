#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {
inline namespace bundled {

/// An enumeration that a server keeps open for a client. An open operation sets it, each pull operation updates it, and
/// the end of the enumeration clears it. Only the client that opened it can use it, or another that is connected to the
/// same server.
class CIMEnumerationContext {
  public:
    /// No enumeration is open.
    CIMEnumerationContext() noexcept = default;

    /// Forgets the enumeration. The server keeps it until it times out.
    void clear() { *this = CIMEnumerationContext(); }

    /// The total size, in bytes, of the answers that brought objects of the enumeration. An extension, which other
    /// libraries of this API do not have.
    Uint64 getAnswerBytes() const noexcept { return answerBytes_; }

  private:
    friend class CIMClient;

    Boolean open_ = false;
    CIMNamespaceName nameSpace_;
    String id_; // what the server calls it
    Uint64 answerBytes_ = 0;
};

} // namespace bundled
} // namespace Pegasus
