#include "model/Chunks.h"
#include "model/DeclarationCheck.h"
#include "model/NamedList.h"
#include "model/Unchecked.h"

#include <Pegasus/Common/CIMProperty.h>

#include <memory>
#include <utility>

namespace Pegasus {
inline namespace bundled {

namespace {

/// What properties of classes have, and those of instances usually do not.
struct Declaration {
    Uint32 arraySize = 0;
    CIMName referenceClass;
    CIMName classOrigin;
    detail::NamedList<CIMQualifier> qualifiers;
};

bool identicalDeclarations(const Declaration& a, const Declaration& b) {
    return a.arraySize == b.arraySize && a.referenceClass == b.referenceClass && a.classOrigin == b.classOrigin &&
           a.qualifiers.identical(b.qualifiers);
}

} // namespace

struct CIMProperty::Rep : detail::RefCounted {
    /// In the memory of the thread's Chunks, where it has some.
    struct InChunk;
    [[gnu::visibility("hidden")]] static detail::Handle<Rep> make(CIMName name, CIMValue&& value, Boolean isPropagated);

    Rep(CIMName itsName, CIMValue&& itsValue, Boolean isPropagated)
        : propagated(isPropagated), name(std::move(itsName)), value(std::move(itsValue)) {}
    Rep(const Rep& other)
        : RefCounted(other),
          propagated(other.propagated),
          name(other.name),
          value(other.value),
          ownDeclaration(other.ownDeclaration ? std::make_unique<Declaration>(*other.ownDeclaration) : nullptr) {
        if (ownDeclaration) {
            ownDeclaration->qualifiers = other.ownDeclaration->qualifiers.clone();
        }
    }

    const Declaration& declaration() const noexcept {
        static const Declaration kNone;
        return ownDeclaration ? *ownDeclaration : kNone;
    }
    Declaration& changeDeclaration() {
        if (!ownDeclaration) {
            ownDeclaration = std::make_unique<Declaration>();
        }
        return *ownDeclaration;
    }

    Boolean propagated; // before the rest, where it fills a gap
    CIMName name;
    CIMValue value;
    std::unique_ptr<Declaration> ownDeclaration;
};

struct [[gnu::visibility("hidden")]] CIMProperty::Rep::InChunk final : Rep {
    static_assert(sizeof(Rep) <= detail::Chunks::kMaxBytes);

    using Rep::Rep;
    static void* operator new(std::size_t size) { return detail::Chunks::current()->allocate(size); }
    static void operator delete(void* rep) noexcept { detail::Chunks::release(rep); }
};

detail::Handle<CIMProperty::Rep> CIMProperty::Rep::make(CIMName name, CIMValue&& value, Boolean isPropagated) {
    using Made = detail::Handle<Rep>;
    return detail::Chunks::current() ? Made::make<InChunk>(std::move(name), std::move(value), isPropagated)
                                     : Made::make(std::move(name), std::move(value), isPropagated);
}

CIMProperty::CIMProperty(CIMName name, CIMValue value, Uint32 arraySize, CIMName referenceClass, CIMName classOrigin,
                         Boolean propagated)
    : rep_(Rep::make(std::move(name), std::move(value), propagated)) {
    if (arraySize == 0 && referenceClass.isNull() && classOrigin.isNull()) {
        return;
    }
    detail::checkDeclaration(rep_->name, getType(), isArray(), arraySize, referenceClass);
    Declaration& declaration = rep_->changeDeclaration();
    declaration.arraySize = arraySize;
    declaration.referenceClass = std::move(referenceClass);
    declaration.classOrigin = std::move(classOrigin);
}

const CIMName& CIMProperty::getName() const { return rep_->name; }
const CIMValue& CIMProperty::getValue() const { return rep_->value; }
void CIMProperty::setValue(CIMValue value) {
    if (!value.typeCompatible(rep_->value)) {
        detail::throwTypeMismatch(rep_->value.getType(), rep_->value.isArray(), value.getType(), value.isArray());
    }
    rep_->value = std::move(value);
}
CIMType CIMProperty::getType() const { return rep_->value.getType(); }
Boolean CIMProperty::isArray() const { return rep_->value.isArray(); }
Uint32 CIMProperty::getArraySize() const { return rep_->declaration().arraySize; }
const CIMName& CIMProperty::getReferenceClassName() const { return rep_->declaration().referenceClass; }
const CIMName& CIMProperty::getClassOrigin() const { return rep_->declaration().classOrigin; }
Boolean CIMProperty::getPropagated() const { return rep_->propagated; }

CIMProperty& CIMProperty::addQualifier(const CIMQualifier& qualifier) {
    rep_->changeDeclaration().qualifiers.add(qualifier);
    return *this;
}
Uint32 CIMProperty::getQualifierCount() const { return rep_->declaration().qualifiers.size(); }
CIMQualifier CIMProperty::getQualifier(Uint32 index) { return rep_->declaration().qualifiers[index]; }
CIMConstQualifier CIMProperty::getQualifier(Uint32 index) const { return rep_->declaration().qualifiers[index]; }
Uint32 CIMProperty::findQualifier(const CIMName& name) const { return rep_->declaration().qualifiers.find(name); }

Boolean CIMProperty::identical(const CIMProperty& other) const {
    const Rep& a = *rep_;
    const Rep& b = *other.rep_;
    return a.name == b.name && a.value == b.value && a.propagated == b.propagated &&
           identicalDeclarations(a.declaration(), b.declaration());
}

CIMProperty CIMProperty::clone() const {
    CIMProperty copy;
    copy.rep_ = rep_.copy();
    return copy;
}

CIMConstQualifier CIMConstProperty::getQualifier(Uint32 index) const { return CIMProperty::getQualifier(index); }

CIMProperty detail::Unchecked::property(const CIMName& name, CIMValue&& value, Boolean propagated) {
    CIMProperty made;
    made.rep_ = CIMProperty::Rep::make(name, std::move(value), propagated);
    return made;
}
void detail::Unchecked::setValue(CIMProperty& property, CIMValue&& value) { property.rep_->value = std::move(value); }
void detail::Unchecked::add(CIMProperty& property, const CIMQualifier& qualifier) {
    property.rep_->changeDeclaration().qualifiers.addUnchecked(qualifier);
}

} // namespace bundled
} // namespace Pegasus
