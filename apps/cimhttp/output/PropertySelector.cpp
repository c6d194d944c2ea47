#include "output/PropertySelector.h"

#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMPropertyDecl.h"
#include "text/Names.h"

#include <algorithm>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

bool IsNameBefore(const boost::shared_ptr<ICIMPropertyDecl>& one, const boost::shared_ptr<ICIMPropertyDecl>& other) {
    return NameBefore()(one->GetName(TCIMContext()), other->GetName(TCIMContext()));
}

} // namespace

const Properties& PropertySelector::PropertiesFor(const ICIMInstance& instance) {
    auto cls = instance.GetClass(TCIMContext());
    if (cls != lastClass_) {
        properties_ = Selected(*cls);
        lastClass_ = std::move(cls);
    }
    return properties_;
}

Properties PropertySelector::Selected(const ICIMClass& cls) const {
    Properties selected;
    if (!names_) {
        selected = PropertiesOf(cls);
    } else {
        for (const std::string& name : *names_) {
            if (auto property = cls.GetPropertyDecl(name, TCIMContext())) {
                selected.push_back(std::move(property));
            }
        }
    }
    if (order_ == Order::kByName) {
        std::sort(selected.begin(), selected.end(), IsNameBefore);
    }
    return selected;
}

} // namespace cimhttp
