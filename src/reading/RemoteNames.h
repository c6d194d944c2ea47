#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <string>
#include <vector>

namespace NQORVYX20 {

/// The normal forms of the property names of many instances, which mostly have the same properties in the same order:
/// the name at a place is normalised only when it differs in more than case from the one before.
class RemoteNames {
  public:
    /// The name at this place of an instance in its normal form. The reference is good until the next call. Throws
    /// TVYXException eInvalidName for an invalid name.
    const std::string& Normalized(Pegasus::Uint32 place, const Pegasus::CIMName& name);

  private:
    struct TName {
        Pegasus::CIMName given;
        std::string normalized;
    };

    std::vector<TName> names_;
};

} // namespace NQORVYX20
