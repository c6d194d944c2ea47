#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <string>
#include <vector>

namespace NQORVYX20 {

/// The names of an instance's properties, looked at once for many instances, which mostly have the same properties in
/// the same order.
class InstanceShape {
  public:
    struct TName {
        Pegasus::CIMName given;
        std::string normalized;  ///< empty for a name that the host cannot keep
        bool comesAgain = false; ///< a later property has the same name
    };

    /// Takes over the names of an instance.
    void Fit(Pegasus::CIMInstance& instance);

    /// The name of the property at this place of the instance that was fitted last.
    const TName& NameAt(Pegasus::Uint32 place) const { return names_[place]; }

  private:
    void MarkDoubled();

    std::vector<TName> names_;
};

} // namespace NQORVYX20
