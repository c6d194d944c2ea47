#pragma once

#include "display/CompatibleTexts.h"

#include <boost/shared_ptr.hpp>

namespace NQORVYX20 {

class ICIMPropertyDecl;
class ValueMapTable;

// What the compatible reading makes of a declaration, which may be one of another provider.

/// Its value map; an empty pointer when it has none.
boost::shared_ptr<const ValueMapTable> FindValueMapTable(const boost::shared_ptr<ICIMPropertyDecl const>& declaration);

/// Its texts for people. The pointer must outlive them.
CompatibleTexts CompatibleTextsOf(const boost::shared_ptr<ICIMPropertyDecl const>& declaration);

} // namespace NQORVYX20
