#pragma once

#include "host/TCIMContext.h"

namespace NQORVYX20 {

/// What classes and instances have in common.
class ICIMElement {
  public:
    virtual ~ICIMElement() = default;

    /// Throws TVYXException with the code of what is wrong when the element breaks the rules of its declaration.
    virtual void Validate(TCIMContext context) const = 0;
};

} // namespace NQORVYX20
