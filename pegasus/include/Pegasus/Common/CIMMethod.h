#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMType.h>

namespace Pegasus {
inline namespace bundled {

/// The declaration of a method: a handle. A default-constructed one is uninitialised: every operation on it throws
/// UninitializedObjectException.
class CIMMethod {
  public:
    CIMMethod() noexcept = default;
    CIMMethod(const CIMName& name, CIMType type, const CIMName& classOrigin = CIMName(), Boolean propagated = false);

    const CIMName& getName() const;
    /// The type of what the method returns.
    CIMType getType() const;
    const CIMName& getClassOrigin() const;
    Boolean getPropagated() const;

    /// Throws AlreadyExistsException when there is one of that name.
    CIMMethod& addParameter(const CIMParameter& parameter);
    Uint32 getParameterCount() const;
    /// Throw IndexOutOfBoundsException for an index that is not below the count.
    CIMParameter getParameter(Uint32 index);
    CIMConstParameter getParameter(Uint32 index) const;
    /// The index of the parameter, PEG_NOT_FOUND when there is none of that name.
    Uint32 findParameter(const CIMName& name) const;

    /// Throws AlreadyExistsException when there is one of that name.
    CIMMethod& addQualifier(const CIMQualifier& qualifier);
    Uint32 getQualifierCount() const;
    /// Throw IndexOutOfBoundsException for an index that is not below the count.
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    /// The index of the qualifier, PEG_NOT_FOUND when there is none of that name.
    Uint32 findQualifier(const CIMName& name) const;

    Boolean identical(const CIMMethod& other) const;
    /// An independent copy, in which all parts are copied, too.
    CIMMethod clone() const;
    /// Whether this is a default-constructed handle.
    Boolean isUninitialized() const noexcept { return !rep_; }

  private:
    friend struct detail::Unchecked;

    struct Rep;
    detail::Handle<Rep> rep_;
};

/// A handle to a method that reads it only.
class CIMConstMethod : private CIMMethod {
  public:
    CIMConstMethod() noexcept = default;
    CIMConstMethod(const CIMMethod& method) : CIMMethod(method) {}

    using CIMMethod::clone;
    using CIMMethod::findParameter;
    using CIMMethod::findQualifier;
    using CIMMethod::getClassOrigin;
    using CIMMethod::getName;
    using CIMMethod::getParameterCount;
    using CIMMethod::getPropagated;
    using CIMMethod::getQualifierCount;
    using CIMMethod::getType;
    using CIMMethod::isUninitialized;
    CIMConstParameter getParameter(Uint32 index) const { return CIMMethod::getParameter(index); }
    CIMConstQualifier getQualifier(Uint32 index) const { return CIMMethod::getQualifier(index); }
    Boolean identical(const CIMConstMethod& other) const { return CIMMethod::identical(other); }
};

} // namespace bundled
} // namespace Pegasus
