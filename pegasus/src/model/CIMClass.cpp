#include "model/NamedList.h"
#include "model/PathCheck.h"
#include "model/Unchecked.h"

#include <Pegasus/Common/CIMClass.h>

namespace Pegasus {
inline namespace bundled {

namespace {

bool isKey(const CIMProperty& property) {
    const Uint32 index = property.findQualifier("Key");
    return index != PEG_NOT_FOUND && property.getQualifier(index).getValue() == CIMValue(true);
}

} // namespace

struct CIMClass::Rep : detail::RefCounted {
    Rep(const CIMName& itsClassName, const CIMName& itsSuperClass)
        : className(itsClassName), path(String(), CIMNamespaceName(), itsClassName), superClass(itsSuperClass) {}

    Boolean isMarked(const CIMName& qualifierName) const {
        const Uint32 index = qualifiers.find(qualifierName);
        return index != PEG_NOT_FOUND && qualifiers[index].getValue() == CIMValue(true);
    }

    CIMName className;
    CIMObjectPath path;
    CIMName superClass;
    detail::NamedList<CIMQualifier> qualifiers;
    detail::NamedList<CIMProperty> properties;
    detail::NamedList<CIMMethod> methods;
};

CIMClass::CIMClass(const CIMName& className, const CIMName& superClass)
    : rep_(detail::Handle<Rep>::make(className, superClass)) {}

const CIMName& CIMClass::getClassName() const { return rep_->className; }
const CIMName& CIMClass::getSuperClassName() const { return rep_->superClass; }
const CIMObjectPath& CIMClass::getPath() const { return rep_->path; }
void CIMClass::setPath(const CIMObjectPath& path) {
    detail::checkClass(path, rep_->className);
    rep_->path = path;
}
Boolean CIMClass::isAssociation() const { return rep_->isMarked("Association"); }
Boolean CIMClass::isAbstract() const { return rep_->isMarked("Abstract"); }

CIMClass& CIMClass::addQualifier(const CIMQualifier& qualifier) {
    rep_->qualifiers.add(qualifier);
    return *this;
}
Uint32 CIMClass::getQualifierCount() const { return rep_->qualifiers.size(); }
CIMQualifier CIMClass::getQualifier(Uint32 index) { return rep_->qualifiers[index]; }
CIMConstQualifier CIMClass::getQualifier(Uint32 index) const { return rep_->qualifiers[index]; }
Uint32 CIMClass::findQualifier(const CIMName& name) const { return rep_->qualifiers.find(name); }

CIMClass& CIMClass::addProperty(const CIMProperty& property) {
    rep_->properties.add(property);
    return *this;
}
Uint32 CIMClass::getPropertyCount() const { return rep_->properties.size(); }
CIMProperty CIMClass::getProperty(Uint32 index) { return rep_->properties[index]; }
CIMConstProperty CIMClass::getProperty(Uint32 index) const { return rep_->properties[index]; }
Uint32 CIMClass::findProperty(const CIMName& name) const { return rep_->properties.find(name); }

CIMClass& CIMClass::addMethod(const CIMMethod& method) {
    rep_->methods.add(method);
    return *this;
}
Uint32 CIMClass::getMethodCount() const { return rep_->methods.size(); }
CIMMethod CIMClass::getMethod(Uint32 index) { return rep_->methods[index]; }
CIMConstMethod CIMClass::getMethod(Uint32 index) const { return rep_->methods[index]; }
Uint32 CIMClass::findMethod(const CIMName& name) const { return rep_->methods.find(name); }

Boolean CIMClass::identical(const CIMClass& other) const {
    const Rep& a = *rep_;
    const Rep& b = *other.rep_;
    return a.className == b.className && a.path == b.path && a.superClass == b.superClass &&
           a.qualifiers.identical(b.qualifiers) && a.properties.identical(b.properties) &&
           a.methods.identical(b.methods);
}

void CIMClass::getKeyNames(Array<CIMName>& names) const {
    for (Uint32 i = 0; i < rep_->properties.size(); ++i) {
        if (isKey(rep_->properties[i])) {
            names.append(rep_->properties[i].getName());
        }
    }
}

Boolean CIMClass::hasKeys() const {
    Array<CIMName> names;
    getKeyNames(names);
    return names.size() != 0;
}

CIMClass CIMClass::clone() const {
    CIMClass copy;
    copy.rep_ = rep_.copy();
    copy.rep_->qualifiers = rep_->qualifiers.clone();
    copy.rep_->properties = rep_->properties.clone();
    copy.rep_->methods = rep_->methods.clone();
    return copy;
}

void detail::Unchecked::setPath(CIMClass& cimClass, const CIMObjectPath& path) { cimClass.rep_->path = path; }
void detail::Unchecked::add(CIMClass& cimClass, const CIMQualifier& qualifier) {
    cimClass.rep_->qualifiers.addUnchecked(qualifier);
}
void detail::Unchecked::add(CIMClass& cimClass, CIMProperty property) {
    cimClass.rep_->properties.addUnchecked(std::move(property));
}
void detail::Unchecked::add(CIMClass& cimClass, const CIMMethod& method) {
    cimClass.rep_->methods.addUnchecked(method);
}

} // namespace bundled
} // namespace Pegasus
