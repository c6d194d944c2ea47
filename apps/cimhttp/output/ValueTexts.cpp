#include "output/ValueTexts.h"

#include "access/PluginAccess.h"
#include "host/ICIMProperty.h"
#include "host/TVYXException.h"

namespace cimhttp {

using namespace NQORVYX20;

DisplayText ValueTexts::Of(const ICIMInstance& instance, const ICIMProperty& property) const {
    return Of(&instance, property.GetDeclaration(TCIMContext()), property.GetValue(TCIMContext()));
}

DisplayText ValueTexts::Of(const ICIMInstance* instance, const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                           const TCIMValue& value) const {
    try {
        return {value, access_->TextsOf(instance, declaration, value, form_)};
    } catch (const TVYXException&) {
        return {value, PlainTexts(value)};
    }
}

} // namespace cimhttp
