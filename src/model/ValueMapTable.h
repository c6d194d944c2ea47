#pragma once

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

#include "model/TCimHTTPProperty.h"

namespace NQORVYX20 {

class DisplayQualifiers;

/// A value map: the rows in the order of the qualifier ValueMap, and the text for all other values, empty for none.
struct ValueMapTable {
    std::vector<TCimHTTPProperty::TValueMapEntry> rows;
    std::string defaultText;
};

/// The value map that the qualifiers Values and ValueMap make. Entries without a text of their own get an empty one. An
/// empty pointer when there is no value map, or a contradictory one.
boost::shared_ptr<const ValueMapTable> MakeValueMapTable(const DisplayQualifiers& qualifiers);

} // namespace NQORVYX20
