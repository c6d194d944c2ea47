#include "model/TCimHTTPProperty.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <sstream>
#include <utility>

#include "convert/CoreLog.h"
#include "convert/StatusCodes.h"
#include "display/DisplayQualifiers.h"
#include "display/DisplayUnits.h"
#include "display/ValueMapTable.h"
#include "host/TVYXException.h"
#include "model/TCimHTTPPropertyDecl.h"

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

constexpr unsigned char kDecimal = 10;

bool IsUnsigned(ECIMType type) {
    return type == ECIMType::eCIMUint8 || type == ECIMType::eCIMUint16 || type == ECIMType::eCIMUint32 ||
           type == ECIMType::eCIMUint64;
}

bool IsMappable(ECIMType type) { return type == ECIMType::eCIMBoolean || IsUnsigned(type); }

bool IsMappableArray(ECIMType type) {
    return type == ECIMType::eCIMBooleanArray || type == ECIMType::eCIMUint8Array ||
           type == ECIMType::eCIMUint16Array || type == ECIMType::eCIMUint32Array || type == ECIMType::eCIMUint64Array;
}

/// The number by which a value is found in a value map.
std::uint64_t ToNumber(const TCIMValue& value) {
    if (value.IsNull() || !IsMappable(value.GetType())) {
        throw TVYXException(kNotSupported);
    }
    if (value.GetType() == ECIMType::eCIMBoolean) {
        return static_cast<bool>(value) ? 1 : 0;
    }
    return static_cast<unsigned long long>(value);
}

boost::shared_ptr<const ValueMapTable> FindValueMapTable(const boost::shared_ptr<ICIMPropertyDecl const>& declaration) {
    const TCimHTTPPropertyDecl* const own = TCimHTTPPropertyDecl::AsOwn(*declaration);
    return own != nullptr ? own->GetValueMapTable()
                          : MakeValueMapTable(TCimHTTPPropertyDecl::DisplayQualifiersOf(declaration));
}

/// The text of a value that no row of a value map covers: the default text, else the value in base 10.
std::string TextOfOther(const TCIMValue& value, const std::string& defaultText) {
    return defaultText.empty() ? value.ToString(kDecimal) : defaultText;
}

std::string TextInMap(const TCIMValue& value, const ValueMapTable& map) {
    const std::string* const text = map.Find(ToNumber(value));
    return text != nullptr ? *text : TextOfOther(value, map.DefaultText());
}

std::string TextWithBase(const TCIMValue& value, const DisplayQualifiers& qualifiers) {
    static const DisplayQualifiers::TName kBase("BASE");
    return value.ToString(qualifiers.GetUint8(kBase).value_or(kDecimal));
}

std::string TextWithUnits(const TCIMValue& value, const std::string& units, const DisplayQualifiers& qualifiers) {
    static const DisplayQualifiers::TName kDisplayCpuTime("DISPLAYCPUTIME");
    static const DisplayQualifiers::TName kDisplayFixedUnits("DISPLAYFIXEDUNITS");
    static const DisplayQualifiers::TName kAbbreviateUnits("ABBREVIATEUNITS");
    const DisplayUnits display(units);
    if (display.IsTime()) {
        // CPU times read like all other times; the look-up is for the failures that it may report.
        qualifiers.Has(kDisplayCpuTime);
        const auto text = display.TimeText(ToNumber(value));
        return text ? *text : TextWithBase(value, qualifiers);
    }
    if (!display.IsData()) {
        return TextWithBase(value, qualifiers);
    }
    const std::string fixedPrefix = qualifiers.GetString(kDisplayFixedUnits).value_or("");
    return display.DataText(ToNumber(value), fixedPrefix, qualifiers.Has(kAbbreviateUnits));
}

