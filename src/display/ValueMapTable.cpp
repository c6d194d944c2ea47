#include "display/ValueMapTable.h"

#include <boost/make_shared.hpp>

#include "display/DisplayQualifiers.h"
#include "display/ValueMapBuilder.h"

namespace NQORVYX20 {

boost::shared_ptr<const ValueMapTable> MakeValueMapTable(const DisplayQualifiers& qualifiers) {
    static const DisplayQualifiers::TName kValues("Values");
    static const DisplayQualifiers::TName kValueMap("ValueMap");
    const auto texts = qualifiers.GetTexts(kValues);
    const auto entries = texts ? qualifiers.GetTexts(kValueMap) : std::nullopt;
    if (!entries) {
        return {};
    }
    auto map = boost::make_shared<ValueMapTable>();
    map->rows.reserve(entries->size());
    ValueMapBuilder builder(map->rows, map->defaultText);
    for (std::size_t i = 0; i < entries->size(); ++i) {
        if (!builder.Add((*entries)[i], i < texts->size() ? (*texts)[i] : std::string())) {
            return {};
        }
    }
    return map;
}

} // namespace NQORVYX20
