#include "display/FaithfulTexts.h"

#include "display/DateTimeText.h"
#include "display/DisplayQualifiers.h"
#include "display/NumberTypes.h"
#include "display/ProgrammaticUnit.h"
#include "display/QuantityText.h"
#include "display/SensorUnits.h"
#include "display/SignedNumber.h"
#include "display/UnitText.h"

#include <limits>

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

constexpr unsigned char kDecimal = 10;
constexpr unsigned kArrayBit = ECIMType::eCIMArrayUnknown;

ECIMType ElementType(ECIMType type) { return static_cast<ECIMType>(static_cast<unsigned>(type) & ~kArrayBit); }

std::optional<ExactNumber> ExactNumberOf(const TCIMValue& value) {
    if (IsUnsigned(value.GetType())) {
        return ExactNumber::Of(static_cast<std::uint64_t>(static_cast<unsigned long long>(value)));
    }
    if (IsSigned(value.GetType())) {
        const auto number = SignedNumber(value);
        return number ? std::optional(ExactNumber::Of(*number)) : std::nullopt;
    }
    return ExactNumber::Read(value.ToString(kDecimal));
}

template <typename Number>
constexpr std::uint64_t Greatest() {
    return static_cast<std::uint64_t>(std::numeric_limits<Number>::max());
}

/// The greatest number of an integer type; 0 for others.
std::uint64_t GreatestOf(ECIMType type) {
    switch (type) {
    case ECIMType::eCIMUint8:
        return Greatest<std::uint8_t>();
    case ECIMType::eCIMSint8:
        return Greatest<std::int8_t>();
    case ECIMType::eCIMUint16:
        return Greatest<std::uint16_t>();
    case ECIMType::eCIMSint16:
        return Greatest<std::int16_t>();
    case ECIMType::eCIMUint32:
        return Greatest<std::uint32_t>();
    case ECIMType::eCIMSint32:
        return Greatest<std::int32_t>();
    case ECIMType::eCIMUint64:
        return Greatest<std::uint64_t>();
    case ECIMType::eCIMSint64:
        return Greatest<std::int64_t>();
    default:
        return 0;
    }
}

/// Whether the value is the greatest of its type, by which servers mean that there is no limit, or no number.
bool IsGreatest(ECIMType type, const ExactNumber& number) {
    return number.mantissa != 0 && !number.isNegative && number.mantissa == GreatestOf(type);
}

bool IsMereCount(const Unit& unit) { return unit.symbol.empty() || unit.symbol == "cycles"; }

} // namespace

FaithfulTexts::FaithfulTexts(const std::string& name, TCIMValue::TCIMType type, const DisplayQualifiers& qualifiers)
    : isNamedAsReading_(SensorUnits::IsReading(name)) {
    static const DisplayQualifiers::TName kNullDisplay("NULLDISPLAY");
    static const DisplayQualifiers::TName kBase("BASE");
    static const DisplayQualifiers::TName kValues("Values");
    static const DisplayQualifiers::TName kValueMap("ValueMap");
    static const DisplayQualifiers::TName kBitValues("BitValues");
    static const DisplayQualifiers::TName kBitMap("BitMap");
    static const DisplayQualifiers::TName kPUnit("PUnit");
    static const DisplayQualifiers::TName kUnits("Units");
    static const DisplayQualifiers::TName kUnitHolder("ISPUnit");
    nullText_ = qualifiers.GetString(kNullDisplay).value_or("");
    base_ = qualifiers.GetUint8(kBase).value_or(kDecimal);
    if (const auto texts = qualifiers.GetTexts(kValues); texts && !texts->empty()) {
        map_.emplace(ElementType(type), qualifiers.GetTexts(kValueMap), *texts);
    }
    if (const auto names = qualifiers.GetTexts(kBitValues)) {
        bits_.emplace(qualifiers.GetTexts(kBitMap), *names);
    }
    unitHolder_ = qualifiers.GetString(kUnitHolder).value_or("");
    const std::string programmatic = qualifiers.GetString(kPUnit).value_or("");
    const std::string words = qualifiers.GetString(kUnits).value_or("");
    unit_ = ParseProgrammaticUnit(programmatic);
    if (!unit_ || (IsMereCount(*unit_) && !words.empty())) { // what is counted, the words say
        unit_ = ParseUnitText(words);
        unknownUnit_ = unit_ ? "" : words.empty() ? programmatic : words;
    }
}

std::string FaithfulTexts::Of(const TCIMValue& value, const DisplayChoice& choice) const {
    if (value.IsNull() || !value.IsArray()) {
        return OfScalar(value, choice);
    }
    std::string joined = "{";
    const char* separator = "";
    for (const std::string& text : OfElements(value, choice)) {
        joined.append(separator).append(text);
        separator = ", ";
    }
    return joined + '}';
}

std::vector<std::string> FaithfulTexts::OfElements(const TCIMValue& value, const DisplayChoice& choice) const {
    if (!value.IsArray()) {
        return {OfScalar(value, choice)};
    }
    std::vector<std::string> texts;
    if (!value.IsNull()) {
        const std::vector<TCIMValue>& elements = value;
        texts.reserve(elements.size());
        for (const TCIMValue& element : elements) {
            texts.push_back(OfScalar(element, choice));
        }
    }
    return texts;
}

std::string FaithfulTexts::OfScalar(const TCIMValue& value, const DisplayChoice& choice) const {
    if (value.IsNull()) {
        return nullText_;
    }
    if (const std::string* const text = map_ ? map_->Find(value) : nullptr) {
        return *text;
    }
    const ECIMType type = value.GetType();
    if (type == ECIMType::eCIMDateTime) {
        return DateTimeText(value.ToString(kDecimal));
    }
    const bool isNumber = IsUnsigned(type) || IsSigned(type) || IsReal(type);
    const std::string text = isNumber ? OfNumber(value, choice) : value.ToString(kDecimal);
    return map_ && choice.saysWhatIsNot ? text + " (not in the map)" : text;
}

std::string FaithfulTexts::OfNumber(const TCIMValue& value, const DisplayChoice& choice) const {
    if (bits_ && IsUnsigned(value.GetType())) {
        const std::string names = bits_->TextOf(static_cast<unsigned long long>(value));
        return names.empty() ? value.ToString(kDecimal) : names;
    }
    if (choice.unit != nullptr || unit_) {
        return WithUnitOf(value, choice);
    }
    const std::string text = value.ToString(IsReal(value.GetType()) ? kDecimal : base_);
    return unknownUnit_.empty() ? text : text + ' ' + unknownUnit_;
}

std::string FaithfulTexts::WithUnitOf(const TCIMValue& value, const DisplayChoice& choice) const {
    const Unit& unit = choice.unit != nullptr ? *choice.unit : *unit_;
    const auto number = choice.isUnscaled ? std::nullopt : ExactNumberOf(value);
    return number && !IsGreatest(value.GetType(), *number) ? QuantityText(*number, unit)
                                                           : UnscaledText(value.ToString(kDecimal), unit);
}

} // namespace NQORVYX20
