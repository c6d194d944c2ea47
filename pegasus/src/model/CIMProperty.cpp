#include <Pegasus/Common/CIMProperty.h>

#include "model/NamedList.h"

namespace Pegasus {

struct CIMProperty::Rep : detail::RefCounted {
    Rep(const CIMName& itsName, const CIMValue& itsValue, Uint32 itsArraySize, const CIMName& itsReferenceClass,
        const CIMName& itsClassOrigin, Boolean isPropagated)
        : arraySize(itsArraySize),
          name(itsName),
          value(itsValue),
          referenceClass(itsReferenceClass),
          classOrigin(itsClassOrigin),
          propagated(isPropagated) {}

    Uint32 arraySize;
    CIMName name;
    CIMValue value;
    CIMName referenceClass;
    CIMName classOrigin;
    detail::NamedList<CIMQualifier> qualifiers;
    Boolean propagated;
};

CIMProperty::CIMProperty(const CIMName& name, const CIMValue& value, Uint32 arraySize, const CIMName& referenceClass,
                         const CIMName& classOrigin, Boolean propagated)
    : rep_(detail::Handle<Rep>::make(name, value, arraySize, referenceClass, classOrigin, propagated)) {}

const CIMName& CIMProperty::getName() const { return rep_->name; }
const CIMValue& CIMProperty::getValue() const { return rep_->value; }
CIMType CIMProperty::getType() const { return rep_->value.getType(); }
Boolean CIMProperty::isArray() const { return rep_->value.isArray(); }
Uint32 CIMProperty::getArraySize() const { return rep_->arraySize; }
const CIMName& CIMProperty::getReferenceClassName() const { return rep_->referenceClass; }
const CIMName& CIMProperty::getClassOrigin() const { return rep_->classOrigin; }
Boolean CIMProperty::getPropagated() const { return rep_->propagated; }

CIMProperty& CIMProperty::addQualifier(const CIMQualifier& qualifier) {
    rep_->qualifiers.add(qualifier);
    return *this;
}
Uint32 CIMProperty::getQualifierCount() const { return rep_->qualifiers.size(); }
CIMQualifier CIMProperty::getQualifier(Uint32 index) const { return rep_->qualifiers[index]; }
Uint32 CIMProperty::findQualifier(const CIMName& name) const { return rep_->qualifiers.find(name); }

Boolean CIMProperty::identical(const CIMProperty& other) const {
    const Rep& a = *rep_;
    const Rep& b = *other.rep_;
    return a.name == b.name && a.value == b.value && a.arraySize == b.arraySize &&
           a.referenceClass == b.referenceClass && a.classOrigin == b.classOrigin && a.propagated == b.propagated &&
           a.qualifiers.identical(b.qualifiers);
}

} // namespace Pegasus
