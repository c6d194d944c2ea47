#include "model/DeclarationTexts.h"

#include "display/DisplayQualifiers.h"
#include "display/ValueMapTable.h"

namespace NQORVYX20 {

boost::shared_ptr<const ValueMapTable> FindValueMapTable(const boost::shared_ptr<ICIMPropertyDecl const>& declaration) {
    const TCimHTTPPropertyDecl* const own = TCimHTTPPropertyDecl::AsOwn(*declaration);
    return own != nullptr ? own->GetValueMapTable()
                          : MakeValueMapTable(TCimHTTPPropertyDecl::DisplayQualifiersOf(declaration));
}

CompatibleTexts TextsOfOther(const boost::shared_ptr<ICIMPropertyDecl const>& declaration) {
    return {*declaration, TCimHTTPPropertyDecl::DisplayQualifiersOf(declaration)};
}

} // namespace NQORVYX20
