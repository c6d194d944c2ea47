#include "output/InstanceListing.h"

#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "output/TypeText.h"
#include "text/Names.h"

#include <algorithm>
#include <array>

namespace cimhttp {

namespace {

using namespace NQORVYX20;
using ECIMType = TCIMValue::TCIMType::ECIMType;

bool HasQualifier(const ICIMPropertyDecl& property, const char* name) {
    bool isFound = false;
    property.GetQualifier(name, isFound, TCIMContext());
    return isFound;
}

/// A number, perhaps with a unit, and not a word of a value map or the names of bits.
bool ShowsNumbers(const ICIMPropertyDecl& property, bool isRaw) {
    const auto type = property.GetType(TCIMContext());
    return type >= ECIMType::eCIMUint8 && type <= ECIMType::eCIMReal64 &&
           (isRaw || !(HasQualifier(property, "Values") || HasQualifier(property, "BitValues")));
}

/// The properties with which CIM names an element for people and says how it is, in any class.
bool IsNameOrState(const ICIMPropertyDecl& property) {
    static constexpr std::array<const char*, 4> kNames{"ElementName", "EnabledState", "HealthState",
                                                       "OperationalStatus"};
    return std::any_of(kNames.begin(), kNames.end(),
                       [&](const char* name) { return IsSameName(name, property.GetName(TCIMContext())); });
}

Listing::Importance ImportanceOf(const ICIMPropertyDecl& property) {
    if (IsKey(property)) {
        return Listing::Importance::kKey;
    }
    return IsNameOrState(property) ? Listing::Importance::kHigh : Listing::Importance::kUsual;
}

std::vector<Listing::Column> ColumnsOf(const Properties& properties, bool hasClass, bool isAsked, bool isRaw) {
    std::vector<Listing::Column> columns;
    if (hasClass) {
        columns.push_back({"Class", Listing::Align::kLeft, Listing::Importance::kHigh});
    }
    for (const auto& property : properties) {
        columns.push_back({property->GetName(TCIMContext()),
                           ShowsNumbers(*property, isRaw) ? Listing::Align::kRight : Listing::Align::kLeft,
                           isAsked ? Listing::Importance::kAsked : ImportanceOf(*property)});
    }
    return columns;
}

} // namespace

std::string InstanceListing::Text(const ICIMInstance& instance, const ICIMProperty& property) const {
    return isRaw_ ? RawText(property.GetValue(TCIMContext())) : texts_.Of(instance, property).Joined();
}

Cell InstanceListing::CellOf(const ICIMInstance& instance, const std::string& name) const {
    const auto property = FindProperty(instance, name);
    return property ? Cell(property->GetValue(TCIMContext()), Text(instance, *property)) : Cell("");
}

Listing InstanceListing::Table(const Instances& instances, const Properties& properties, bool hasClass,
                               bool isAsked) const {
    const std::vector<std::string> names = NamesOf(properties);
    Listing listing(ColumnsOf(properties, hasClass, isAsked, isRaw_));
    for (const auto& instance : instances) {
        std::vector<Cell> row;
        row.reserve(listing.Columns().size());
        if (hasClass) {
            row.emplace_back(ClassNameOf(*instance));
        }
        for (const std::string& name : names) {
            row.push_back(CellOf(*instance, name));
        }
        listing.AddRow(std::move(row));
    }
    return listing;
}

Listing InstanceListing::Values(const ICIMInstance& instance, const Properties& properties) const {
    Listing listing({Listing::Key("Property"), {"Type"}, Listing::Key("Value"), {"Text"}});
    for (const auto& property : properties) {
        const std::string& name = property->GetName(TCIMContext());
        const Cell cell = CellOf(instance, name);
        listing.AddRow(
            {name, TypeText(property->GetType(TCIMContext())), Cell(cell.value, RawText(cell.value)), cell.text});
    }
    return listing;
}

bool InstanceListing::IsEmpty(const Instances& instances, const ICIMPropertyDecl& property) const {
    const std::string& name = property.GetName(TCIMContext());
    return std::all_of(instances.begin(), instances.end(),
                       [&](const auto& instance) { return CellOf(*instance, name).text.empty(); });
}

bool InstanceListing::LacksValue(const ICIMInstance& instance, const ICIMPropertyDecl& property) const {
    return CellOf(instance, property.GetName(TCIMContext())).IsShownAsNull();
}

Listing::Importance InstanceListing::ImportanceOf(const ICIMPropertyDecl& property) {
    return cimhttp::ImportanceOf(property);
}

} // namespace cimhttp
