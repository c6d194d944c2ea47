#include "model/NamedList.h"
#include "model/PathCheck.h"
#include "model/Unchecked.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>

#include <memory>
#include <utility>

namespace Pegasus {
inline namespace bundled {

namespace {

using Qualifiers = detail::NamedList<CIMQualifier>;

CIMKeyBinding::Type keyTypeOf(const CIMValue& value) {
    if (value.isArray() || value.getType() >= CIMTYPE_OBJECT) {
        throw TypeMismatchException("a key is neither an array nor an object");
    }
    switch (value.getType()) {
    case CIMTYPE_BOOLEAN:
        return CIMKeyBinding::BOOLEAN;
    case CIMTYPE_CHAR16:
    case CIMTYPE_STRING:
    case CIMTYPE_DATETIME:
        return CIMKeyBinding::STRING;
    case CIMTYPE_REFERENCE:
        return CIMKeyBinding::REFERENCE;
    default:
        return CIMKeyBinding::NUMERIC;
    }
}

} // namespace

struct CIMInstance::Rep : detail::RefCounted {
    explicit Rep(const CIMName& itsClassName)
        : className(itsClassName), path(String(), CIMNamespaceName(), itsClassName) {}
    Rep(const Rep& other)
        : RefCounted(other),
          className(other.className),
          path(other.path),
          properties(other.properties.clone()),
          qualifiers(other.qualifiers ? std::make_unique<Qualifiers>(other.qualifiers->clone()) : nullptr) {}

    CIMName className;
    CIMObjectPath path;
    detail::NamedList<CIMProperty> properties;
    std::unique_ptr<Qualifiers> qualifiers; // hardly any instance has some

    const Qualifiers& allQualifiers() const noexcept {
        static const Qualifiers kNone;
        return qualifiers ? *qualifiers : kNone;
    }
    Qualifiers& changeQualifiers() {
        if (!qualifiers) {
            qualifiers = std::make_unique<Qualifiers>();
        }
        return *qualifiers;
    }
};

CIMInstance::CIMInstance(const CIMName& className) : rep_(detail::Handle<Rep>::make(className)) {}

const CIMName& CIMInstance::getClassName() const { return rep_->className; }
const CIMObjectPath& CIMInstance::getPath() const { return rep_->path; }
void CIMInstance::setPath(const CIMObjectPath& path) {
    detail::checkClass(path, rep_->className);
    rep_->path = path;
}

CIMObjectPath CIMInstance::buildPath(const CIMClass& cimClass) const {
    if (cimClass.getClassName() != rep_->className) {
        throw TypeMismatchException(String("the definition is not of the class ") + rep_->className.getString());
    }
    Array<CIMName> names;
    cimClass.getKeyNames(names);
    Array<CIMKeyBinding> keys;
    for (const CIMName& name : names) {
        const Uint32 index = findProperty(name);
        if (index == PEG_NOT_FOUND || getProperty(index).getValue().isNull()) {
            throw NoSuchPropertyException(String("the key has no value: ") + name.getString());
        }
        const CIMValue value = getProperty(index).getValue();
        keys.append(CIMKeyBinding(name, value.toString(), keyTypeOf(value)));
    }
    return CIMObjectPath(String(), CIMNamespaceName(), rep_->className, keys);
}

CIMInstance& CIMInstance::addQualifier(const CIMQualifier& qualifier) {
    rep_->changeQualifiers().add(qualifier);
    return *this;
}
Uint32 CIMInstance::getQualifierCount() const { return rep_->allQualifiers().size(); }
CIMQualifier CIMInstance::getQualifier(Uint32 index) { return rep_->allQualifiers()[index]; }
CIMConstQualifier CIMInstance::getQualifier(Uint32 index) const { return rep_->allQualifiers()[index]; }
Uint32 CIMInstance::findQualifier(const CIMName& name) const { return rep_->allQualifiers().find(name); }

CIMInstance& CIMInstance::addProperty(const CIMProperty& property) {
    rep_->properties.add(property);
    return *this;
}
Uint32 CIMInstance::getPropertyCount() const { return rep_->properties.size(); }
CIMProperty CIMInstance::getProperty(Uint32 index) { return rep_->properties[index]; }
CIMConstProperty CIMInstance::getProperty(Uint32 index) const { return rep_->properties[index]; }
Uint32 CIMInstance::findProperty(const CIMName& name) const { return rep_->properties.find(name); }

Boolean CIMInstance::identical(const CIMInstance& other) const {
    const Rep& a = *rep_;
    const Rep& b = *other.rep_;
    return a.className == b.className && a.path == b.path && a.allQualifiers().identical(b.allQualifiers()) &&
           a.properties.identical(b.properties);
}

CIMInstance CIMInstance::clone() const {
    CIMInstance copy;
    copy.rep_ = rep_.copy();
    return copy;
}

CIMConstProperty CIMConstInstance::getProperty(Uint32 index) const { return CIMInstance::getProperty(index); }
CIMConstQualifier CIMConstInstance::getQualifier(Uint32 index) const { return CIMInstance::getQualifier(index); }

void detail::Unchecked::setPath(CIMInstance& instance, const CIMObjectPath& path) { instance.rep_->path = path; }
void detail::Unchecked::add(CIMInstance& instance, const CIMQualifier& qualifier) {
    instance.rep_->changeQualifiers().addUnchecked(qualifier);
}
void detail::Unchecked::add(CIMInstance& instance, CIMProperty property) {
    instance.rep_->properties.addUnchecked(std::move(property));
}
void detail::Unchecked::reserveProperties(CIMInstance& instance, Uint32 count) {
    instance.rep_->properties.reserve(count);
}

} // namespace bundled
} // namespace Pegasus
