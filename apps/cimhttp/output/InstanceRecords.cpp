#include "output/InstanceRecords.h"

#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "output/Json.h"
#include "output/TypeText.h"
#include "output/ValueTexts.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;

Cell ValueCell(const TCIMValue& value) {
    return {value, value.IsArray() && !value.IsNull() ? JsonValue(value) : RawText(value)};
}

} // namespace

Listing InstanceRecords(const Instances& instances, PropertySelector selector, const ValueTexts& texts,
                        const std::string& nameSpace) {
    Listing listing({{"Path"}, {"Property"}, {"Type"}, {"Value"}, {"Text"}});
    for (const auto& instance : instances) {
        const std::string path = PathOf(*instance, nameSpace);
        for (const auto& declaration : selector.PropertiesFor(*instance)) {
            const std::string& name = declaration->GetName(TCIMContext());
            const auto property = instance->GetProperty(name, TCIMContext());
            std::vector<Cell> row;
            row.reserve(listing.Columns().size());
            row.emplace_back(path);
            row.emplace_back(name);
            row.emplace_back(TypeText(declaration->GetType(TCIMContext())));
            row.push_back(ValueCell(property->GetValue(TCIMContext())));
            row.emplace_back(texts.Of(*instance, *property).Joined());
            listing.AddRow(std::move(row));
        }
    }
    return listing;
}

} // namespace cimhttp
