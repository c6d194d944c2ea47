#include "model/DeclarationCheck.h"
#include "model/NamedList.h"
#include "model/Unchecked.h"

#include <Pegasus/Common/CIMParameter.h>

namespace Pegasus {
inline namespace bundled {

struct CIMParameter::Rep : detail::RefCounted {
    Rep(const CIMName& itsName, CIMType itsType, Boolean itIsArray, Uint32 itsArraySize,
        const CIMName& itsReferenceClass)
        : name(itsName),
          type(itsType),
          isArray(itIsArray),
          arraySize(itsArraySize),
          referenceClass(itsReferenceClass) {}

    CIMName name;
    CIMType type;
    Boolean isArray;
    Uint32 arraySize;
    CIMName referenceClass;
    detail::NamedList<CIMQualifier> qualifiers;
};

CIMParameter::CIMParameter(const CIMName& name, CIMType type, Boolean isArray, Uint32 arraySize,
                           const CIMName& referenceClass)
    : rep_(detail::Handle<Rep>::make(name, type, isArray, arraySize, referenceClass)) {
    detail::checkDeclaration(name, type, isArray, arraySize, referenceClass);
}

const CIMName& CIMParameter::getName() const { return rep_->name; }
CIMType CIMParameter::getType() const { return rep_->type; }
Boolean CIMParameter::isArray() const { return rep_->isArray; }
Uint32 CIMParameter::getArraySize() const { return rep_->arraySize; }
const CIMName& CIMParameter::getReferenceClassName() const { return rep_->referenceClass; }

CIMParameter& CIMParameter::addQualifier(const CIMQualifier& qualifier) {
    rep_->qualifiers.add(qualifier);
    return *this;
}
Uint32 CIMParameter::getQualifierCount() const { return rep_->qualifiers.size(); }
CIMQualifier CIMParameter::getQualifier(Uint32 index) { return rep_->qualifiers[index]; }
CIMConstQualifier CIMParameter::getQualifier(Uint32 index) const { return rep_->qualifiers[index]; }
Uint32 CIMParameter::findQualifier(const CIMName& name) const { return rep_->qualifiers.find(name); }

Boolean CIMParameter::identical(const CIMParameter& other) const {
    const Rep& a = *rep_;
    const Rep& b = *other.rep_;
    return a.name == b.name && a.type == b.type && a.isArray == b.isArray && a.arraySize == b.arraySize &&
           a.referenceClass == b.referenceClass && a.qualifiers.identical(b.qualifiers);
}

CIMParameter CIMParameter::clone() const {
    CIMParameter copy;
    copy.rep_ = rep_.copy();
    copy.rep_->qualifiers = rep_->qualifiers.clone();
    return copy;
}

void detail::Unchecked::add(CIMParameter& parameter, const CIMQualifier& qualifier) {
    parameter.rep_->qualifiers.addUnchecked(qualifier);
}

} // namespace bundled
} // namespace Pegasus
