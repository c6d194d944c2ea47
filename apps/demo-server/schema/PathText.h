#pragma once

#include "schema/Value.h"

#include <string>

namespace demo {

/// A text that is the same for two paths exactly when they name the same object: letters of names, and the order of the
/// keys, make no difference. Values of keys are compared as they stand, so that they have to be in their normal form.
std::string PathText(const ObjectPath& path);

} // namespace demo
