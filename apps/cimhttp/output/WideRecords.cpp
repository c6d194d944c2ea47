#include "output/WideRecords.h"

#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "output/Json.h"
#include "output/ValueTexts.h"

#include <utility>
#include <vector>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

/// JSON for an array that is not null.
std::string RawOrJson(const TCIMValue& value) {
    return value.IsArray() && !value.IsNull() ? JsonValue(value) : RawText(value);
}

/// A JSON array of the texts of an array's elements, in which null stays null.
std::string TextsJson(const std::vector<TCIMValue>& elements, const std::vector<std::string>& texts) {
    auto text = texts.begin();
    return JsonArray(elements, [&](const TCIMValue& element) {
        const std::string& shown = *text++;
        return element.IsNull() ? "null" : JsonText(shown);
    });
}

std::string Text(const ICIMInstance& instance, const ICIMProperty& property, const ValueTexts& texts, bool isRaw) {
    const TCIMValue& value = property.GetValue(TCIMContext());
    if (isRaw) {
        return RawOrJson(value);
    }
    const DisplayText display = texts.Of(instance, property);
    return value.IsArray() ? TextsJson(value, display.Texts()) : display.Joined();
}

Cell CellOf(const ICIMInstance& instance, const std::string& name, const ValueTexts& texts, bool isRaw) {
    const auto property = FindProperty(instance, name);
    if (!property || property->GetValue(TCIMContext()).IsNull()) {
        return Cell::Null();
    }
    return {Text(instance, *property, texts, isRaw)};
}

} // namespace

Listing WideRecords(const Instances& instances, const Properties& properties, const ValueTexts& texts, bool isRaw,
                    const std::string& nameSpace) {
    const std::vector<std::string> names = NamesOf(properties);
    std::vector<Listing::Column> columns{{"Class"}, {"Path"}};
    for (const std::string& name : names) {
        columns.push_back({name});
    }
    Listing listing(std::move(columns));
    listing.SetVaryingColumns();
    for (const auto& instance : instances) {
        std::vector<Cell> row{ClassNameOf(*instance), PathOf(*instance, nameSpace)};
        row.reserve(listing.Columns().size());
        for (const std::string& name : names) {
            row.push_back(CellOf(*instance, name, texts, isRaw));
        }
        listing.AddRow(std::move(row));
    }
    return listing;
}

} // namespace cimhttp
