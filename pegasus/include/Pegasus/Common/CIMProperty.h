#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Handle.h>

namespace Pegasus {
inline namespace bundled {

class CIMConstQualifier;
class CIMQualifier;
class CIMValue;

/// A property of a class, with its default value, or of an instance, with its value. A handle; a default-constructed
/// one is uninitialised: every operation on it throws UninitializedObjectException.
class CIMProperty {
  public:
    CIMProperty() noexcept = default;
    /// An `arraySize` of 0 means "any"; `referenceClass` is null except for references. Throws TypeMismatchException
    /// for a size when the value is no array, or a class when it is no reference.
    CIMProperty(CIMName name, CIMValue value, Uint32 arraySize = 0, CIMName referenceClass = CIMName(),
                CIMName classOrigin = CIMName(), Boolean propagated = false);

    const CIMName& getName() const;
    const CIMValue& getValue() const;
    /// Throws TypeMismatchException for a value of another type, or for an array in place of a scalar or the reverse.
    void setValue(CIMValue value);
    CIMType getType() const;
    Boolean isArray() const;
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;
    /// The class that declares the property; null where the server does not say.
    const CIMName& getClassOrigin() const;
    /// Whether the property comes from a superclass, or from the class in the case of an instance.
    Boolean getPropagated() const;

    /// Throws AlreadyExistsException when there is one of that name.
    CIMProperty& addQualifier(const CIMQualifier& qualifier);
    Uint32 getQualifierCount() const;
    /// Throw IndexOutOfBoundsException for an index that is not below the count.
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    /// The index of the qualifier, PEG_NOT_FOUND when there is none of that name.
    Uint32 findQualifier(const CIMName& name) const;

    Boolean identical(const CIMProperty& other) const;
    /// An independent copy, in which all parts are copied, too.
    CIMProperty clone() const;
    /// Whether this is a default-constructed handle.
    Boolean isUninitialized() const noexcept { return !rep_; }

  private:
    friend struct detail::Unchecked;

    struct Rep;
    detail::Handle<Rep> rep_;
};

} // namespace bundled
} // namespace Pegasus

// After the class, because values can be instances, which have properties.
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMValue.h>

namespace Pegasus {
inline namespace bundled {

/// A handle to a property that reads it only.
class CIMConstProperty : private CIMProperty {
  public:
    CIMConstProperty() noexcept = default;
    CIMConstProperty(const CIMProperty& property) : CIMProperty(property) {}

    using CIMProperty::clone;
    using CIMProperty::findQualifier;
    using CIMProperty::getArraySize;
    using CIMProperty::getClassOrigin;
    using CIMProperty::getName;
    using CIMProperty::getPropagated;
    using CIMProperty::getQualifierCount;
    using CIMProperty::getReferenceClassName;
    using CIMProperty::getType;
    using CIMProperty::getValue;
    using CIMProperty::isArray;
    using CIMProperty::isUninitialized;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Boolean identical(const CIMConstProperty& other) const { return CIMProperty::identical(other); }
};

} // namespace bundled
} // namespace Pegasus
