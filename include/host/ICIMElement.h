#pragma once

#include "host/TCIMContext.h"

namespace NQORVYX20 {

/// What classes and instances have in common.
class ICIMElement {
  public:
    virtual ~ICIMElement() = default;

    virtual void Validate(TCIMContext context) const = 0;
};

} // namespace NQORVYX20
