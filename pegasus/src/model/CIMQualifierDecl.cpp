#include <Pegasus/Common/CIMQualifierDecl.h>

namespace Pegasus {
inline namespace bundled {

struct CIMQualifierDecl::Rep : detail::RefCounted {
    Rep(const CIMName& itsName, const CIMValue& itsValue, const CIMScope& itsScope, const CIMFlavor& itsFlavor,
        Uint32 itsArraySize)
        : name(itsName), value(itsValue), scope(itsScope), flavor(itsFlavor), arraySize(itsArraySize) {}

    CIMName name;
    CIMValue value;
    CIMScope scope;
    CIMFlavor flavor;
    Uint32 arraySize;
};

CIMQualifierDecl::CIMQualifierDecl(const CIMName& name, const CIMValue& value, const CIMScope& scope,
                                   const CIMFlavor& flavor, Uint32 arraySize)
    : rep_(detail::Handle<Rep>::make(name, value, scope, flavor, arraySize)) {}

const CIMName& CIMQualifierDecl::getName() const { return rep_->name; }
CIMType CIMQualifierDecl::getType() const { return rep_->value.getType(); }
Boolean CIMQualifierDecl::isArray() const { return rep_->value.isArray(); }
const CIMValue& CIMQualifierDecl::getValue() const { return rep_->value; }
const CIMScope& CIMQualifierDecl::getScope() const { return rep_->scope; }
const CIMFlavor& CIMQualifierDecl::getFlavor() const { return rep_->flavor; }
Uint32 CIMQualifierDecl::getArraySize() const { return rep_->arraySize; }

CIMQualifierDecl CIMQualifierDecl::clone() const {
    CIMQualifierDecl copy;
    copy.rep_ = rep_.copy();
    return copy;
}

} // namespace bundled
} // namespace Pegasus
