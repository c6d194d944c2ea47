#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMType.h>

namespace Pegasus {

/// The declaration of a method: a handle. A default-constructed one is uninitialised: every operation on it throws
/// UninitializedObjectException.
class CIMMethod {
  public:
    CIMMethod() noexcept = default;
    CIMMethod(const CIMName& name, CIMType type, const CIMName& classOrigin = CIMName(), Boolean propagated = false);

    const CIMName& getName() const;
    /// The type of what the method returns.
    CIMType getType() const;
    const CIMName& getClassOrigin() const;
    Boolean getPropagated() const;

    CIMMethod& addParameter(const CIMParameter& parameter);
    Uint32 getParameterCount() const;
    /// Throws IndexOutOfBoundsException.
    CIMParameter getParameter(Uint32 index) const;
    /// The index of the parameter, PEG_NOT_FOUND when there is none of the name.
    Uint32 findParameter(const CIMName& name) const;

    CIMMethod& addQualifier(const CIMQualifier& qualifier);
    Uint32 getQualifierCount() const;
    /// Throws IndexOutOfBoundsException.
    CIMQualifier getQualifier(Uint32 index) const;
    /// The index of the qualifier, PEG_NOT_FOUND when there is none of the name.
    Uint32 findQualifier(const CIMName& name) const;

    Boolean identical(const CIMMethod& other) const;

  private:
    struct Rep;
    detail::Handle<Rep> rep_;
};

} // namespace Pegasus
