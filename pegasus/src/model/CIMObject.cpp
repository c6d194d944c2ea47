#include "model/ObjectXml.h"
#include "model/Unchecked.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>

#include <string>
#include <utility>
#include <variant>

namespace Pegasus {
inline namespace bundled {

struct CIMObject::Rep : detail::RefCounted {
    template <class Content>
    explicit Rep(const Content& itsContent) : content(itsContent) {}

    std::variant<CIMClass, CIMInstance> content;
};

CIMObject::CIMObject(const CIMClass& cimClass) : rep_(detail::Handle<Rep>::make(cimClass)) {}
CIMObject::CIMObject(const CIMInstance& instance) : rep_(detail::Handle<Rep>::make(instance)) {}

Boolean CIMObject::isClass() const { return std::holds_alternative<CIMClass>(rep_->content); }
Boolean CIMObject::isInstance() const { return !isClass(); }

const CIMName& CIMObject::getClassName() const {
    return std::visit([](const auto& object) -> const CIMName& { return object.getClassName(); }, rep_->content);
}

const CIMObjectPath& CIMObject::getPath() const {
    return std::visit([](const auto& object) -> const CIMObjectPath& { return object.getPath(); }, rep_->content);
}

void CIMObject::setPath(const CIMObjectPath& path) {
    std::visit([&](auto& object) { object.setPath(path); }, rep_->content);
}

Uint32 CIMObject::getPropertyCount() const {
    return std::visit([](const auto& object) { return object.getPropertyCount(); }, rep_->content);
}
CIMProperty CIMObject::getProperty(Uint32 index) {
    return std::visit([&](auto& object) { return object.getProperty(index); }, rep_->content);
}
CIMConstProperty CIMObject::getProperty(Uint32 index) const {
    return std::visit([&](const auto& object) { return object.getProperty(index); }, std::as_const(rep_->content));
}
Uint32 CIMObject::findProperty(const CIMName& name) const {
    return std::visit([&](const auto& object) { return object.findProperty(name); }, rep_->content);
}
Uint32 CIMObject::getQualifierCount() const {
    return std::visit([](const auto& object) { return object.getQualifierCount(); }, rep_->content);
}
CIMQualifier CIMObject::getQualifier(Uint32 index) {
    return std::visit([&](auto& object) { return object.getQualifier(index); }, rep_->content);
}
CIMConstQualifier CIMObject::getQualifier(Uint32 index) const {
    return std::visit([&](const auto& object) { return object.getQualifier(index); }, std::as_const(rep_->content));
}
Uint32 CIMObject::findQualifier(const CIMName& name) const {
    return std::visit([&](const auto& object) { return object.findQualifier(name); }, rep_->content);
}

String CIMObject::toString() const {
    std::string text;
    std::visit([&](const auto& object) { detail::appendXml(text, object); }, rep_->content);
    return String(std::string_view(text));
}

CIMObject CIMObject::clone() const {
    return std::visit([](const auto& object) { return CIMObject(object.clone()); }, rep_->content);
}

CIMConstProperty CIMConstObject::getProperty(Uint32 index) const { return CIMObject::getProperty(index); }
CIMConstQualifier CIMConstObject::getQualifier(Uint32 index) const { return CIMObject::getQualifier(index); }

void detail::Unchecked::setPath(CIMObject& object, const CIMObjectPath& path) {
    std::visit([&](auto& content) { setPath(content, path); }, object.rep_->content);
}

Boolean CIMObject::identical(const CIMObject& other) const {
    if (isClass() != other.isClass()) {
        return false;
    }
    return isClass() ? CIMClass(*this).identical(CIMClass(other)) : CIMInstance(*this).identical(CIMInstance(other));
}

// The conversions back stand here, where it is known what an object is made of.

CIMClass::CIMClass(const CIMObject& object) {
    const auto* const cimClass = std::get_if<CIMClass>(&object.rep_->content);
    if (!cimClass) {
        throw DynamicCastFailedException("the object is an instance, not a class");
    }
    *this = *cimClass;
}

CIMInstance::CIMInstance(const CIMObject& object) {
    const auto* const instance = std::get_if<CIMInstance>(&object.rep_->content);
    if (!instance) {
        throw DynamicCastFailedException("the object is a class, not an instance");
    }
    *this = *instance;
}

} // namespace bundled
} // namespace Pegasus
