#include <Pegasus/Common/CIMInstance.h>

#include "model/NamedList.h"

namespace Pegasus {

struct CIMInstance::Rep : detail::RefCounted {
    explicit Rep(const CIMName& itsClassName)
        : className(itsClassName), path(String(), CIMNamespaceName(), itsClassName) {}

    CIMName className;
    CIMObjectPath path;
    detail::NamedList<CIMProperty> properties;
};

CIMInstance::CIMInstance(const CIMName& className) : rep_(detail::Handle<Rep>::make(className)) {}

const CIMName& CIMInstance::getClassName() const { return rep_->className; }
const CIMObjectPath& CIMInstance::getPath() const { return rep_->path; }
void CIMInstance::setPath(const CIMObjectPath& path) { rep_->path = path; }

CIMInstance& CIMInstance::addProperty(const CIMProperty& property) {
    rep_->properties.add(property);
    return *this;
}
Uint32 CIMInstance::getPropertyCount() const { return rep_->properties.size(); }
CIMProperty CIMInstance::getProperty(Uint32 index) const { return rep_->properties[index]; }
Uint32 CIMInstance::findProperty(const CIMName& name) const { return rep_->properties.find(name); }

Boolean CIMInstance::identical(const CIMInstance& other) const {
    const Rep& a = *rep_;
    const Rep& b = *other.rep_;
    return a.className == b.className && a.path == b.path && a.properties.identical(b.properties);
}

} // namespace Pegasus
