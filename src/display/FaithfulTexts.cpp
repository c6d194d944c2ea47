#include "display/FaithfulTexts.h"

#include "display/DateTimeText.h"
#include "display/DisplayQualifiers.h"
#include "display/ProgrammaticUnit.h"
#include "display/QuantityText.h"
#include "display/SensorUnits.h"
#include "display/UnitText.h"

#include <limits>
#include <type_traits>

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

constexpr unsigned char kDecimal = 10;
constexpr unsigned kArrayBit = ECIMType::eCIMArrayUnknown;

ECIMType ElementType(ECIMType type) { return static_cast<ECIMType>(static_cast<unsigned>(type) & ~kArrayBit); }

template <typename Number>
std::optional<ExactNumber> ExactNumberOf(Number number, const TCIMValue& value) {
    if constexpr (std::is_unsigned_v<Number>) {
        return ExactNumber::Of(static_cast<std::uint64_t>(number));
    } else if constexpr (std::is_integral_v<Number>) {
        return ExactNumber::Of(static_cast<std::int64_t>(number));
    } else {
        return ExactNumber::Read(value.ToString(kDecimal));
    }
}

/// Whether the value is the greatest of its type, by which servers mean that there is no limit, or no number.
template <typename Number>
bool IsGreatest(Number number) {
    return std::is_integral_v<Number> && number == std::numeric_limits<Number>::max();
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

bool FaithfulTexts::ShowsAsItIs() const {
    return base_ == kDecimal && !map_ && !bits_ && !unit_ && unknownUnit_.empty() && !MayHaveUnitOfInstance();
}

std::vector<std::string> FaithfulTexts::OfElements(const TCIMValue& value, const DisplayChoice& choice) const {
    std::vector<std::string> texts;
    AddTo(texts, value, choice);
    return texts;
}

void FaithfulTexts::AddElements(const TCIMValue& value, const DisplayChoice& choice, TextMemory& texts) const {
    AddTo(texts, value, choice);
}

template <typename Texts>
void FaithfulTexts::AddTo(Texts& texts, const TCIMValue& value, const DisplayChoice& choice) const {
    const auto append = [&](const TCIMValue& element, std::string& text) { Append(element, choice, text); };
    if (!value.IsArray()) {
        AddEach({value}, texts, append);
    } else if (!value.IsNull()) {
        AddEach(value, texts, append);
    }
}

const std::string* FaithfulTexts::Find(const TCIMValue& value, const DisplayChoice& choice) const {
    return value.Visit([&](const auto& content) -> const std::string* {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Content, TCIMValue::TCIMType>) {
            return &nullText_;
        } else if constexpr (std::is_same_v<Content, std::vector<TCIMValue>>) {
            return nullptr;
        } else {
            const std::string* const found = map_ ? map_->Find(value) : nullptr;
            if constexpr (std::is_same_v<Content, std::string>) {
                return found == nullptr && (!map_ || !choice.saysWhatIsNot) ? &content : found;
            } else {
                return found;
            }
        }
    });
}

void FaithfulTexts::AppendMade(const TCIMValue& value, const DisplayChoice& choice, std::string& text) const {
    value.Visit([&](const auto& content) {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Content, TCIMDateTime>) {
            AppendDateTimeText(content.Characters(), text);
            return;
        } else if constexpr (std::is_same_v<Content, std::vector<TCIMValue>>) {
            AppendList(content, choice, text);
            return;
        } else if constexpr (std::is_arithmetic_v<Content> && !std::is_same_v<Content, bool>) {
            AppendNumber(content, value, choice, text);
        } else {
            value.AppendTo(text);
        }
        if (map_ && choice.saysWhatIsNot) {
            text += " (not in the map)";
        }
    });
}

void FaithfulTexts::AppendList(const std::vector<TCIMValue>& elements, const DisplayChoice& choice,
                               std::string& text) const {
    const char* separator = "{";
    for (const TCIMValue& element : elements) {
        text += separator;
        Append(element, choice, text);
        separator = ", ";
    }
    text += elements.empty() ? "{}" : "}";
}

template <typename Number>
void FaithfulTexts::AppendNumber(Number number, const TCIMValue& value, const DisplayChoice& choice,
                                 std::string& text) const {
    if constexpr (std::is_unsigned_v<Number>) {
        if (bits_) {
            const std::string names = bits_->TextOf(number);
            text += names.empty() ? value.ToString(kDecimal) : names;
            return;
        }
    }
    if (choice.unit != nullptr || unit_) {
        AppendQuantity(number, value, choice, text);
        return;
    }
    if (base_ == kDecimal || std::is_floating_point_v<Number>) {
        value.AppendTo(text);
    } else {
        text += value.ToString(base_);
    }
    if (!unknownUnit_.empty()) {
        text += ' ';
        text += unknownUnit_;
    }
}

template <typename Number>
void FaithfulTexts::AppendQuantity(Number number, const TCIMValue& value, const DisplayChoice& choice,
                                   std::string& text) const {
    const Unit& unit = choice.unit != nullptr ? *choice.unit : *unit_;
    const auto exact = choice.isUnscaled || IsGreatest(number) ? std::nullopt : ExactNumberOf(number, value);
    text += exact ? QuantityText(*exact, unit) : UnscaledText(value.ToString(kDecimal), unit);
}

} // namespace NQORVYX20
