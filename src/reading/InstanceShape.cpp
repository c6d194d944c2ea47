#include "reading/InstanceShape.h"

#include "convert/NormalName.h"
#include "convert/RemoteText.h"
#include "host/TVYXException.h"

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

void InstanceShape::Fit(Pegasus::CIMInstance& instance) {
    const Pegasus::Uint32 count = instance.getPropertyCount();
    bool isNew = names_.size() != count;
    names_.resize(count);
    for (Pegasus::Uint32 i = 0; i < count; ++i) {
        const auto property = instance.getProperty(i);
        if (!names_[i].given.equal(property.getName())) {
            names_[i] = {property.getName(), NormalizedOrEmpty(property.getName()), false};
            isNew = true;
        }
    }
    if (isNew) {
        MarkDoubled();
    }
}

void InstanceShape::MarkDoubled() {
    std::set<std::string> later;
    for (auto name = names_.rbegin(); name != names_.rend(); ++name) {
        name->comesAgain = !name->normalized.empty() && !later.insert(name->normalized).second;
    }
}

} // namespace NQORVYX20
