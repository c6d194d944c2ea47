#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>

namespace Pegasus {

/// The properties that an operation asks for. The null list asks for all of them, an empty one for none.
class CIMPropertyList {
  public:
    /// The null list.
    CIMPropertyList() noexcept = default;
    CIMPropertyList(const Array<CIMName>& names) : names_(names), null_(false) {}

    Boolean isNull() const noexcept { return null_; }
    Uint32 size() const noexcept { return names_.size(); }
    const CIMName& operator[](Uint32 index) const { return names_[index]; }

  private:
    Array<CIMName> names_;
    Boolean null_ = true;
};

} // namespace Pegasus
