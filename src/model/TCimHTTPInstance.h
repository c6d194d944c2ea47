#pragma once

#include "host/TInmemInstance.h"

namespace NQORVYX20 {

/// An instance of a remote class. Its values are kept by the host's in-memory instance.
class TCimHTTPInstance : public TInmemInstance {
  public:
    TCimHTTPInstance(boost::shared_ptr<ICIMClass> cls, TCIMContext context);

    using TInmemInstance::operator=;

    /// Files the instance in the cache of its class. The class must be a TCimHTTPClass: where assertions are on,
    /// another one ends in an assertion, otherwise in TVYXException eTypeMismatch.
    void AddToNamespace(TCIMContext context) override;
};

} // namespace NQORVYX20
