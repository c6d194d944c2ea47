#include "output/SelectedValues.h"

#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;

/// From this part on, walking all properties takes less time than looking those up by name that are wanted.
constexpr std::size_t kLeastPart = 4;

std::size_t DeclarationCount(const ICIMClass& cls) {
    std::size_t count = 0;
    cls.EnumeratePropertyDecls([&count](const auto& /*declaration*/) { return ++count != 0; }, TCIMContext());
    return count;
}

} // namespace

bool SelectedValues::TurnTo(ICIMInstance& instance) {
    instance_ = &instance;
    auto cls = instance.GetClass(TCIMContext());
    if (cls == class_) {
        return false;
    }
    const Properties& selected = selector_.PropertiesFor(instance);
    declarations_.assign(selected.begin(), selected.end());
    areMost_ = declarations_.size() * kLeastPart >= DeclarationCount(*cls);
    class_ = std::move(cls);
    return true;
}

void SelectedValues::Visit(const Take& take) const {
    for (std::size_t place = areMost_ ? VisitInOrder(take) : 0; place < declarations_.size(); ++place) {
        const std::string& name = declarations_[place]->GetName(TCIMContext());
        take(place, instance_->GetProperty(name, TCIMContext())->GetValue(TCIMContext()));
    }
}

/// Visits as many as come in the order of the instance's properties, and returns how many these are.
std::size_t SelectedValues::VisitInOrder(const Take& take) const {
    std::size_t place = 0;
    instance_->EnumerateProperties(
        [&](const boost::shared_ptr<ICIMProperty>& property) {
            if (place < declarations_.size() && property->GetDeclaration(TCIMContext()) == declarations_[place]) {
                take(place, property->GetValue(TCIMContext()));
                ++place;
            }
            return place < declarations_.size();
        },
        TCIMContext());
    return place;
}

} // namespace cimhttp
