#include <Pegasus/Common/CIMQualifier.h>

#include <utility>

namespace Pegasus {
inline namespace bundled {

struct CIMQualifier::Rep : detail::RefCounted {
    Rep(CIMName itsName, CIMValue itsValue, const CIMFlavor& itsFlavor, Boolean isPropagated)
        : name(std::move(itsName)), value(std::move(itsValue)), flavor(itsFlavor), propagated(isPropagated) {}

    CIMName name;
    CIMValue value;
    CIMFlavor flavor;
    Boolean propagated;
};

CIMQualifier::CIMQualifier(CIMName name, CIMValue value, const CIMFlavor& flavor, Boolean propagated)
    : rep_(detail::Handle<Rep>::make(std::move(name), std::move(value), flavor, propagated)) {}

const CIMName& CIMQualifier::getName() const { return rep_->name; }
CIMType CIMQualifier::getType() const { return rep_->value.getType(); }
Boolean CIMQualifier::isArray() const { return rep_->value.isArray(); }
const CIMValue& CIMQualifier::getValue() const { return rep_->value; }
const CIMFlavor& CIMQualifier::getFlavor() const { return rep_->flavor; }
Boolean CIMQualifier::getPropagated() const { return rep_->propagated; }

Boolean CIMQualifier::identical(const CIMQualifier& other) const {
    const Rep& a = *rep_;
    const Rep& b = *other.rep_;
    return a.name == b.name && a.value == b.value && a.flavor == b.flavor && a.propagated == b.propagated;
}

CIMQualifier CIMQualifier::clone() const {
    CIMQualifier copy;
    copy.rep_ = rep_.copy();
    return copy;
}

} // namespace bundled
} // namespace Pegasus
