#pragma once

#include "display/DisplayChoice.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace NQORVYX20 {

class ICIMInstance;
class ICIMPropertyDecl;
class TCIMValue;

/// The texts for people of a property's value: one for each element of an array that is not null, otherwise one. They
/// are those of FaithfulTexts, in the unit that `instance` tells where it does; `instance` may be null. Throws
/// TVYXException with the code of a look-up of a qualifier that failed.
std::vector<std::string> TextsIn(const ICIMInstance* instance,
                                 const boost::shared_ptr<ICIMPropertyDecl const>& declaration, const TCIMValue& value,
                                 DisplayChoice choice);

} // namespace NQORVYX20
