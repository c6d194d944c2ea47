#include "cimhttp/EmbeddedObject.h"

#include "convert/NormalName.h"
#include "model/TFaithfulInstance.h"

namespace NQORVYX20 {

std::vector<EmbeddedObject> EmbeddedObjectsOf(const ICIMInstance& instance, const std::string& property) {
    const auto* const faithful = dynamic_cast<const TFaithfulInstance*>(&instance);
    return faithful == nullptr ? std::vector<EmbeddedObject>()
                               : faithful->Embedded(NormalizeName(property, NameRule::kCim));
}

} // namespace NQORVYX20
