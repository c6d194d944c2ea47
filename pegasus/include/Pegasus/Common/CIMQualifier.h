#pragma once

#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMValue.h>

namespace Pegasus {

/// A qualifier of a class, property, method or parameter: a handle. A default-constructed one is uninitialised: every
/// operation on it throws UninitializedObjectException.
class CIMQualifier {
  public:
    CIMQualifier() noexcept = default;
    CIMQualifier(CIMName name, CIMValue value, const CIMFlavor& flavor = CIMFlavor(), Boolean propagated = false);

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    const CIMValue& getValue() const;
    const CIMFlavor& getFlavor() const;
    /// Whether the qualifier comes from a superclass.
    Boolean getPropagated() const;

    Boolean identical(const CIMQualifier& other) const;

  private:
    struct Rep;
    detail::Handle<Rep> rep_;
};

} // namespace Pegasus
