#include "model/NamedList.h"
#include "model/Unchecked.h"

#include <Pegasus/Common/CIMMethod.h>

namespace Pegasus {
inline namespace bundled {

struct CIMMethod::Rep : detail::RefCounted {
    Rep(const CIMName& itsName, CIMType itsType, const CIMName& itsClassOrigin, Boolean isPropagated)
        : name(itsName), type(itsType), classOrigin(itsClassOrigin), propagated(isPropagated) {}

    CIMName name;
    CIMType type;
    CIMName classOrigin;
    Boolean propagated;
    detail::NamedList<CIMParameter> parameters;
    detail::NamedList<CIMQualifier> qualifiers;
};

CIMMethod::CIMMethod(const CIMName& name, CIMType type, const CIMName& classOrigin, Boolean propagated)
    : rep_(detail::Handle<Rep>::make(name, type, classOrigin, propagated)) {}

const CIMName& CIMMethod::getName() const { return rep_->name; }
CIMType CIMMethod::getType() const { return rep_->type; }
const CIMName& CIMMethod::getClassOrigin() const { return rep_->classOrigin; }
Boolean CIMMethod::getPropagated() const { return rep_->propagated; }

CIMMethod& CIMMethod::addParameter(const CIMParameter& parameter) {
    rep_->parameters.add(parameter);
    return *this;
}
Uint32 CIMMethod::getParameterCount() const { return rep_->parameters.size(); }
CIMParameter CIMMethod::getParameter(Uint32 index) { return rep_->parameters[index]; }
CIMConstParameter CIMMethod::getParameter(Uint32 index) const { return rep_->parameters[index]; }
Uint32 CIMMethod::findParameter(const CIMName& name) const { return rep_->parameters.find(name); }

CIMMethod& CIMMethod::addQualifier(const CIMQualifier& qualifier) {
    rep_->qualifiers.add(qualifier);
    return *this;
}
Uint32 CIMMethod::getQualifierCount() const { return rep_->qualifiers.size(); }
CIMQualifier CIMMethod::getQualifier(Uint32 index) { return rep_->qualifiers[index]; }
CIMConstQualifier CIMMethod::getQualifier(Uint32 index) const { return rep_->qualifiers[index]; }
Uint32 CIMMethod::findQualifier(const CIMName& name) const { return rep_->qualifiers.find(name); }

Boolean CIMMethod::identical(const CIMMethod& other) const {
    const Rep& a = *rep_;
    const Rep& b = *other.rep_;
    return a.name == b.name && a.type == b.type && a.classOrigin == b.classOrigin && a.propagated == b.propagated &&
           a.parameters.identical(b.parameters) && a.qualifiers.identical(b.qualifiers);
}

CIMMethod CIMMethod::clone() const {
    CIMMethod copy;
    copy.rep_ = rep_.copy();
    copy.rep_->parameters = rep_->parameters.clone();
    copy.rep_->qualifiers = rep_->qualifiers.clone();
    return copy;
}

void detail::Unchecked::add(CIMMethod& method, const CIMQualifier& qualifier) {
    method.rep_->qualifiers.addUnchecked(qualifier);
}
void detail::Unchecked::add(CIMMethod& method, const CIMParameter& parameter) {
    method.rep_->parameters.addUnchecked(parameter);
}

} // namespace bundled
} // namespace Pegasus
