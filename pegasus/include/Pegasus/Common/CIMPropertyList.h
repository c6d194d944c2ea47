#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>

#include <algorithm>

namespace Pegasus {
inline namespace bundled {

/// The properties that an operation asks for. The null list asks for all of them, an empty one for none.
class CIMPropertyList {
  public:
    /// The null list.
    CIMPropertyList() noexcept = default;
    CIMPropertyList(const Array<CIMName>& names) : names_(names), null_(false) {}

    Boolean isNull() const noexcept { return null_; }
    Uint32 size() const noexcept { return names_.size(); }
    const CIMName& operator[](Uint32 index) const { return names_[index]; }
    const Array<CIMName>& getPropertyNameArray() const noexcept { return names_; }

    /// Makes it a list of these names, and not the null list.
    void set(const Array<CIMName>& names) { *this = CIMPropertyList(names); }
    void append(const CIMName& name) {
        names_.append(name);
        null_ = false;
    }
    /// Makes it the null list.
    void clear() noexcept { *this = CIMPropertyList(); }

    /// Whether the name is in the list; the null list contains all.
    Boolean contains(const CIMName& name) const noexcept {
        return null_ || std::find(names_.begin(), names_.end(), name) != names_.end();
    }
    /// The names with a comma between them; "NULL" for the null list, "EMPTY" for an empty one.
    String toString() const;

  private:
    Array<CIMName> names_;
    Boolean null_ = true;
};

} // namespace bundled
} // namespace Pegasus
