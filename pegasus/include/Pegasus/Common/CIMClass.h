#pragma once

#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

namespace Pegasus {
inline namespace bundled {

/// The definition of a class: a handle. A default-constructed one is uninitialised: every operation on it throws
/// UninitializedObjectException.
class CIMClass {
  public:
    CIMClass() noexcept = default;
    /// A class without superclass is a top class.
    explicit CIMClass(const CIMName& className, const CIMName& superClass = CIMName());
    /// The class that an object is. Throws DynamicCastFailedException when it is an instance.
    explicit CIMClass(const CIMObject& object);

    const CIMName& getClassName() const;
    /// Null for a top class.
    const CIMName& getSuperClassName() const;
    /// The class name alone until setPath() gives more.
    const CIMObjectPath& getPath() const;
    /// Throws TypeMismatchException for the path of another class.
    void setPath(const CIMObjectPath& path);
    /// Whether the class has the qualifier Association with the value true.
    Boolean isAssociation() const;
    /// Whether the class has the qualifier Abstract with the value true.
    Boolean isAbstract() const;
    /// Whether a property has the qualifier Key with the value true.
    Boolean hasKeys() const;
    /// Appends the names of those properties.
    void getKeyNames(Array<CIMName>& names) const;

    /// Throws AlreadyExistsException when there is one of that name.
    CIMClass& addQualifier(const CIMQualifier& qualifier);
    Uint32 getQualifierCount() const;
    /// Throw IndexOutOfBoundsException for an index that is not below the count.
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    /// The index of the qualifier, PEG_NOT_FOUND when there is none of that name.
    Uint32 findQualifier(const CIMName& name) const;

    /// Throws AlreadyExistsException when there is one of that name.
    CIMClass& addProperty(const CIMProperty& property);
    Uint32 getPropertyCount() const;
    /// Throw IndexOutOfBoundsException for an index that is not below the count.
    CIMProperty getProperty(Uint32 index);
    CIMConstProperty getProperty(Uint32 index) const;
    /// The index of the property, PEG_NOT_FOUND when there is none of that name.
    Uint32 findProperty(const CIMName& name) const;

    /// Throws AlreadyExistsException when there is one of that name.
    CIMClass& addMethod(const CIMMethod& method);
    Uint32 getMethodCount() const;
    /// Throw IndexOutOfBoundsException for an index that is not below the count.
    CIMMethod getMethod(Uint32 index);
    CIMConstMethod getMethod(Uint32 index) const;
    /// The index of the method, PEG_NOT_FOUND when there is none of that name.
    Uint32 findMethod(const CIMName& name) const;

    Boolean identical(const CIMClass& other) const;
    /// An independent copy, in which all parts are copied, too.
    CIMClass clone() const;
    /// Whether this is a default-constructed handle.
    Boolean isUninitialized() const noexcept { return !rep_; }

  private:
    friend struct detail::Unchecked;

    struct Rep;
    detail::Handle<Rep> rep_;
};

/// A handle to a class that reads it only.
class CIMConstClass : private CIMClass {
  public:
    CIMConstClass() noexcept = default;
    CIMConstClass(const CIMClass& cimClass) : CIMClass(cimClass) {}

    using CIMClass::clone;
    using CIMClass::findMethod;
    using CIMClass::findProperty;
    using CIMClass::findQualifier;
    using CIMClass::getClassName;
    using CIMClass::getKeyNames;
    using CIMClass::getMethodCount;
    using CIMClass::getPath;
    using CIMClass::getPropertyCount;
    using CIMClass::getQualifierCount;
    using CIMClass::getSuperClassName;
    using CIMClass::hasKeys;
    using CIMClass::isAbstract;
    using CIMClass::isAssociation;
    using CIMClass::isUninitialized;
    CIMConstMethod getMethod(Uint32 index) const { return CIMClass::getMethod(index); }
    CIMConstProperty getProperty(Uint32 index) const { return CIMClass::getProperty(index); }
    CIMConstQualifier getQualifier(Uint32 index) const { return CIMClass::getQualifier(index); }
    Boolean identical(const CIMConstClass& other) const { return CIMClass::identical(other); }
};

} // namespace bundled
} // namespace Pegasus
