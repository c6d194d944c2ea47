#pragma once

#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMScope.h>
#include <Pegasus/Common/CIMValue.h>

namespace Pegasus {
inline namespace bundled {

/// The declaration of a qualifier: its type and default value, its scope and its flavor. A handle; a
/// default-constructed one is uninitialised: every operation on it throws UninitializedObjectException.
class CIMQualifierDecl {
  public:
    CIMQualifierDecl() noexcept = default;
    /// The flavor is CIMFlavor::DEFAULTS where none is given; an `arraySize` of 0 means "any".
    CIMQualifierDecl(const CIMName& name, const CIMValue& value, const CIMScope& scope,
                     const CIMFlavor& flavor = CIMFlavor::DEFAULTS, Uint32 arraySize = 0);

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    const CIMValue& getValue() const;
    const CIMScope& getScope() const;
    const CIMFlavor& getFlavor() const;
    Uint32 getArraySize() const;
    /// An independent copy, in which all parts are copied, too.
    CIMQualifierDecl clone() const;
    /// Whether this is a default-constructed handle.
    Boolean isUninitialized() const noexcept { return !rep_; }

  private:
    struct Rep;
    detail::Handle<Rep> rep_;
};

} // namespace bundled
} // namespace Pegasus
