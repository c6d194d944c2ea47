#include "output/InstanceListing.h"

#include <algorithm>
#include <array>

#include "Failure.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "host/TVYXException.h"
#include "output/DisplayText.h"
#include "output/TypeText.h"
#include "text/NearestNames.h"
#include "text/Pattern.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;
using ECIMType = TCIMValue::TCIMType::ECIMType;
using Properties = std::vector<boost::shared_ptr<ICIMPropertyDecl>>;

constexpr unsigned char kDecimal = 10;

/// A number, perhaps with a unit, and not a word of a value map.
bool ShowsNumbers(const ICIMPropertyDecl& property, bool is_raw) {
    const auto type = property.GetType(TCIMContext());
    bool is_mapped = false;
    property.GetQualifier("ValueMap", is_mapped, TCIMContext());
    return type >= ECIMType::eCIMUint8 && type <= ECIMType::eCIMReal64 && (is_raw || !is_mapped);
}

bool IsKey(const ICIMPropertyDecl& property) {
    bool is_found = false;
    const auto key = property.GetQualifier("Key", is_found, TCIMContext());
    return is_found && key->GetValue(TCIMContext()) == TCIMValue(true);
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

boost::shared_ptr<ICIMPropertyDecl> FindProperty(const ICIMClass& cls, const std::string& name) {
    try {
        return cls.GetPropertyDecl(name, TCIMContext());
    } catch (const TVYXException&) {
        return {}; // not even the form of a name
    }
}

} // namespace

Properties PropertiesOf(const ICIMClass& cls) {
    Properties properties;
    cls.EnumeratePropertyDecls(
        [&](const boost::shared_ptr<ICIMPropertyDecl>& property) {
            properties.push_back(property);
            return true;
        },
        TCIMContext());
    std::stable_partition(properties.begin(), properties.end(), [](const auto& property) { return IsKey(*property); });
    return properties;
}

std::vector<std::string> NamesOf(const Properties& properties) {
    std::vector<std::string> names;
    names.reserve(properties.size());
    for (const auto& property : properties) {
        names.push_back(property->GetName(TCIMContext()));
    }
    return names;
}

Properties PropertiesOf(const ICIMClass& cls, const std::vector<std::string>& names) {
    Properties properties;
    for (const std::string& name : names) {
        properties.push_back(FindProperty(cls, name));
        if (!properties.back()) {
            throw Failure(Failure::kUsage, "the class " + cls.GetName(TCIMContext()) + " has no property " + name +
                                               DidYouMean(NearestNames(name, NamesOf(PropertiesOf(cls)))));
        }
    }
    return properties;
}

std::string InstanceListing::Text(const ICIMProperty& property) const {
    return is_raw_ ? property.GetValue(TCIMContext()).ToString(kDecimal) : DisplayText(access_, property).Joined();
}

Cell InstanceListing::CellOf(ICIMInstance& instance, const std::string& name) const {
    const auto property = instance.GetProperty(name, TCIMContext());
    return {property->GetValue(TCIMContext()), Text(*property)};
}

Listing InstanceListing::Table(const Instances& instances, const Properties& properties) const {
    std::vector<Listing::Column> columns;
    columns.reserve(properties.size());
    for (const auto& property : properties) {
        columns.push_back({property->GetName(TCIMContext()),
                           ShowsNumbers(*property, is_raw_) ? Listing::Align::kRight : Listing::Align::kLeft,
                           ImportanceOf(*property)});
    }
    Listing listing(columns);
    for (const auto& instance : instances) {
        std::vector<Cell> row;
        row.reserve(columns.size());
        for (const Listing::Column& column : columns) {
            row.push_back(CellOf(*instance, column.heading));
        }
        listing.AddRow(std::move(row));
    }
    return listing;
}

void InstanceListing::AddValue(const ICIMPropertyDecl& property, const std::string& type, ICIMInstance& instance,
                               std::vector<Cell>& row) const {
    const std::string& name = property.GetName(TCIMContext());
    Cell cell = CellOf(instance, name);
    row.emplace_back(name);
    row.emplace_back(type);
    if (cell.value.IsNull()) {
        row.push_back(Cell::Null());
    } else {
        std::string text = cell.value.ToString(kDecimal);
        row.emplace_back(std::move(cell.value), std::move(text));
    }
    row.emplace_back(cell.text);
}

Listing InstanceListing::Values(const Instances& instances, const Properties& properties) const {
    Listing listing({{"Path"}, {"Property"}, {"Type"}, {"Value"}, {"Text"}});
    std::vector<std::string> types;
    types.reserve(properties.size());
    for (const auto& property : properties) {
        types.push_back(TypeText(property->GetType(TCIMContext())));
    }
    for (const auto& instance : instances) {
        const std::string path = instance->BuildPath(TCIMContext()).GetPath();
        for (std::size_t i = 0; i < properties.size(); ++i) {
            std::vector<Cell> row;
            row.reserve(listing.Columns().size());
            row.emplace_back(path);
            AddValue(*properties[i], types[i], *instance, row);
            listing.AddRow(std::move(row));
        }
    }
    return listing;
}

Listing InstanceListing::Values(ICIMInstance& instance, const Properties& properties) const {
    Listing listing({Listing::Key("Property"), {"Type"}, Listing::Key("Value"), {"Text"}});
    for (const auto& property : properties) {
        std::vector<Cell> row;
        AddValue(*property, TypeText(property->GetType(TCIMContext())), instance, row);
        listing.AddRow(std::move(row));
    }
    return listing;
}

bool IsEmpty(const Instances& instances, const ICIMPropertyDecl& property) {
    return std::all_of(instances.begin(), instances.end(), [&](const auto& instance) {
        const auto held = instance->GetProperty(property.GetName(TCIMContext()), TCIMContext());
        return held->GetValue(TCIMContext()).ToString(kDecimal).empty();
    });
}

} // namespace cimhttp
