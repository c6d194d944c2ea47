#include "display/CompatibleTexts.h"

#include "display/DisplayUnits.h"
#include "display/NumberTypes.h"
#include "display/ValueMapTable.h"
#include "host/ICIMPropertyDecl.h"
#include "host/TCIMValue.h"
#include "host/TVYXException.h"

#include <utility>

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

constexpr unsigned char kDecimal = 10;

bool IsMappable(ECIMType type) { return type == ECIMType::eCIMBoolean || IsUnsigned(type); }

bool IsMappableArray(ECIMType type) {
    return type == ECIMType::eCIMBooleanArray || type == ECIMType::eCIMUint8Array ||
           type == ECIMType::eCIMUint16Array || type == ECIMType::eCIMUint32Array || type == ECIMType::eCIMUint64Array;
}

std::string TextInMap(const TCIMValue& value, const ValueMapTable& map) {
    const std::string* const text = map.Find(CompatibleTexts::NumberOf(value));
    return text != nullptr ? *text : CompatibleTexts::TextOfOther(value, map.DefaultText());
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

CompatibleTexts::CompatibleTexts(const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                                 DisplayQualifiers qualifiers, TMapSource findMap)
    : declaration_(declaration), qualifiers_(std::move(qualifiers)), findMap_(findMap) {}

std::uint64_t CompatibleTexts::NumberOf(const TCIMValue& value) {
    if (value.IsNull() || !IsMappable(value.GetType())) {
        throw TVYXException(TVYXStatusCode::eNotSupported);
    }
    if (value.GetType() == ECIMType::eCIMBoolean) {
        return static_cast<bool>(value) ? 1 : 0;
    }
    return static_cast<unsigned long long>(value);
}

std::string CompatibleTexts::TextOfOther(const TCIMValue& value, const std::string& defaultText) {
    return defaultText.empty() ? value.ToString(kDecimal) : defaultText;
}

std::string CompatibleTexts::Of(const TCIMValue& value, const DisplayChoice& /*choice*/) const {
    const auto map = !value.IsNull() && IsMappable(value.GetType()) ? findMap_(declaration_) : nullptr;
    return map ? TextInMap(value, *map) : WithoutMap(value);
}

std::vector<std::string> CompatibleTexts::OfElements(const TCIMValue& value, const DisplayChoice& /*choice*/) const {
    const auto map = !value.IsNull() && IsMappableArray(value.GetType()) ? findMap_(declaration_) : nullptr;
    if (!map) {
        return OfElementsWithoutMap(value);
    }
    return ElementTexts(value, [&](const TCIMValue& element) {
        return element.IsNull() ? WithoutMap(element) : TextInMap(element, *map);
    });
}

std::vector<std::string> CompatibleTexts::OfElementsWithoutMap(const TCIMValue& value) const {
    if (!declaration_->IsArray(TCIMContext())) {
        return {WithoutMap(value)};
    }
    return ElementTexts(value, [this](const TCIMValue& element) { return WithoutMap(element); });
}

std::string CompatibleTexts::WithoutMap(const TCIMValue& value) const {
    static const DisplayQualifiers::TName kNullDisplay("NULLDISPLAY");
    static const DisplayQualifiers::TName kUnits("UNITS");
    if (value.IsNull()) {
        return qualifiers_.GetString(kNullDisplay).value_or("");
    }
    const auto units = IsUnsigned(value.GetType()) ? qualifiers_.GetString(kUnits) : std::nullopt;
    return units ? WithUnits(value, *units) : WithBase(value);
}

std::string CompatibleTexts::WithBase(const TCIMValue& value) const {
    static const DisplayQualifiers::TName kBase("BASE");
    return value.ToString(qualifiers_.GetUint8(kBase).value_or(kDecimal));
}

std::string CompatibleTexts::WithUnits(const TCIMValue& value, const std::string& units) const {
    static const DisplayQualifiers::TName kDisplayCpuTime("DISPLAYCPUTIME");
    static const DisplayQualifiers::TName kDisplayFixedUnits("DISPLAYFIXEDUNITS");
    static const DisplayQualifiers::TName kAbbreviateUnits("ABBREVIATEUNITS");
    const DisplayUnits display(units);
    if (display.IsTime()) {
        // CPU times read like all other times; the look-up is for the failures that it may report.
        qualifiers_.Has(kDisplayCpuTime);
        const auto text = display.TimeText(NumberOf(value));
        return text ? *text : WithBase(value);
    }
    if (!display.IsData()) {
        return WithBase(value);
    }
    const std::string fixedPrefix = qualifiers_.GetString(kDisplayFixedUnits).value_or("");
    return display.DataText(NumberOf(value), fixedPrefix, qualifiers_.Has(kAbbreviateUnits));
}

} // namespace NQORVYX20
