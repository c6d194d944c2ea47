#pragma once

#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

namespace Pegasus {

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
    void setPath(const CIMObjectPath& path);
    /// Whether the class has the qualifier Association with the value true.
    Boolean isAssociation() const;
    /// Whether the class has the qualifier Abstract with the value true.
    Boolean isAbstract() const;

    CIMClass& addQualifier(const CIMQualifier& qualifier);
    Uint32 getQualifierCount() const;
    /// Throws IndexOutOfBoundsException.
    CIMQualifier getQualifier(Uint32 index) const;
    /// The index of the qualifier, PEG_NOT_FOUND when there is none of the name.
    Uint32 findQualifier(const CIMName& name) const;

    CIMClass& addProperty(const CIMProperty& property);
    Uint32 getPropertyCount() const;
    /// Throws IndexOutOfBoundsException.
    CIMProperty getProperty(Uint32 index) const;
    /// The index of the property, PEG_NOT_FOUND when there is none of the name.
    Uint32 findProperty(const CIMName& name) const;

    CIMClass& addMethod(const CIMMethod& method);
    Uint32 getMethodCount() const;
    /// Throws IndexOutOfBoundsException.
    CIMMethod getMethod(Uint32 index) const;
    /// The index of the method, PEG_NOT_FOUND when there is none of the name.
    Uint32 findMethod(const CIMName& name) const;

    Boolean identical(const CIMClass& other) const;
    /// Whether this is a default-constructed handle.
    Boolean isUninitialized() const noexcept { return !rep_; }

  private:
    struct Rep;
    detail::Handle<Rep> rep_;
};

} // namespace Pegasus
