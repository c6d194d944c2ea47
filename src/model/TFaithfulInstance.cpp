#include "model/TFaithfulInstance.h"

#include <utility>

namespace NQORVYX20 {

TFaithfulInstance::TFaithfulInstance(boost::shared_ptr<ICIMClass> cls, TCIMReference path)
    : TCimHTTPInstance(cls, TCIMContext()), path_(std::move(path)) {}

TCIMReference TFaithfulInstance::GetReference(TCIMContext /*context*/) const { return path_; }

void TFaithfulInstance::KeepEmbedded(const std::string& key, std::vector<EmbeddedObject> objects) {
    embedded_[key] = std::move(objects);
}

const std::vector<EmbeddedObject>& TFaithfulInstance::Embedded(const std::string& key) const {
    static const std::vector<EmbeddedObject> kNone;
    const auto found = embedded_.find(key);
    return found == embedded_.end() ? kNone : found->second;
}

} // namespace NQORVYX20
