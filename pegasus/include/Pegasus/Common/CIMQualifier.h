#pragma once

#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMValue.h>

namespace Pegasus {
inline namespace bundled {

/// A qualifier of a class, property, method or parameter: a handle. A default-constructed one is uninitialised: every
/// operation on it throws UninitializedObjectException.
class CIMQualifier {
  public:
    CIMQualifier() noexcept = default;
    CIMQualifier(CIMName name, CIMValue value, const CIMFlavor& flavor = CIMFlavor(), Boolean propagated = false);

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    const CIMValue& getValue() const;
    const CIMFlavor& getFlavor() const;
    /// Whether the qualifier comes from a superclass.
    Boolean getPropagated() const;

    Boolean identical(const CIMQualifier& other) const;
    /// An independent copy, in which all parts are copied, too.
    CIMQualifier clone() const;
    /// Whether this is a default-constructed handle.
    Boolean isUninitialized() const noexcept { return !rep_; }

  private:
    struct Rep;
    detail::Handle<Rep> rep_;
};

/// A handle to a qualifier that reads it only.
class CIMConstQualifier : private CIMQualifier {
  public:
    CIMConstQualifier() noexcept = default;
    CIMConstQualifier(const CIMQualifier& qualifier) : CIMQualifier(qualifier) {}

    using CIMQualifier::clone;
    using CIMQualifier::getFlavor;
    using CIMQualifier::getName;
    using CIMQualifier::getPropagated;
    using CIMQualifier::getType;
    using CIMQualifier::getValue;
    using CIMQualifier::isArray;
    using CIMQualifier::isUninitialized;
    Boolean identical(const CIMConstQualifier& other) const { return CIMQualifier::identical(other); }
};

} // namespace bundled
} // namespace Pegasus
