#include "model/TFaithfulInstance.h"

#include <utility>

namespace NQORVYX20 {

TFaithfulInstance::TFaithfulInstance(boost::shared_ptr<ICIMClass> cls, TCIMReference path)
    : TCimHTTPInstance(cls, TCIMContext()), fPath(std::move(path)) {}

TCIMReference TFaithfulInstance::GetReference(TCIMContext /*context*/) const { return fPath; }

void TFaithfulInstance::KeepEmbedded(const std::string& key, std::vector<EmbeddedObject> objects) {
    fEmbedded[key] = std::move(objects);
}

const std::vector<EmbeddedObject>& TFaithfulInstance::Embedded(const std::string& key) const {
    static const std::vector<EmbeddedObject> kNone;
    const auto found = fEmbedded.find(key);
    return found == fEmbedded.end() ? kNone : found->second;
}

} // namespace NQORVYX20
