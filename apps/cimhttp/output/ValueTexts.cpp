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

void ValueTexts::Make(const ICIMInstance& instance, const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                      const TCIMValue& value, TextMemory& memory) const {
    try {
        access_->MakeTexts(memory, &instance, declaration, value, form_);
    } catch (const TVYXException&) {
        memory = {};
        for (const std::string& text : PlainTexts(value)) {
            memory.made += text;
            memory.ends.push_back(memory.made.size());
        }
        const std::string_view all = memory.made;
        std::size_t begin = 0;
        for (const std::size_t end : memory.ends) {
            memory.texts.push_back(all.substr(begin, end - begin));
            begin = end;
        }
    }
}

} // namespace cimhttp
