#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMType.h>

namespace Pegasus {

/// A parameter of a method: a handle. A default-constructed one is uninitialised: every operation on it throws
/// UninitializedObjectException.
class CIMParameter {
  public:
    CIMParameter() noexcept = default;
    /// An `arraySize` of 0 means "any"; `referenceClass` is null except for references.
    CIMParameter(const CIMName& name, CIMType type, Boolean isArray = false, Uint32 arraySize = 0,
                 const CIMName& referenceClass = CIMName());

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;

    CIMParameter& addQualifier(const CIMQualifier& qualifier);
    Uint32 getQualifierCount() const;
    /// Throws IndexOutOfBoundsException.
    CIMQualifier getQualifier(Uint32 index) const;
    /// The index of the qualifier, PEG_NOT_FOUND when there is none of the name.
    Uint32 findQualifier(const CIMName& name) const;

    Boolean identical(const CIMParameter& other) const;

  private:
    struct Rep;
    detail::Handle<Rep> rep_;
};

} // namespace Pegasus
