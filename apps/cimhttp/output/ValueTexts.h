#pragma once

#include "HostTypes.h"
#include "cimhttp/DisplayTexts.h"
#include "output/DisplayText.h"

#include <boost/shared_ptr.hpp>

namespace cimhttp {

class PluginAccess;

/// Makes what values say to people, in the form that the user wants.
class ValueTexts {
  public:
    /// `access` must outlive the object.
    explicit ValueTexts(const PluginAccess& access, NQORVYX20::DisplayForm form = {}) : access_(&access), form_(form) {}

    const PluginAccess& Access() const { return *access_; }

    /// Of a property of an instance, which may tell the unit.
    DisplayText Of(const NQORVYX20::ICIMInstance& instance, const NQORVYX20::ICIMProperty& property) const;

    /// Of a value that a property of the instance has, or had. There need not be an instance.
    DisplayText Of(const NQORVYX20::ICIMInstance* instance,
                   const boost::shared_ptr<NQORVYX20::ICIMPropertyDecl const>& declaration,
                   const NQORVYX20::TCIMValue& value) const;

    /// Puts those of a value that a property of the instance has in the place of what is in `memory.texts`: one,
    /// and for an array that is not null one for each element.
    void Make(const NQORVYX20::ICIMInstance& instance,
              const boost::shared_ptr<NQORVYX20::ICIMPropertyDecl const>& declaration,
              const NQORVYX20::TCIMValue& value, NQORVYX20::TextMemory& memory) const;

  private:
    const PluginAccess* access_;
    NQORVYX20::DisplayForm form_;
};

} // namespace cimhttp
