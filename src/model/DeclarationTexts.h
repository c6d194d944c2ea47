#pragma once

#include "display/CompatibleTexts.h"
#include "display/FaithfulTexts.h"
#include "model/TCimHTTPPropertyDecl.h"

#include <boost/shared_ptr.hpp>

namespace NQORVYX20 {

class ValueMapTable;

// What the compatible reading makes of a declaration, which may be one of another provider.

/// Its value map; an empty pointer when it has none.
boost::shared_ptr<const ValueMapTable> FindValueMapTable(const boost::shared_ptr<ICIMPropertyDecl const>& declaration);

/// The compatible texts of a declaration of another provider, which are made anew each time. The declaration must
/// outlive them.
CompatibleTexts TextsOfOther(const boost::shared_ptr<ICIMPropertyDecl const>& declaration);

/// Calls with the compatible texts of a declaration, own or not.
template <typename Render>
auto WithCompatibleTexts(const boost::shared_ptr<ICIMPropertyDecl const>& declaration, const Render& render) {
    const TCimHTTPPropertyDecl* const own = TCimHTTPPropertyDecl::AsOwn(*declaration);
    return own != nullptr ? render(own->GetCompatibleTexts()) : render(TextsOfOther(declaration));
}

} // namespace NQORVYX20
