#include "TInmemProperty.h"

#include "host/ICIMPropertyDecl.h"
#include "host/TInmemInstance.h"

#include <functional>
#include <utility>

namespace NQORVYX20 {

TInmemProperty::TInmemProperty(boost::shared_ptr<TInmemInstance> instance,
                               boost::shared_ptr<ICIMPropertyDecl const> declaration)
    : instance_(std::move(instance)), declaration_(std::move(declaration)) {}

TCIMValue::TCIMType TInmemProperty::GetType(TCIMContext context) const { return declaration_->GetType(context); }

bool TInmemProperty::IsArray(TCIMContext context) const { return declaration_->IsArray(context); }

bool TInmemProperty::IsDefaultValue(TCIMContext) const { return instance_->FindValue(*declaration_) == nullptr; }

const TCIMValue& TInmemProperty::Read() const {
    if (lastRead_ != instance_->slots_) {
        lastRead_ = instance_->slots_;
    }
    return instance_->ReadValue(*declaration_);
}

const TCIMValue& TInmemProperty::GetValue(TCIMContext) const { return Read(); }

void TInmemProperty::SetValue(const TCIMValue& value, TCIMContext) { instance_->StoreValue(declaration_, value); }

bool TInmemProperty::GetPropagated(TCIMContext context) const { return IsDefaultValue(context); }

boost::shared_ptr<ICIMPropertyDecl const> TInmemProperty::GetDeclaration(TCIMContext) const { return declaration_; }

bool TInmemProperty::operator==(ICIMProperty& other) const {
    return declaration_ == other.GetDeclaration({}) && Read() == other.GetValue({});
}

bool TInmemProperty::operator<(ICIMProperty& other) const {
    const boost::shared_ptr<ICIMPropertyDecl const> declaration = other.GetDeclaration({});
    if (declaration_ != declaration) {
        return std::less<>()(declaration_.get(), declaration.get());
    }
    return Read() < other.GetValue({});
}

ICIMProperty& TInmemProperty::operator=(const ICIMProperty& other) {
    SetValue(other.GetValue({}), {});
    return *this;
}

const TCIMValue& TInmemProperty::GetPrevValue() const { return prevValue_ ? *prevValue_ : Read(); }

void TInmemProperty::SetPrevValue(const TCIMValue& value) {
    instance_->Check(*declaration_, value);
    prevValue_ = value;
}

void TInmemProperty::SetPrevValue() { prevValue_ = TCIMValue(); }

bool TInmemProperty::IsPrevValueDifferent() const { return prevValue_.has_value(); }

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
