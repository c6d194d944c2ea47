#include "model/TCimHTTPProperty.h"

#include "convert/CoreLog.h"
#include "display/FaithfulTexts.h"
#include "display/ValueMapTable.h"
#include "host/TVYXException.h"
#include "model/DeclarationTexts.h"
#include "model/TCimHTTPPropertyDecl.h"

#include <algorithm>
#include <functional>
#include <sstream>
#include <utility>

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

constexpr const char* kSetValue = "Inmem: SetValue";

/// Calls with the texts of the reading that the declaration belongs to.
template <typename Render>
auto WithTexts(const boost::shared_ptr<ICIMPropertyDecl const>& declaration, const Render& render) {
    const TCimHTTPPropertyDecl* const own = TCimHTTPPropertyDecl::AsOwn(*declaration);
    if (own == nullptr) {
        return render(TextsOfOther(declaration));
    }
    return own->IsFaithful() ? render(own->GetFaithfulTexts()) : render(own->GetCompatibleTexts());
}

/// Logs and throws for a value of another type than the declared one.
template <typename Type>
[[noreturn]] void RefuseType(const char* operation, const char* declaredText, const Type& declared,
                             const char* givenText, const Type& given) {
    std::ostringstream text;
    text << operation << ": " << declaredText << declared << givenText << given;
    LogError(text.str());
    throw TVYXException(TVYXStatusCode::eTypeMismatch);
}

} // namespace

TCimHTTPProperty::TCimHTTPProperty(boost::shared_ptr<ICIMPropertyDecl const> declaration) : declaration_(declaration) {}

TCimHTTPProperty::TCimHTTPProperty(boost::shared_ptr<ICIMPropertyDecl const> declaration, const TCIMValue& value)
    : declaration_(declaration) {
    Check(*declaration, value, kSetValue);
    value_.emplace(value);
}

TCimHTTPProperty::TCimHTTPProperty(boost::shared_ptr<ICIMProperty const> other)
    : TCimHTTPProperty(other->GetDeclaration(TCIMContext())) {
    const TCIMValue& value = other->GetValue(TCIMContext());
    if (!value.IsNull()) {
        TCimHTTPProperty::SetValue(value, TCIMContext());
    }
}

boost::shared_ptr<ICIMPropertyDecl const> TCimHTTPProperty::LockDeclaration() const {
    return boost::shared_ptr<ICIMPropertyDecl const>(declaration_);
}

// --- The value -------------------------------------------------------------------------------------------------------

boost::shared_ptr<ICIMPropertyDecl const> TCimHTTPProperty::GetDeclaration(TCIMContext /*context*/) const {
    return LockDeclaration();
}

TCIMValue::TCIMType TCimHTTPProperty::GetType(TCIMContext context) const { return LockDeclaration()->GetType(context); }

bool TCimHTTPProperty::IsArray(TCIMContext context) const { return LockDeclaration()->IsArray(context); }

bool TCimHTTPProperty::IsDefaultValue(TCIMContext /*context*/) const { return !value_; }

bool TCimHTTPProperty::GetPropagated(TCIMContext context) const { return IsDefaultValue(context); }

const TCIMValue& TCimHTTPProperty::GetValue(TCIMContext /*context*/) const {
    return value_ ? *value_ : ValueOf(*LockDeclaration());
}

const TCIMValue& TCimHTTPProperty::ValueOf(const ICIMPropertyDecl& declaration) const {
    return value_ ? *value_ : declaration.GetDefaultValue(TCIMContext());
}

void TCimHTTPProperty::SetValue(const TCIMValue& value, TCIMContext /*context*/) {
    Check(*LockDeclaration(), value, kSetValue);
    value_ = value;
}

void TCimHTTPProperty::Check(const ICIMPropertyDecl& declaration, const TCIMValue& value, const char* operation) {
    const TCIMValue::TCIMType declared = declaration.GetType(TCIMContext());
    if (declared != value.GetType()) {
        RefuseType(operation, "decl is type ", declared, " but value is type ", value.GetType());
    }
    if (declared != ECIMType::eCIMReference) {
        return;
    }
    const std::string declaredClass = declaration.GetDefaultValue(TCIMContext()).GetReferencedClass();
    if (declaredClass != value.GetReferencedClass()) {
        RefuseType(operation, "decl references type ", declaredClass, " but value references ",
                   value.GetReferencedClass());
    }
}

