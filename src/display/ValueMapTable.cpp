#include "display/ValueMapTable.h"

#include "display/DisplayQualifiers.h"
#include "display/ValueMapBuilder.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace NQORVYX20 {

ValueMapTable::ValueMapTable(std::vector<ValueMapRow> rows, std::string defaultText)
    : rows_(std::move(rows)), defaultText_(std::move(defaultText)), index_(rows_) {}

const std::string* ValueMapTable::Find(std::uint64_t number) const {
    const auto row = index_.RowOf(number);
    return row ? &rows_[*row].text : nullptr;
}

boost::shared_ptr<const ValueMapTable> MakeValueMapTable(const DisplayQualifiers& qualifiers) {
    static const DisplayQualifiers::TName kValues("Values");
    static const DisplayQualifiers::TName kValueMap("ValueMap");
    const auto texts = qualifiers.GetTexts(kValues);
    const auto entries = texts ? qualifiers.GetTexts(kValueMap) : std::nullopt;
    if (!entries) {
        return {};
    }
    std::vector<ValueMapRow> rows;
    std::string defaultText;
    rows.reserve(entries->size());
    ValueMapBuilder builder(rows, defaultText);
    for (std::size_t i = 0; i < entries->size(); ++i) {
        if (!builder.Add((*entries)[i], i < texts->size() ? (*texts)[i] : std::string())) {
            return {};
        }
    }
    return boost::make_shared<const ValueMapTable>(std::move(rows), std::move(defaultText));
}

} // namespace NQORVYX20
