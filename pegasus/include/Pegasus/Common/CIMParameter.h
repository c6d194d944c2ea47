#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMType.h>

namespace Pegasus {
inline namespace bundled {

/// A parameter of a method: a handle. A default-constructed one is uninitialised: every operation on it throws
/// UninitializedObjectException.
class CIMParameter {
  public:
    CIMParameter() noexcept = default;
    /// An `arraySize` of 0 means "any"; `referenceClass` is null except for references. Throws TypeMismatchException
    /// for a size without `isArray`, or a class when the type is not reference.
    CIMParameter(const CIMName& name, CIMType type, Boolean isArray = false, Uint32 arraySize = 0,
                 const CIMName& referenceClass = CIMName());

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;

    /// Throws AlreadyExistsException when there is one of that name.
    CIMParameter& addQualifier(const CIMQualifier& qualifier);
    Uint32 getQualifierCount() const;
    /// Throw IndexOutOfBoundsException for an index that is not below the count.
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    /// The index of the qualifier, PEG_NOT_FOUND when there is none of that name.
    Uint32 findQualifier(const CIMName& name) const;

    Boolean identical(const CIMParameter& other) const;
    /// An independent copy, in which all parts are copied, too.
    CIMParameter clone() const;
    /// Whether this is a default-constructed handle.
    Boolean isUninitialized() const noexcept { return !rep_; }

  private:
    friend struct detail::Unchecked;

    struct Rep;
    detail::Handle<Rep> rep_;
};

/// A handle to a parameter that reads it only.
class CIMConstParameter : private CIMParameter {
  public:
    CIMConstParameter() noexcept = default;
    CIMConstParameter(const CIMParameter& parameter) : CIMParameter(parameter) {}

    using CIMParameter::clone;
    using CIMParameter::findQualifier;
    using CIMParameter::getArraySize;
    using CIMParameter::getName;
    using CIMParameter::getQualifierCount;
    using CIMParameter::getReferenceClassName;
    using CIMParameter::getType;
    using CIMParameter::isArray;
    using CIMParameter::isUninitialized;
    CIMConstQualifier getQualifier(Uint32 index) const { return CIMParameter::getQualifier(index); }
    Boolean identical(const CIMConstParameter& other) const { return CIMParameter::identical(other); }
};

} // namespace bundled
} // namespace Pegasus
