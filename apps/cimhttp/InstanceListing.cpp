#include "InstanceListing.h"

#include <algorithm>
#include <sstream>

#include "DisplayText.h"
#include "Failure.h"
#include "NearestNames.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "host/TVYXException.h"

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

boost::shared_ptr<ICIMPropertyDecl> FindProperty(const ICIMClass& cls, const std::string& name) {
    try {
        return cls.GetPropertyDecl(name, TCIMContext());
    } catch (const TVYXException&) {
        return {}; // not even the form of a name
    }
}

std::vector<std::string> NamesOf(const Properties& properties) {
    std::vector<std::string> names;
    names.reserve(properties.size());
    for (const auto& property : properties) {
        names.push_back(property->GetName(TCIMContext()));
    }
    return names;
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
                           IsKey(*property)});
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

std::vector<Cell> InstanceListing::ValueRow(ICIMInstance& instance, const ICIMPropertyDecl& property) const {
    const Cell cell = CellOf(instance, property.GetName(TCIMContext()));
    return {property.GetName(TCIMContext()), TypeText(property),
            cell.value.IsNull() ? Cell::Null() : Cell(cell.value, cell.value.ToString(kDecimal)), Cell(cell.text)};
}

Listing InstanceListing::Values(const Instances& instances, const Properties& properties) const {
    Listing listing({{"Path"}, {"Property"}, {"Type"}, {"Value"}, {"Text"}});
    for (const auto& instance : instances) {
        const std::string path = instance->BuildPath(TCIMContext()).GetPath();
        for (const auto& property : properties) {
            std::vector<Cell> row = ValueRow(*instance, *property);
            row.insert(row.begin(), path);
            listing.AddRow(std::move(row));
        }
    }
    return listing;
}

Listing InstanceListing::Values(ICIMInstance& instance, const Properties& properties) const {
    Listing listing(
        {{"Property", Listing::Align::kLeft, true}, {"Type"}, {"Value", Listing::Align::kLeft, true}, {"Text"}});
    for (const auto& property : properties) {
        listing.AddRow(ValueRow(instance, *property));
    }
    return listing;
}

bool IsEmpty(const Instances& instances, const ICIMPropertyDecl& property) {
    return std::all_of(instances.begin(), instances.end(), [&](const auto& instance) {
        const auto held = instance->GetProperty(property.GetName(TCIMContext()), TCIMContext());
        return held->GetValue(TCIMContext()).ToString(kDecimal).empty();
    });
}

std::string TypeText(const ICIMPropertyDecl& property) {
    std::ostringstream name;
    name << property.GetType(TCIMContext());
    return name.str();
}

} // namespace cimhttp