std::string TextWithQualifiers(const TCIMValue& value, const DisplayQualifiers& qualifiers) {
    static const DisplayQualifiers::TName kNullDisplay("NULLDISPLAY");
    static const DisplayQualifiers::TName kUnits("UNITS");
    if (value.IsNull()) {
        return qualifiers.GetString(kNullDisplay).value_or("");
    }
    const auto units = IsUnsigned(value.GetType()) ? qualifiers.GetString(kUnits) : std::nullopt;
    return units ? TextWithUnits(value, *units, qualifiers) : TextWithBase(value, qualifiers);
}

/// Logs and throws for a value of another type than the declared one.
template <typename Type>
[[noreturn]] void RefuseType(const char* operation, const char* declaredText, const Type& declared,
                             const char* givenText, const Type& given) {
    std::ostringstream text;
    text << operation << ": " << declaredText << declared << givenText << given;
    LogError(text.str());
    throw TVYXException(kTypeMismatch);
}

/// The texts of an array's elements, none for null.
template <typename Render>
std::vector<std::string> ElementTexts(const TCIMValue& array, Render render) {
    std::vector<std::string> texts;
    if (!array.IsNull()) {
        const std::vector<TCIMValue>& elements = array;
        texts.reserve(elements.size());
        for (const TCIMValue& element : elements) {
            texts.push_back(render(element));
        }
    }
    return texts;
}

} // namespace

TCimHTTPProperty::TCimHTTPProperty(boost::shared_ptr<ICIMPropertyDecl const> declaration) : fDeclaration(declaration) {}

TCimHTTPProperty::TCimHTTPProperty(boost::shared_ptr<ICIMPropertyDecl const> declaration, const TCIMValue& value)
    : TCimHTTPProperty(declaration) {
    TCimHTTPProperty::SetValue(value, TCIMContext());
}

TCimHTTPProperty::TCimHTTPProperty(boost::shared_ptr<ICIMProperty const> other)
    : TCimHTTPProperty(other->GetDeclaration(TCIMContext())) {
    const TCIMValue& value = other->GetValue(TCIMContext());
    if (!value.IsNull()) {
        TCimHTTPProperty::SetValue(value, TCIMContext());
    }
}

boost::shared_ptr<ICIMPropertyDecl const> TCimHTTPProperty::LockDeclaration() const {
    return boost::shared_ptr<ICIMPropertyDecl const>(fDeclaration);
}

// --- The value -------------------------------------------------------------------------------------------------------

boost::shared_ptr<ICIMPropertyDecl const> TCimHTTPProperty::GetDeclaration(TCIMContext /*context*/) const {
    return LockDeclaration();
}

TCIMValue::TCIMType TCimHTTPProperty::GetType(TCIMContext context) const { return LockDeclaration()->GetType(context); }

bool TCimHTTPProperty::IsArray(TCIMContext context) const { return LockDeclaration()->IsArray(context); }

bool TCimHTTPProperty::IsDefaultValue(TCIMContext /*context*/) const { return !fValue; }

bool TCimHTTPProperty::GetPropagated(TCIMContext context) const { return IsDefaultValue(context); }

const TCIMValue& TCimHTTPProperty::GetValue(TCIMContext context) const {
    return fValue ? *fValue : LockDeclaration()->GetDefaultValue(context);
}

void TCimHTTPProperty::SetValue(const TCIMValue& value, TCIMContext context) {
    Check(value, "Inmem: SetValue", context);
    fValue = std::make_unique<TCIMValue>(value);
}

void TCimHTTPProperty::Check(const TCIMValue& value, const char* operation, TCIMContext context) const {
    const auto declaration = LockDeclaration();
    const TCIMValue::TCIMType declared = declaration->GetType(context);
    if (declared != value.GetType()) {
        RefuseType(operation, "decl is type ", declared, " but value is type ", value.GetType());
    }
    if (declared != ECIMType::eCIMReference) {
        return;
    }
    const std::string declaredClass = declaration->GetDefaultValue(context).GetReferencedClass();
    if (declaredClass != value.GetReferencedClass()) {
        RefuseType(operation, "decl references type ", declaredClass, " but value references ",
                   value.GetReferencedClass());
    }
}

