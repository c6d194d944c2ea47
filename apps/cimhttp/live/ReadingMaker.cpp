#include "live/ReadingMaker.h"

#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "live/KnownMaximum.h"
#include "monitoring/Quantity.h"
#include "output/InstanceListing.h"
#include "table/TableCell.h"
#include "text/TerminalText.h"
#include "text/TimeText.h"
#include "text/Utf8.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace cimhttp {

using namespace NQORVYX20;

namespace {

constexpr std::size_t kLongestText = 2048; // in bytes: no line of a terminal shows as much

/// The front of a server's text, safe to show, with a mark where it is cut off.
std::string ShownFront(std::string_view text) {
    if (text.size() <= kLongestText) {
        return Printable(text);
    }
    std::size_t end = kLongestText;
    while (end > kLongestText - kLongestUtf8 && IsContinuation(text[end])) {
        --end;
    }
    return Printable(text.substr(0, end)) + "…";
}

/// The number that a property is, with its unit; nothing for an array, null, and what is no number.
std::optional<Quantity> NumberOf(const ICIMInstance& instance, const ICIMProperty& property, const ValueTexts& exact) {
    const TCIMValue value = property.GetValue(TCIMContext());
    if (value.IsNull() || !HasNumbers(*property.GetDeclaration(TCIMContext()))) {
        return std::nullopt;
    }
    const DisplayText text = exact.Of(instance, property);
    return text.IsList() ? std::nullopt : QuantityOf(PlainText(value), text.Texts().front());
}

/// The greatest that the property can be, in its base unit.
std::optional<long double> GreatestOf(const ICIMInstance& instance, const std::string& name, const Quantity& quantity,
                                      const ValueTexts& exact) {
    if (quantity.unit.base == "%") {
        return 100;
    }
    const std::string maximum = MaximumOf(name);
    const auto property = maximum.empty() ? nullptr : FindProperty(instance, maximum);
    const auto greatest = property ? NumberOf(instance, *property, exact) : std::nullopt;
    const bool isOfOneUnit = greatest && greatest->unit.base == quantity.unit.base;
    return isOfOneUnit && greatest->InBase() > 0 ? std::optional(greatest->InBase()) : std::nullopt;
}

/// With two decimals.
std::string SmallNumberText(long double number) {
    constexpr long double kParts = 100;
    return NumberText(std::round(number * kParts) / kParts);
}

void SetNumber(LiveCell& cell, long double number) {
    cell.number = static_cast<double>(number);
    cell.places = PlacesOf(TCIMValue(static_cast<double>(number)));
}

void SetText(LiveCell& cell, std::string text) {
    cell.text = std::move(text);
    cell.width = DisplayWidth(cell.text);
}

void SetNull(LiveCell& cell) {
    cell.isNull = true;
    cell.places.clear();
    SetText(cell, kNullText);
}

} // namespace

LiveColumn ReadingMaker::ColumnOf(const ICIMPropertyDecl& property) const {
    LiveColumn column;
    column.name = property.GetName(TCIMContext());
    column.importance = isAsked_ ? Column::Importance::kAsked : InstanceListing::ImportanceOf(property);
    const bool isArray = property.GetType(TCIMContext()) >= TCIMValue::TCIMType::ECIMType::eCIMArrayUnknown;
    column.isNumber = HasNumbers(property) && !HasValueMap(property) && !isArray;
    column.isCounter = column.isNumber && IsCounter(property);
    return column;
}

LiveReading ReadingMaker::Make(const Properties& properties, const Instances& instances, CounterRates::Time time) {
    LiveReading reading;
    reading.time = time;
    reading.timeOfDay = TimeOfDay();
    for (const auto& property : properties) {
        reading.columns.push_back(ColumnOf(*property));
    }
    rates_.Begin(time);
    reading.rows.reserve(instances.size());
    for (const auto& instance : instances) {
        LiveRow& row = reading.rows.emplace_back();
        row.path = PathOf(*instance);
        row.cells.reserve(reading.columns.size());
        for (const LiveColumn& column : reading.columns) {
            row.cells.push_back(CellOf(*instance, row.path, column));
        }
    }
    reading.count = instances.size();
    reading.restarts = rates_.Restarts();
    return reading;
}

LiveCell ReadingMaker::CellOf(const ICIMInstance& instance, const std::string& path, const LiveColumn& column) {
    LiveCell cell;
    const auto property = FindProperty(instance, column.name);
    if (!property) { // the instance's own class does not declare it
        cell.isNull = true;
        return cell;
    }
    const TCIMValue value = property->GetValue(TCIMContext());
    const std::string text = texts_.Of(instance, *property).Joined();
    if (value.IsNull() && text.empty()) {
        SetNull(cell);
        return cell;
    }
    SetText(cell, ShownFront(text));
    cell.isNull = value.IsNull();
    if (!cell.isNull) {
        cell.places = PlacesOf(value);
    }
    if (column.isNumber && !cell.isNull) {
        AddNumber(instance, *property, path, column, cell);
    }
    return cell;
}

void ReadingMaker::AddNumber(const ICIMInstance& instance, const ICIMProperty& property, const std::string& path,
                             const LiveColumn& column, LiveCell& cell) {
    const auto quantity = NumberOf(instance, property, exact_);
    if (!quantity) { // such as a real that is infinite: it shows as it is
        return;
    }
    if (!column.isCounter) {
        cell.number = static_cast<double>(quantity->InBase());
        if (const auto greatest = GreatestOf(instance, column.name, *quantity, exact_)) {
            cell.share = static_cast<double>(std::clamp<long double>(quantity->InBase() / *greatest, 0, 1));
        }
        return;
    }
    const auto rate = rates_.Rate(path, column.name, quantity->number);
    if (!rate) {
        SetNull(cell);
        return;
    }
    constexpr long double kFew = 10;
    constexpr long double kPercent = 100;
    const UnitScale& unit = quantity->unit;
    if (unit.base == "s") { // time each second
        SetNumber(cell, unit.InBase(*rate) * kPercent);
        SetText(cell, SmallNumberText(unit.InBase(*rate) * kPercent) + " %");
        return;
    }
    SetNumber(cell, unit.InBase(*rate));
    if (*rate < kFew) {
        const std::string exact = exact_.Of(instance, property).Texts().front();
        const std::size_t blank = std::min(exact.find(' '), exact.size());
        SetText(cell, ShownFront(SmallNumberText(*rate) + exact.substr(blank) + "/s"));
        return;
    }
    const TCIMValue whole(static_cast<unsigned long long>(std::llround(*rate)));
    SetText(cell,
            ShownFront(texts_.Of(&instance, property.GetDeclaration(TCIMContext()), whole).Texts().front() + "/s"));
}

} // namespace cimhttp
