#pragma once

#include "cimxml/Limits.h"

#include <Pegasus/Common/CIMName.h>

#include <array>
#include <string_view>

namespace Pegasus::cimxml {

/// Gives out one shared CIMName for equal texts: the instances of a class all have the same property names, which are
/// then checked and stored once. It keeps one name for each hash, the latest: two names with one hash are each returned
/// correctly, but not shared.
class NameCache {
  public:
    /// White space around the name does not count. Throws DecodingError for an illegal name.
    CIMName get(std::string_view text);

  private:
    std::array<CIMName, kMaxCachedNames> names_;
};

} // namespace Pegasus::cimxml
