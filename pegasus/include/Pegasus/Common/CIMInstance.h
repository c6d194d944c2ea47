#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Handle.h>

namespace Pegasus {
inline namespace bundled {

class CIMClass;
class CIMConstProperty;
class CIMConstQualifier;
class CIMProperty;
class CIMQualifier;

/// An instance of a class: a handle; copies refer to the same instance. A default-constructed one is uninitialised:
/// every operation on it throws UninitializedObjectException.
class CIMInstance {
  public:
    CIMInstance() noexcept = default;
    explicit CIMInstance(const CIMName& className);
    /// The instance that an object is. Throws DynamicCastFailedException when it is a class.
    explicit CIMInstance(const CIMObject& object);

    const CIMName& getClassName() const;
    /// The class name alone until setPath() gives more.
    const CIMObjectPath& getPath() const;
    /// Throws TypeMismatchException for the path of an instance of another class.
    void setPath(const CIMObjectPath& path);
    /// The path made of the instance's own keys: its class, and the values of the properties that the definition of its
    /// class declares as keys. Throws NoSuchPropertyException when the instance lacks one of them or its value is null,
    /// TypeMismatchException when the definition is that of another class, or a value is of a type that keys cannot
    /// have.
    CIMObjectPath buildPath(const CIMClass& cimClass) const;

    /// Throws AlreadyExistsException when there is one of that name.
    CIMInstance& addQualifier(const CIMQualifier& qualifier);
    Uint32 getQualifierCount() const;
    /// Throw IndexOutOfBoundsException for an index that is not below the count.
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    /// The index of the qualifier, PEG_NOT_FOUND when there is none of that name.
    Uint32 findQualifier(const CIMName& name) const;

    /// Throws AlreadyExistsException when there is one of that name.
    CIMInstance& addProperty(const CIMProperty& property);
    Uint32 getPropertyCount() const;
    /// Throw IndexOutOfBoundsException for an index that is not below the count.
    CIMProperty getProperty(Uint32 index);
    CIMConstProperty getProperty(Uint32 index) const;
    /// The index of the property, PEG_NOT_FOUND when there is none of that name.
    Uint32 findProperty(const CIMName& name) const;

    /// Whether both have the same class name, path, and qualifiers and properties in the same order.
    Boolean identical(const CIMInstance& other) const;
    /// An independent copy, in which all parts are copied, too.
    CIMInstance clone() const;
    /// Whether this is a default-constructed handle.
    Boolean isUninitialized() const noexcept { return !rep_; }

  private:
    friend struct detail::Unchecked;

    struct Rep;
    detail::Handle<Rep> rep_;
};

} // namespace bundled
} // namespace Pegasus

// After the class, because properties have values, which can be instances.
#include <Pegasus/Common/CIMProperty.h>

namespace Pegasus {
inline namespace bundled {

/// A handle to an instance that reads it only.
class CIMConstInstance : private CIMInstance {
  public:
    CIMConstInstance() noexcept = default;
    CIMConstInstance(const CIMInstance& instance) : CIMInstance(instance) {}

    using CIMInstance::buildPath;
    using CIMInstance::clone;
    using CIMInstance::findProperty;
    using CIMInstance::findQualifier;
    using CIMInstance::getClassName;
    using CIMInstance::getPath;
    using CIMInstance::getPropertyCount;
    using CIMInstance::getQualifierCount;
    using CIMInstance::isUninitialized;
    CIMConstProperty getProperty(Uint32 index) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Boolean identical(const CIMConstInstance& other) const { return CIMInstance::identical(other); }
};

} // namespace bundled
} // namespace Pegasus
