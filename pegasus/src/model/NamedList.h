#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>

#include <algorithm>
#include <utility>

namespace Pegasus {
inline namespace bundled {
namespace detail {

/// The elements of one kind that an object has, in their order: its properties, qualifiers, methods or parameters.
template <class Element>
class NamedList {
  public:
    void add(const Element& element) {
        if (find(element.getName()) !=
            PEG_NOT_FOUND) { // an uninitialised element is refused here, where the mistake is
            throw AlreadyExistsException(String("there are two of the name ") + element.getName().getString());
        }
        elements_.append(element);
    }
    /// Adds an element whose name is known to be new, or may be that of another.
    void addUnchecked(Element element) { elements_.append(std::move(element)); }
    void reserve(Uint32 count) { elements_.reserveCapacity(count); }
    Uint32 size() const noexcept { return elements_.size(); }
    const Element& operator[](Uint32 index) const { return elements_[index]; }

    Uint32 find(const CIMName& name) const {
        const auto found = std::find_if(elements_.begin(), elements_.end(),
                                        [&](const Element& element) { return element.getName() == name; });
        return found == elements_.end() ? PEG_NOT_FOUND : static_cast<Uint32>(found - elements_.begin());
    }

    /// With elements of its own.
    NamedList clone() const {
        NamedList copy;
        copy.elements_.reserveCapacity(size());
        for (const Element& element : elements_) {
            copy.elements_.append(element.clone());
        }
        return copy;
    }

    Boolean identical(const NamedList& other) const {
        return std::equal(elements_.begin(), elements_.end(), other.elements_.begin(), other.elements_.end(),
                          [](const Element& a, const Element& b) { return a.identical(b); });
    }

  private:
    Array<Element> elements_;
};

} // namespace detail
} // namespace bundled
} // namespace Pegasus
