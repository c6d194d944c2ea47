#include "display/CompatibleTexts.h"

#include "display/NumberTypes.h"
#include "display/ValueMapTable.h"
#include "host/ICIMPropertyDecl.h"
#include "host/TCIMValue.h"
#include "host/TVYXException.h"

#include <type_traits>
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

/// What is known already, or else what is looked up now.
template <typename Fact, typename LookUp>
const Fact& Known(std::optional<Fact>& known, const LookUp& lookUp) {
    if (!known) {
        known.emplace(lookUp());
    }
    return *known;
}

} // namespace

CompatibleTexts::CompatibleTexts(const ICIMPropertyDecl& declaration, DisplayQualifiers qualifiers)
    : declaration_(declaration), qualifiers_(std::move(qualifiers)) {}

CompatibleTexts::CompatibleTexts(const ICIMPropertyDecl& declaration, DisplayQualifiers qualifiers, TMap map)
    : CompatibleTexts(declaration, std::move(qualifiers)) {
    known_.map = std::move(map);
    NullDisplay();
    Base();
    Units();
    IsCpuTime();
    FixedUnits();
    IsAbbreviated();
    qualifiers_.reset();
}

const CompatibleTexts::TMap& CompatibleTexts::Map() const {
    return Known(known_.map, [this] { return MakeValueMapTable(*qualifiers_); });
}

const std::string& CompatibleTexts::NullDisplay() const {
    static const DisplayQualifiers::TName kNullDisplay("NULLDISPLAY");
    return Known(known_.nullDisplay, [this] { return qualifiers_->GetString(kNullDisplay).value_or(""); });
}

unsigned char CompatibleTexts::Base() const {
    static const DisplayQualifiers::TName kBase("BASE");
    return Known(known_.base, [this] { return qualifiers_->GetUint8(kBase).value_or(kDecimal); });
}

const std::optional<DisplayUnits>& CompatibleTexts::Units() const {
    static const DisplayQualifiers::TName kUnits("UNITS");
    return Known(known_.units, [this] {
        const auto units = qualifiers_->GetString(kUnits);
        return units ? std::optional<DisplayUnits>(*units) : std::nullopt;
    });
}

bool CompatibleTexts::IsCpuTime() const {
    static const DisplayQualifiers::TName kDisplayCpuTime("DISPLAYCPUTIME");
    return Known(known_.isCpuTime, [this] { return qualifiers_->Has(kDisplayCpuTime); });
}

const std::string& CompatibleTexts::FixedUnits() const {
    static const DisplayQualifiers::TName kDisplayFixedUnits("DISPLAYFIXEDUNITS");
    return Known(known_.fixedUnits, [this] { return qualifiers_->GetString(kDisplayFixedUnits).value_or(""); });
}

bool CompatibleTexts::IsAbbreviated() const {
    static const DisplayQualifiers::TName kAbbreviateUnits("ABBREVIATEUNITS");
    return Known(known_.isAbbreviated, [this] { return qualifiers_->Has(kAbbreviateUnits); });
}

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

const std::string* CompatibleTexts::Find(const TCIMValue& value, const DisplayChoice& /*choice*/) const {
    return value.Visit([&](const auto& content) -> const std::string* {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Content, TCIMValue::TCIMType>) {
            return &NullDisplay();
        } else if constexpr (std::is_same_v<Content, std::string>) {
            Base(); // texts have no base; the look-up is for the failures that it may report
            return &content;
        } else if constexpr (std::is_integral_v<Content> && !std::is_signed_v<Content>) {
            return Map() ? Map()->Find(static_cast<std::uint64_t>(content)) : nullptr;
        } else {
            return nullptr;
        }
    });
}

void CompatibleTexts::AppendMade(const TCIMValue& value, const DisplayChoice& /*choice*/, std::string& text) const {
    const bool isMapped = IsMappable(value.GetType()) && Map();
    if (isMapped) {
        text += TextOfOther(value, Map()->DefaultText());
    } else {
        AppendWithoutMap(value, text);
    }
}

void CompatibleTexts::AppendInMap(const TCIMValue& value, const ValueMapTable& map, std::string& text) const {
    if (const std::string* const found = map.Find(NumberOf(value))) {
        text += *found;
    } else {
        text += TextOfOther(value, map.DefaultText());
    }
}

std::vector<std::string> CompatibleTexts::OfElements(const TCIMValue& value, const DisplayChoice& /*choice*/) const {
    std::vector<std::string> texts;
    AddTo(texts, value);
    return texts;
}

void CompatibleTexts::AddElements(const TCIMValue& value, const DisplayChoice& /*choice*/, TextMemory& texts) const {
    AddTo(texts, value);
}

template <typename Texts>
void CompatibleTexts::AddTo(Texts& texts, const TCIMValue& value) const {
    const TMap* const map = !value.IsNull() && IsMappableArray(value.GetType()) ? &Map() : nullptr;
    if (map == nullptr || !*map) {
        AddWithoutMapTo(texts, value);
        return;
    }
    AddEach(value, texts, [&](const TCIMValue& element, std::string& text) {
        if (element.IsNull()) {
            AppendWithoutMap(element, text);
        } else {
            AppendInMap(element, **map, text);
        }
    });
}

template <typename Texts>
void CompatibleTexts::AddWithoutMapTo(Texts& texts, const TCIMValue& value) const {
    const auto append = [this](const TCIMValue& element, std::string& text) { AppendWithoutMap(element, text); };
    if (!declaration_.IsArray(TCIMContext())) {
        AddEach({value}, texts, append);
    } else if (!value.IsNull()) {
        AddEach(value, texts, append);
    }
}

std::vector<std::string> CompatibleTexts::OfElementsWithoutMap(const TCIMValue& value) const {
    std::vector<std::string> texts;
    AddWithoutMapTo(texts, value);
    return texts;
}

std::string CompatibleTexts::WithoutMap(const TCIMValue& value) const {
    std::string text;
    AppendWithoutMap(value, text);
    return text;
}

std::string CompatibleTexts::WithBase(const TCIMValue& value) const { return value.ToString(Base()); }

void CompatibleTexts::AppendWithoutMap(const TCIMValue& value, std::string& text) const {
    if (value.IsNull()) {
        text += NullDisplay();
        return;
    }
    const auto* const units = IsUnsigned(value.GetType()) ? &Units() : nullptr;
    if (units != nullptr && *units) {
        AppendWithUnits(value, **units, text);
    } else {
        AppendWithBase(value, text);
    }
}

void CompatibleTexts::AppendWithBase(const TCIMValue& value, std::string& text) const {
    const unsigned char base = Base();
    if (base == kDecimal) {
        value.AppendTo(text);
    } else {
        text += value.ToString(base);
    }
}

void CompatibleTexts::AppendWithUnits(const TCIMValue& value, const DisplayUnits& units, std::string& text) const {
    if (units.IsData()) {
        const std::string& fixedUnits = FixedUnits();
        units.AppendData(NumberOf(value), fixedUnits, IsAbbreviated(), text);
        return;
    }
    if (units.IsTime()) {
        IsCpuTime(); // CPU times read like all other times; the look-up is for the failures that it may report
        if (const auto time = units.TimeText(NumberOf(value))) {
            text += *time;
            return;
        }
    }
    AppendWithBase(value, text);
}

} // namespace NQORVYX20
