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
    TakeProperties(instance);
    const bool isNew = FitNames();
    if (isNew) {
        MarkDoubled();
    }
    if (isNew || class_ != cls || revision_ != cls->PropertyRevision()) {
        class_ = cls;
        revision_ = cls->PropertyRevision();
        FindDeclarations();
    }
}

void InstanceShape::TakeProperties(Pegasus::CIMInstance& instance) {
    const Pegasus::Uint32 count = instance.getPropertyCount();
    properties_.clear();
    properties_.reserve(count);
    for (Pegasus::Uint32 i = 0; i < count; ++i) {
        properties_.push_back(instance.getProperty(i));
    }
}

/// Whether any name is another than before.
bool InstanceShape::FitNames() {
    bool isNew = names_.size() != properties_.size();
    names_.resize(properties_.size());
    for (std::size_t i = 0; i < properties_.size(); ++i) {
        const Pegasus::CIMName& name = properties_[i].getName();
        if (!names_[i].given.equal(name)) {
            names_[i] = {name, NormalizedOrEmpty(name), false, {}};
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
