#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Handle.h>

namespace Pegasus {

class CIMClass;
class CIMInstance;

/// A class or an instance: what an association leads to, and the value of a CIM object. A handle; a default-constructed
/// one is uninitialised: every operation on it throws UninitializedObjectException.
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
    void setPath(const CIMObjectPath& path);

    Boolean identical(const CIMObject& other) const;
    /// Whether this is a default-constructed handle.
    Boolean isUninitialized() const noexcept { return !rep_; }

  private:
    friend class CIMClass;
    friend class CIMInstance;

    struct Rep;
    detail::Handle<Rep> rep_;
};

} // namespace Pegasus
