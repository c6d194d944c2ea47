#include <Pegasus/Common/CIMObject.h>

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>

#include <variant>

namespace Pegasus {

struct CIMObject::Rep : detail::RefCounted {
    template <class Content>
    explicit Rep(const Content& itsContent) : content(itsContent) {}

    std::variant<CIMClass, CIMInstance> content;
};

CIMObject::CIMObject(const CIMClass& cimClass) : rep_(detail::Handle<Rep>::make(cimClass)) {}
CIMObject::CIMObject(const CIMInstance& instance) : rep_(detail::Handle<Rep>::make(instance)) {}

Boolean CIMObject::isClass() const { return std::holds_alternative<CIMClass>(rep_->content); }
Boolean CIMObject::isInstance() const { return !isClass(); }

const CIMClass& CIMObject::getClass() const {
    if (!isClass())
        throw TypeMismatchException("the object is an instance, not a class");
    return std::get<CIMClass>(rep_->content);
}

const CIMInstance& CIMObject::getInstance() const {
    if (isClass())
        throw TypeMismatchException("the object is a class, not an instance");
    return std::get<CIMInstance>(rep_->content);
}

Boolean CIMObject::identical(const CIMObject& other) const {
    if (isClass() != other.isClass())
        return false;
    return isClass() ? getClass().identical(other.getClass()) : getInstance().identical(other.getInstance());
}

} // namespace Pegasus