bool TCimHTTPProperty::operator==(ICIMProperty& other) const {
    return LockDeclaration() == other.GetDeclaration(TCIMContext()) && value_ &&
           *value_ == other.GetValue(TCIMContext());
}

bool TCimHTTPProperty::operator<(ICIMProperty& other) const {
    const auto declaration = LockDeclaration();
    const auto otherDeclaration = other.GetDeclaration(TCIMContext());
    if (declaration != otherDeclaration) {
        return std::less<>()(declaration.get(), otherDeclaration.get());
    }
    return value_ && *value_ < other.GetValue(TCIMContext());
}

ICIMProperty& TCimHTTPProperty::operator=(const ICIMProperty& /*other*/) { return *this; }

// --- The previous value ----------------------------------------------------------------------------------------------

const TCIMValue& TCimHTTPProperty::GetPrevValue() const {
    return isPrevValueDifferent_ && prevValue_ ? *prevValue_ : GetValue(TCIMContext());
}

void TCimHTTPProperty::SetPrevValue(const TCIMValue& value) {
    if (!value.IsNull()) {
        Check(*LockDeclaration(), value, "SetPrevValue");
    }
    prevValue_ = std::make_unique<TCIMValue>(value);
    isPrevValueDifferent_ = true;
}

void TCimHTTPProperty::SetPrevValue() { SetPrevValue(TCIMValue()); }

bool TCimHTTPProperty::IsPrevValueDifferent() const { return isPrevValueDifferent_; }

// --- Texts for people ------------------------------------------------------------------------------------------------

std::string TCimHTTPProperty::ToString() const { return ToString(DisplayChoice()); }

std::string TCimHTTPProperty::ToString(const DisplayChoice& choice) const {
    const auto declaration = LockDeclaration();
    const TCIMValue& value = ValueOf(*declaration);
    return WithTexts(declaration, [&](const PropertyTexts& texts) { return texts.Of(value, choice); });
}

std::string TCimHTTPProperty::PrevValueToString() const {
    return WithTexts(LockDeclaration(),
                     [&](const PropertyTexts& texts) { return texts.Of(GetPrevValue(), DisplayChoice()); });
}

std::vector<std::string> TCimHTTPProperty::ToStringVector() const { return ToStringVector(DisplayChoice()); }

std::vector<std::string> TCimHTTPProperty::ToStringVector(const DisplayChoice& choice) const {
    const auto declaration = LockDeclaration();
    const TCIMValue& value = ValueOf(*declaration);
    return WithTexts(declaration, [&](const PropertyTexts& texts) { return texts.OfElements(value, choice); });
}

std::vector<std::string> TCimHTTPProperty::ToStringVectorWithBase() const {
    return WithCompatibleTexts(LockDeclaration(), [&](const CompatibleTexts& texts) {
        return texts.OfElementsWithoutMap(GetValue(TCIMContext()));
    });
}

std::string TCimHTTPProperty::ToStringWithQualifiers(const TCIMValue& value) const {
    return WithCompatibleTexts(LockDeclaration(),
                               [&](const CompatibleTexts& texts) { return texts.WithoutMap(value); });
}

std::string TCimHTTPProperty::ToStringWithBase(const TCIMValue& value) const {
    return WithCompatibleTexts(LockDeclaration(), [&](const CompatibleTexts& texts) { return texts.WithBase(value); });
}

bool TCimHTTPProperty::BuildValueMapEntryArray(std::vector<TValueMapEntry>& table, std::string& defaultText) const {
    const auto map = FindValueMapTable(LockDeclaration());
    table.clear();
    defaultText.clear();
    if (!map) {
        return false;
    }
    table.reserve(map->Rows().size());
    for (const ValueMapRow& row : map->Rows()) {
        table.push_back({row.low, row.high, row.text});
    }
    defaultText = map->DefaultText();
    return true;
}

// A host that was built on its own links this operation by its signature, hence no const for what it only reads.
std::string TCimHTTPProperty::LookupInTable(const TCIMValue& value, std::vector<TValueMapEntry>& table,
                                            std::string& defaultText) const {
    const std::uint64_t number = CompatibleTexts::NumberOf(value);
    const auto row = std::find_if(table.begin(), table.end(), [number](const TValueMapEntry& entry) {
        return entry.low <= number && number <= entry.high;
    });
    return row != table.end() ? row->text : CompatibleTexts::TextOfOther(value, defaultText);
}

} // namespace NQORVYX20
