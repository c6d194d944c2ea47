#include "model/InstanceTexts.h"

#include "display/DisplayQualifiers.h"
#include "display/FaithfulTexts.h"
#include "host/ICIMPropertyDecl.h"
#include "model/InstanceUnits.h"
#include "model/TCimHTTPPropertyDecl.h"

#include <optional>

namespace NQORVYX20 {

namespace {

std::vector<std::string> TextsOf(const FaithfulTexts& texts, const TCIMValue& value, const DisplayChoice& choice) {
    return value.IsNull() ? std::vector<std::string>{texts.Of(value, choice)} : texts.OfElements(value, choice);
}

} // namespace

std::vector<std::string> TextsIn(const ICIMInstance* instance,
                                 const boost::shared_ptr<ICIMPropertyDecl const>& declaration, const TCIMValue& value,
                                 DisplayChoice choice) {
    const TCimHTTPPropertyDecl* const own = TCimHTTPPropertyDecl::AsOwn(*declaration);
    if (own == nullptr || !own->IsFaithful()) { // its texts are not kept
        return TextsOf(
            {{}, declaration->GetType(TCIMContext()), TCimHTTPPropertyDecl::DisplayQualifiersOf(declaration)}, value,
            choice);
    }
    const FaithfulTexts& texts = own->GetFaithfulTexts();
    const auto told = instance != nullptr ? UnitToldBy(*instance, texts) : std::nullopt;
    choice.unit = told ? &*told : nullptr;
    return TextsOf(texts, value, choice);
}

} // namespace NQORVYX20