bool TCimHTTPProperty::operator==(ICIMProperty& other) const {
    return LockDeclaration() == other.GetDeclaration(TCIMContext()) && fValue &&
           *fValue == other.GetValue(TCIMContext());
}

bool TCimHTTPProperty::operator<(ICIMProperty& other) const {
    const auto declaration = LockDeclaration();
    const auto otherDeclaration = other.GetDeclaration(TCIMContext());
    if (declaration != otherDeclaration) {
        return std::less<>()(declaration.get(), otherDeclaration.get());
    }
    return fValue && *fValue < other.GetValue(TCIMContext());
}

ICIMProperty& TCimHTTPProperty::operator=(const ICIMProperty& /*other*/) { return *this; }

// --- The previous value ----------------------------------------------------------------------------------------------

const TCIMValue& TCimHTTPProperty::GetPrevValue() const {
    return fIsPrevValueDifferent && fPrevValue ? *fPrevValue : GetValue(TCIMContext());
}

void TCimHTTPProperty::SetPrevValue(const TCIMValue& value) {
    if (!value.IsNull()) {
        Check(value, "SetPrevValue", TCIMContext());
    }
    fPrevValue = std::make_unique<TCIMValue>(value);
    fIsPrevValueDifferent = true;
}

void TCimHTTPProperty::SetPrevValue() { SetPrevValue(TCIMValue()); }

bool TCimHTTPProperty::IsPrevValueDifferent() const { return fIsPrevValueDifferent; }

// --- Texts for people ------------------------------------------------------------------------------------------------

std::string TCimHTTPProperty::ToString() const { return DisplayText(GetValue(TCIMContext())); }

std::string TCimHTTPProperty::PrevValueToString() const { return DisplayText(GetPrevValue()); }

std::string TCimHTTPProperty::DisplayText(const TCIMValue& value) const {
    auto declaration = LockDeclaration();
    const auto map = !value.IsNull() && IsMappable(value.GetType()) ? FindValueMapTable(declaration) : nullptr;
    return map ? TextInMap(value, *map)
               : TextWithQualifiers(value, TCimHTTPPropertyDecl::DisplayQualifiersOf(std::move(declaration)));
}

std::vector<std::string> TCimHTTPProperty::ToStringVector() const {
    const TCIMValue& value = GetValue(TCIMContext());
    const auto map =
        !value.IsNull() && IsMappableArray(value.GetType()) ? FindValueMapTable(LockDeclaration()) : nullptr;
    if (!map) {
        return ToStringVectorWithBase();
    }
    return ElementTexts(value, [&](const TCIMValue& element) {
        return element.IsNull() ? ToStringWithQualifiers(element) : TextInMap(element, *map);
    });
}

std::vector<std::string> TCimHTTPProperty::ToStringVectorWithBase() const {
    const TCIMValue& value = GetValue(TCIMContext());
    if (!IsArray(TCIMContext())) {
        return {ToStringWithQualifiers(value)};
    }
    return ElementTexts(value, [this](const TCIMValue& element) { return ToStringWithQualifiers(element); });
}

std::string TCimHTTPProperty::ToStringWithQualifiers(const TCIMValue& value) const {
    return TextWithQualifiers(value, TCimHTTPPropertyDecl::DisplayQualifiersOf(LockDeclaration()));
}

std::string TCimHTTPProperty::ToStringWithBase(const TCIMValue& value) const {
    return TextWithBase(value, TCimHTTPPropertyDecl::DisplayQualifiersOf(LockDeclaration()));
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
    const std::uint64_t number = ToNumber(value);
    const auto row = std::find_if(table.begin(), table.end(), [number](const TValueMapEntry& entry) {
        return entry.low <= number && number <= entry.high;
    });
    return row != table.end() ? row->text : TextOfOther(value, defaultText);
}

} // namespace NQORVYX20
