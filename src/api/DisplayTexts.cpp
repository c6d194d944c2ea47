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

#include <string_view>

namespace NQORVYX20 {

namespace {

/// Calls with the texts of the declaration's reading, the choice that the form and the instance make, and whether the
/// declaration keeps the texts.
template <typename Render>
auto WithTexts(const boost::shared_ptr<ICIMPropertyDecl const>& declaration, const DisplayForm& form,
               const ICIMInstance* instance, const Render& render) {
    if (!declaration) {
        LogError("TCimHTTPProperty: there are no texts for a value without a declaration");
        throw TVYXException(TVYXStatusCode::eTypeMismatch);
    }
    DisplayChoice choice{form.isUnscaled, form.saysWhatIsNot, nullptr};
    const TCimHTTPPropertyDecl* const own = TCimHTTPPropertyDecl::AsOwn(*declaration);
    if (own == nullptr) {
        return render(TextsOfOther(declaration), choice, false);
    }
    if (!own->IsFaithful()) {
        return render(own->GetCompatibleTexts(), choice, true);
    }
    const FaithfulTexts& texts = own->GetFaithfulTexts();
    if (instance == nullptr || !texts.MayHaveUnitOfInstance()) {
        return render(texts, choice, true);
    }
    const auto told = UnitToldBy(*instance, texts);
    choice.unit = told ? &*told : nullptr;
    return render(texts, choice, true);
}

/// Does as MakeDisplayTexts() for a list.
void MakeListed(const PropertyTexts& texts, const TCIMValue& value, const DisplayChoice& choice, TextMemory& memory) {
    memory.ends.clear();
    texts.AddElements(value, choice, memory);
    const std::string_view all = memory.made;
    std::size_t begin = 0;
    for (const std::size_t end : memory.ends) {
        memory.texts.push_back(all.substr(begin, end - begin));
        begin = end;
    }
}

bool IsListOfValues(const TCIMValue& value) { return value.IsArray() && !value.IsNull(); }

} // namespace

std::vector<std::string> DisplayTexts(const ICIMInstance& instance, const std::string& property,
                                      const DisplayForm& form) {
    const auto held = instance.GetProperty(property, TCIMContext());
    return DisplayTexts(held->GetDeclaration(TCIMContext()), held->GetValue(TCIMContext()), form, &instance);
}

std::vector<std::string> DisplayTexts(const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                                      const TCIMValue& value, const DisplayForm& form, const ICIMInstance* instance) {
    return WithTexts(declaration, form, instance,
                     [&](const PropertyTexts& texts, const DisplayChoice& choice, bool /*isKept*/) {
                         if (IsListOfValues(value)) {
                             return texts.OfElements(value, choice);
                         }
                         std::vector<std::string> one;
                         one.push_back(texts.Of(value, choice));
                         return one;
                     });
}

void MakeDisplayTexts(TextMemory& memory, const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                      const TCIMValue& value, const DisplayForm& form, const ICIMInstance* instance) {
    memory.texts.clear();
    memory.made.clear();
    WithTexts(declaration, form, instance, [&](const PropertyTexts& texts, const DisplayChoice& choice, bool isKept) {
        if (IsListOfValues(value)) {
            MakeListed(texts, value, choice, memory);
        } else if (const std::string* const found = isKept ? texts.Find(value, choice) : nullptr) {
            memory.texts.emplace_back(*found);
        } else {
            texts.Append(value, choice, memory.made);
            memory.texts.emplace_back(memory.made);
        }
    });
}

} // namespace NQORVYX20
