#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Handle.h>

namespace Pegasus {

class CIMProperty;

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
    void setPath(const CIMObjectPath& path);

    CIMInstance& addProperty(const CIMProperty& property);
    Uint32 getPropertyCount() const;
    /// Throws IndexOutOfBoundsException.
    CIMProperty getProperty(Uint32 index) const;
    /// The index of the property, PEG_NOT_FOUND when there is none of the name.
    Uint32 findProperty(const CIMName& name) const;

    /// Whether both have the same class name, path, and properties in the same order.
    Boolean identical(const CIMInstance& other) const;
    /// Whether this is a default-constructed handle.
    Boolean isUninitialized() const noexcept { return !rep_; }

  private:
    struct Rep;
    detail::Handle<Rep> rep_;
};

} // namespace Pegasus

// Behind the class, because properties have values, which can be instances.
#include <Pegasus/Common/CIMProperty.h>
