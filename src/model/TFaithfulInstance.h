#pragma once

#include "cimhttp/EmbeddedObject.h"
#include "host/TCIMReference.h"
#include "model/TCimHTTPInstance.h"

#include <map>
#include <string>
#include <vector>

namespace NQORVYX20 {

/// An instance under the path that the server gives it.
class TFaithfulInstance : public TCimHTTPInstance {
  public:
    TFaithfulInstance(boost::shared_ptr<ICIMClass> cls, TCIMReference path);

    using TCimHTTPInstance::operator=;

    /// The server's path: class, keys, and host and namespace as far as it names them.
    TCIMReference GetReference(TCIMContext context) const override;
    const TCIMReference& Path() const { return path_; }

    /// The embedded objects that are a property's value, by the name's normal form.
    void KeepEmbedded(const std::string& key, std::vector<EmbeddedObject> objects);

    bool HasEmbedded() const { return !embedded_.empty(); }

    /// None for a property with another value.
    const std::vector<EmbeddedObject>& Embedded(const std::string& key) const;

  private:
    TCIMReference path_;
    std::map<std::string, std::vector<EmbeddedObject>> embedded_;
};

} // namespace NQORVYX20
