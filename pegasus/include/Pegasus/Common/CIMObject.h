#pragma once

#include <Pegasus/Common/Handle.h>

namespace Pegasus {

class CIMClass;
class CIMInstance;

/// A class or an instance, the value of a CIM object. A handle; a default-constructed one is uninitialised: every
/// operation on it throws UninitializedObjectException.
class CIMObject {
  public:
    CIMObject() noexcept = default;
    CIMObject(const CIMClass& cimClass);
    CIMObject(const CIMInstance& instance);

    Boolean isClass() const;
    Boolean isInstance() const;
    /// Throws TypeMismatchException when the object is an instance.
    const CIMClass& getClass() const;
    /// Throws TypeMismatchException when the object is a class.
    const CIMInstance& getInstance() const;

    Boolean identical(const CIMObject& other) const;
    /// Whether this is a default-constructed handle.
    Boolean isUninitialized() const noexcept { return !rep_; }

  private:
    struct Rep;
    detail::Handle<Rep> rep_;
};

} // namespace Pegasus
