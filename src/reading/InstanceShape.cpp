#include "reading/InstanceShape.h"

#include "convert/NormalName.h"
#include "convert/RemoteText.h"
#include "host/TVYXException.h"
#include "model/TCimHTTPClass.h"

#include <set>

namespace NQORVYX20 {

namespace {

std::string NormalizedOrEmpty(const Pegasus::CIMName& name) {
    try {
        return NormalizeName(ToStdString(name), NameRule::kCim);
    } catch (const TVYXException&) {
        return {};
    }
}

} // namespace

void InstanceShape::Fit(Pegasus::CIMInstance& instance, const boost::shared_ptr<const TCimHTTPClass>& cls) {
    const bool isNew = FitNames(instance);
    if (isNew) {
        MarkDoubled();
    }
    if (isNew || class_ != cls || revision_ != cls->PropertyRevision()) {
        class_ = cls;
        revision_ = cls->PropertyRevision();
        FindDeclarations();
    }
}

/// Whether any name is another than before.
bool InstanceShape::FitNames(Pegasus::CIMInstance& instance) {
    const Pegasus::Uint32 count = instance.getPropertyCount();
    bool isNew = names_.size() != count;
    names_.resize(count);
    for (Pegasus::Uint32 i = 0; i < count; ++i) {
        const auto property = instance.getProperty(i);
        if (!names_[i].given.equal(property.getName())) {
            names_[i] = {property.getName(), NormalizedOrEmpty(property.getName()), false, {}};
            isNew = true;
        }
    }
    return isNew;
}

void InstanceShape::MarkDoubled() {
    std::set<std::string> later;
    for (auto name = names_.rbegin(); name != names_.rend(); ++name) {
        name->comesAgain = !name->normalized.empty() && !later.insert(name->normalized).second;
    }
}

void InstanceShape::FindDeclarations() {
    for (TName& name : names_) {
        name.declaration.reset();
        if (!name.normalized.empty()) {
            name.declaration = class_->GetPropertyDecl(name.normalized, TCIMContext());
        }
    }
}

} // namespace NQORVYX20
