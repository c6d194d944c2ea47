#pragma once

#include "cimxml/Limits.h"

#include <Pegasus/Common/CIMName.h>

#include <array>
#include <string_view>

namespace Pegasus::cimxml {

/// Gives out one shared CIMName for the same text. The instances of a class all have the same property names, which are
/// checked and stored once so. It keeps one name for each hash, the last one: of two names with one hash neither stays
/// shared, and each is right.
class NameCache {
  public:
    /// White space around the name does not count. Throws DecodingError for an illegal one.
    CIMName get(std::string_view text);

  private:
    std::array<CIMName, kMaxCachedNames> names_;
};

} // namespace Pegasus::cimxml
