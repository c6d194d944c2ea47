#include "TInmemProperty.h"

#include "host/ICIMPropertyDecl.h"
#include "host/TInmemInstance.h"

#include <functional>
#include <utility>

namespace NQORVYX20 {

TInmemProperty::TInmemProperty(boost::shared_ptr<TInmemInstance> instance,
                               boost::shared_ptr<ICIMPropertyDecl const> declaration)
    : fInstance(std::move(instance)), fDeclaration(std::move(declaration)) {}

TCIMValue::TCIMType TInmemProperty::GetType(TCIMContext context) const { return fDeclaration->GetType(context); }

bool TInmemProperty::IsArray(TCIMContext context) const { return fDeclaration->IsArray(context); }

bool TInmemProperty::IsDefaultValue(TCIMContext) const { return fInstance->FindValue(*fDeclaration) == nullptr; }

const TCIMValue& TInmemProperty::Read() const {
    if (fLastRead != fInstance->fSlots) {
        fLastRead = fInstance->fSlots;
    }
    return fInstance->ReadValue(*fDeclaration);
}

const TCIMValue& TInmemProperty::GetValue(TCIMContext) const { return Read(); }

void TInmemProperty::SetValue(const TCIMValue& value, TCIMContext) { fInstance->StoreValue(fDeclaration, value); }

bool TInmemProperty::GetPropagated(TCIMContext context) const { return IsDefaultValue(context); }

boost::shared_ptr<ICIMPropertyDecl const> TInmemProperty::GetDeclaration(TCIMContext) const { return fDeclaration; }

bool TInmemProperty::operator==(ICIMProperty& other) const {
    return fDeclaration == other.GetDeclaration({}) && Read() == other.GetValue({});
}

bool TInmemProperty::operator<(ICIMProperty& other) const {
    const boost::shared_ptr<ICIMPropertyDecl const> declaration = other.GetDeclaration({});
    if (fDeclaration != declaration) {
        return std::less<>()(fDeclaration.get(), declaration.get());
    }
    return Read() < other.GetValue({});
}

ICIMProperty& TInmemProperty::operator=(const ICIMProperty& other) {
    SetValue(other.GetValue({}), {});
    return *this;
}

const TCIMValue& TInmemProperty::GetPrevValue() const { return fPrevValue ? *fPrevValue : Read(); }

void TInmemProperty::SetPrevValue(const TCIMValue& value) {
    fInstance->Check(*fDeclaration, value);
    fPrevValue = value;
}

void TInmemProperty::SetPrevValue() { fPrevValue = TCIMValue(); }

bool TInmemProperty::IsPrevValueDifferent() const { return fPrevValue.has_value(); }

std::string TInmemProperty::ToString() const { return Read().ToString(10); }

std::string TInmemProperty::PrevValueToString() const { return GetPrevValue().ToString(10); }

std::vector<std::string> TInmemProperty::ToStringVector() const {
    const TCIMValue& value = Read();
    if (!value.IsArray()) {
        return {value.ToString(10)};
    }
    std::vector<std::string> texts;
    if (!value.IsNull()) {
        const std::vector<TCIMValue>& elements = value;
        for (const TCIMValue& element : elements) {
            texts.push_back(element.ToString(10));
        }
    }
    return texts;
}

} // namespace NQORVYX20
