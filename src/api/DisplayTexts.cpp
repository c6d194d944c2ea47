#include "cimhttp/DisplayTexts.h"

#include "convert/CoreLog.h"
#include "display/FaithfulTexts.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "host/TVYXException.h"
#include "model/DeclarationTexts.h"
#include "model/InstanceUnits.h"
#include "model/TCimHTTPPropertyDecl.h"

#include <optional>

namespace NQORVYX20 {

namespace {

std::vector<std::string> TextsBy(const PropertyTexts& texts, const TCIMValue& value, const DisplayChoice& choice) {
    return value.IsArray() && !value.IsNull() ? texts.OfElements(value, choice)
                                              : std::vector<std::string>{texts.Of(value, choice)};
}

} // namespace

std::vector<std::string> DisplayTexts(const ICIMInstance& instance, const std::string& property,
                                      const DisplayForm& form) {
    const auto held = instance.GetProperty(property, TCIMContext());
    return DisplayTexts(held->GetDeclaration(TCIMContext()), held->GetValue(TCIMContext()), form, &instance);
}

std::vector<std::string> DisplayTexts(const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                                      const TCIMValue& value, const DisplayForm& form, const ICIMInstance* instance) {
    if (!declaration) {
        LogError("TCimHTTPProperty: there are no texts for a value without a declaration");
        throw TVYXException(TVYXStatusCode::eTypeMismatch);
    }
    DisplayChoice choice{form.isUnscaled, form.saysWhatIsNot, nullptr};
    const TCimHTTPPropertyDecl* const own = TCimHTTPPropertyDecl::AsOwn(*declaration);
    if (own == nullptr || !own->IsFaithful()) {
        return TextsBy(CompatibleTextsOf(declaration), value, choice);
    }
    const FaithfulTexts& texts = own->GetFaithfulTexts();
    const auto told = instance != nullptr ? UnitToldBy(*instance, texts) : std::nullopt;
    choice.unit = told ? &*told : nullptr;
    return TextsBy(texts, value, choice);
}

} // namespace NQORVYX20
