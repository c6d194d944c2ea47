#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Handle.h>

namespace Pegasus {
inline namespace bundled {

class CIMClass;
class CIMConstProperty;
class CIMConstQualifier;
class CIMInstance;
class CIMProperty;
class CIMQualifier;

/// A class or an instance: what associations lead to, and an embedded object as a value. A handle; a
/// default-constructed one is uninitialised: every operation on it throws UninitializedObjectException.
///
/// CIMClass(object) and CIMInstance(object) give back the class or the instance, which the object shares with them.
class CIMObject {
  public:
    CIMObject() noexcept = default;
    CIMObject(const CIMClass& cimClass);
    CIMObject(const CIMInstance& instance);

    Boolean isClass() const;
    Boolean isInstance() const;

    /// The class's name, or that of the instance's class.
    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    /// Throws TypeMismatchException for the path of another class.
    void setPath(const CIMObjectPath& path);

    // The properties and qualifiers of the class or instance. Include CIMProperty.h or CIMQualifier.h to use them.

    Uint32 getPropertyCount() const;
    /// Throw IndexOutOfBoundsException for an index that is not below the count.
    CIMProperty getProperty(Uint32 index);
    CIMConstProperty getProperty(Uint32 index) const;
    /// The index of the property, PEG_NOT_FOUND when there is none of that name.
    Uint32 findProperty(const CIMName& name) const;
    Uint32 getQualifierCount() const;
    /// Throw IndexOutOfBoundsException for an index that is not below the count.
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    /// The index of the qualifier, PEG_NOT_FOUND when there is none of that name.
    Uint32 findQualifier(const CIMName& name) const;

    /// The CLASS or INSTANCE element of CIM-XML (DSP0201), without white space between elements.
    String toString() const;

    Boolean identical(const CIMObject& other) const;
    /// An independent copy, in which all parts are copied, too.
    CIMObject clone() const;
    /// Whether this is a default-constructed handle.
    Boolean isUninitialized() const noexcept { return !rep_; }

  private:
    friend struct detail::Unchecked;
    friend class CIMClass;
    friend class CIMInstance;

    struct Rep;
    detail::Handle<Rep> rep_;
};

/// A handle to a class or an instance that reads it only.
class CIMConstObject : private CIMObject {
  public:
    CIMConstObject() noexcept = default;
    CIMConstObject(const CIMObject& object) : CIMObject(object) {}

    using CIMObject::clone;
    using CIMObject::findProperty;
    using CIMObject::findQualifier;
    using CIMObject::getClassName;
    using CIMObject::getPath;
    using CIMObject::getPropertyCount;
    using CIMObject::getQualifierCount;
    using CIMObject::isClass;
    using CIMObject::isInstance;
    using CIMObject::isUninitialized;
    using CIMObject::toString;
    CIMConstProperty getProperty(Uint32 index) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Boolean identical(const CIMConstObject& other) const { return CIMObject::identical(other); }
};

} // namespace bundled
} // namespace Pegasus
