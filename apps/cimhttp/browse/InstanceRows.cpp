#include "browse/InstanceRows.h"

#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMPropertyDecl.h"
#include "monitoring/Quantity.h"
#include "output/DisplayText.h"
#include "output/Json.h"
#include "output/TypeText.h"
#include "text/Ascii.h"

#include <utility>

namespace cimhttp {

using namespace NQORVYX20;

namespace {

PropertySelector SelectorOf(std::vector<std::string> names) {
    return names.empty() ? PropertySelector(PropertySelector::Order::kGiven)
                         : PropertySelector(std::move(names), PropertySelector::Order::kGiven);
}

Properties ColumnsOf(const ICIMClass& cls, const std::vector<std::string>& names) {
    const Properties declared = PropertiesOf(cls);
    return names.empty() || declared.empty() ? declared : Chosen(declared, names, cls.GetName(TCIMContext()));
}

DisplayForm Unscaled() {
    DisplayForm form;
    form.isUnscaled = true;
    return form;
}

std::string ExactText(const TCIMValue& value) {
    std::string text;
    for (const std::string& element : PlainTexts(value)) {
        text += (text.empty() ? "" : ", ") + element;
    }
    return text;
}

bool IsArray(TCIMValue::TCIMType type) { return type >= TCIMValue::TCIMType::ECIMType::eCIMArrayUnknown; }

} // namespace

InstanceRows::InstanceRows(const ICIMClass& cls, std::vector<std::string> names, const ValueTexts& texts)
    : values_(SelectorOf(names)), shown_(texts), exact_(texts.Access(), Unscaled()) {
    for (const auto& declaration : ColumnsOf(cls, names)) {
        ColumnOf(declaration);
    }
}

void InstanceRows::Append(const Instances& instances) {
    for (const auto& instance : instances) {
        AppendRow(*instance);
    }
}

std::string InstanceRows::Take() {
    std::string rows = "[" + std::string(rows_.Text()) + "]";
    rows_.Clear();
    count_ = 0;
    return rows;
}

std::optional<std::string> InstanceRows::TakeColumns() {
    if (!hasNewColumns_) {
        return std::nullopt;
    }
    hasNewColumns_ = false;
    return JsonArray(columns_, [](const Column& column) {
        const ICIMPropertyDecl& declaration = *column.declaration;
        const auto type = declaration.GetType(TCIMContext());
        return JsonObject()
            .Add("name", JsonText(declaration.GetName(TCIMContext())))
            .Add("type", JsonText(ElementTypeText(type)))
            .Add("array", JsonValue(IsArray(type)))
            .Add("key", JsonValue(IsKey(declaration)))
            .Add("number", JsonValue(column.isNumber))
            .Add("counter", JsonValue(column.isNumber && IsCounter(declaration)))
            .Add("unit", JsonText(column.unit))
            .Add("times", column.times)
            .Text();
    });
}

std::size_t InstanceRows::ColumnOf(const Declaration& declaration) {
    const auto [known, isNew] = numbers_.emplace(AsciiLower(declaration->GetName(TCIMContext())), columns_.size());
    if (isNew) {
        const bool isArray = IsArray(declaration->GetType(TCIMContext()));
        columns_.push_back({declaration, HasNumbers(*declaration) && !HasValueMap(*declaration) && !isArray});
        hasNewColumns_ = true;
    }
    return known->second;
}

void InstanceRows::PrepareClass() {
    places_.clear();
    for (const auto& declaration : values_.Declarations()) {
        places_.push_back(ColumnOf(declaration));
    }
}

void InstanceRows::AppendRow(ICIMInstance& instance) {
    if (values_.TurnTo(instance)) {
        PrepareClass();
    }
    std::vector<std::string> cells(columns_.size(), "0");
    values_.Visit([&](std::size_t place, const TCIMValue& value) {
        const Declaration& declaration = values_.Declarations()[place];
        const std::size_t column = places_[place];
        NoteUnit(instance, column, declaration, value);
        cells[column] = CellOf(instance, declaration, value);
    });
    if (++count_ > 1) {
        rows_.Add(',');
    }
    rows_.Add(JsonObject()
                  .Add("path", JsonText(PathOf(instance)))
                  .Add("class", JsonText(ClassNameOf(instance)))
                  .Add("cells", JsonArray(cells, [](const std::string& cell) { return cell; }))
                  .Text());
}

std::string InstanceRows::CellOf(const ICIMInstance& instance, const Declaration& declaration, const TCIMValue& value) {
    shown_.TurnTo(instance, declaration, value);
    const std::string_view text = shown_.Joined();
    if (value.IsNull()) {
        return text.empty() ? "null" : "[" + JsonText(text) + ",null]";
    }
    const std::string exact = ExactText(value);
    return text == exact ? JsonText(text) : "[" + JsonText(text) + ',' + JsonText(exact) + ']';
}

/// The unit is that of the first number, since instances may tell it.
void InstanceRows::NoteUnit(const ICIMInstance& instance, std::size_t column, const Declaration& declaration,
                            const TCIMValue& value) {
    Column& known = columns_[column];
    if (!known.isNumber || known.hasUnit || value.IsNull()) {
        return;
    }
    const DisplayText text = exact_.Of(&instance, declaration, value);
    if (const auto quantity = text.IsList() ? std::nullopt : QuantityOf(PlainText(value), text.Texts().front())) {
        known.hasUnit = hasNewColumns_ = true;
        known.unit = quantity->unit.base;
        known.times = NumberText(quantity->unit.times / quantity->unit.per);
    }
}

} // namespace cimhttp
